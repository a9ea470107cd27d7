#include "base/message.h"

#include <cstdarg>
#include <cstdio>
#include <string>

#include "base/formatted.h"

namespace tarvyle {

void (*message_sink)(std::string_view text) = nullptr;

// The compiler checks its callers' formats.
void Message(const char* format, ...) {  // NOLINT(cert-dcl50-cpp)
  std::va_list arguments;
  va_start(arguments, format);
  if (message_sink != nullptr) {
    message_sink(FormattedList(format, arguments));
  } else {
    std::vprintf(format, arguments);
  }
  va_end(arguments);
}

}  // namespace tarvyle
