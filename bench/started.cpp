#include "bench/started.h"

#include <cstdlib>

#include "eval/scoretable.h"
#include "position/attack.h"
#include "search/hash.h"

namespace tarvyle {

void StartOnce() {
  static const bool started = [] {
    InitAtk();
    if (!HashAllocate(kUsualEntries)) std::abort();
    InitEvaluate();
    return true;
  }();
  static_cast<void>(started);
}

}  // namespace tarvyle
