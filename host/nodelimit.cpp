#include "host/nodelimit.h"

#include <algorithm>
#include <cstdint>

namespace tarvyle {

namespace {

int (*allotted)() = nullptr;

// Stands still: a clock that moved on would wrap one day, and give a search many nodes more.
std::uint32_t BoundingClock() {
  if (cnt_nodes == world.first_count) LookAgainAfter(allotted());
  return 0;
}

bool AtTheFirstLook() { return true; }

}  // namespace

// The clock is read when the counter has been set, and whenever it comes to a multiple of
// kNodesPerPoll: so the counter is told that all but the last few nodes lie behind it.
void LookAgainAfter(int nodes) {
  if (cnt_nodes != world.first_count) return;
  const int few = std::clamp(nodes, 1, static_cast<int>(kNodesPerPoll));
  cnt_nodes = kNodesPerPoll - static_cast<std::uint64_t>(few);
}

World NodeBoundWorld(int (*allot)(), unsigned (*seed)()) {
  allotted = allot;
  return {BoundingClock, seed, AtTheFirstLook};
}

}  // namespace tarvyle
