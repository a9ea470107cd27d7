#include "host/nodelimit.h"

#include <algorithm>
#include <cstdint>

namespace tarvyle {

namespace {

int (*allotted)() = nullptr;

// The clock is read when the counter has been set, and whenever it comes to a multiple of
// kNodesPerPoll: so at the first of these the counter is told that all but a few nodes lie behind
// it. The clock stands still: one that moved on would wrap one day, and give a search many nodes
// more.
std::uint32_t BoundingClock() {
  if (cnt_nodes == world.first_count) {
    const int few = std::clamp(allotted(), 1, static_cast<int>(kNodesPerPoll));
    cnt_nodes = kNodesPerPoll - static_cast<std::uint64_t>(few);
  }
  return 0;
}

bool AtTheFirstLook() { return true; }

}  // namespace

World NodeBoundWorld(int (*allot)(), unsigned (*seed)()) {
  allotted = allot;
  return {BoundingClock, seed, AtTheFirstLook};
}

}  // namespace tarvyle
