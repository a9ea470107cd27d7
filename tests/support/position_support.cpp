#include "tests/support/position_support.h"

#include "host/engine.h"

namespace tarvyle::support {

void StartEngineOnce() {
  static const bool started = StartEngine();
  ASSERT_TRUE(started);
}

}  // namespace tarvyle::support
