#include "bench/started.h"

#include <cstdlib>

#include "host/engine.h"

namespace tarvyle {

void StartOnce() {
  static const bool started = StartEngine();
  if (!started) std::abort();
}

}  // namespace tarvyle
