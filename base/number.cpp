#include "base/number.h"

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace tarvyle {

int LeadingInteger(const char* text, int otherwise) {
  char* end = nullptr;
  errno = 0;
  const long number = std::strtol(text, &end, 10);
  const bool fits = errno == 0 && number >= INT_MIN && number <= INT_MAX;
  return end != text && fits ? static_cast<int>(number) : otherwise;
}

}  // namespace tarvyle
