#include "base/formatted.h"

#include <cstdio>

namespace tarvyle {

// The arguments are read twice: for the length, then for the text.
std::string FormattedList(const char* format, std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, again);
  va_end(again);
  if (length < 0) return {};
  std::string text(static_cast<std::size_t>(length), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  return text;
}

// The compiler checks its callers' formats.
std::string Formatted(const char* format, ...) {  // NOLINT(cert-dcl50-cpp)
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = FormattedList(format, arguments);
  va_end(arguments);
  return text;
}

}  // namespace tarvyle
