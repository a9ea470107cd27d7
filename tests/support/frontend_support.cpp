#include "tests/support/frontend_support.h"

#include "host/engine.h"

namespace tarvyle::support {

void StartWithSmallTables() {
  constexpr int kSmallest = 0x10000;
  ASSERT_TRUE(StartEngine(kSmallest));
}

}  // namespace tarvyle::support
