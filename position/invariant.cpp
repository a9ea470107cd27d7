#include "position/invariant.h"

#include <cstdlib>

namespace tarvyle {

int __foo = 0;  // NOLINT(bugprone-reserved-identifier)

void AbortOnBrokenInvariant() {
  ++__foo;
  std::abort();
}

void(assert)(bool condition) {
  if (condition) [[likely]] {
    return;
  }
  AbortOnBrokenInvariant();
}

}  // namespace tarvyle
