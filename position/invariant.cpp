#include "position/invariant.h"

#include <cstdlib>

namespace tarvyle {

int __foo = 0;  // NOLINT(bugprone-reserved-identifier)

void(assert)(bool condition) {
  if (condition) [[likely]] {
    return;
  }
  ++__foo;
  std::abort();
}

}  // namespace tarvyle
