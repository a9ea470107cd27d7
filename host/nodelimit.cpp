#include "host/nodelimit.h"

#include <algorithm>
#include <cstdint>

namespace tarvyle {

namespace {

constexpr std::uint32_t kLongerThanAnyAllowance = 1000 * kMillisecondsPerSecond;

int (*allotted)() = nullptr;

std::uint32_t BoundingClock() {
  static std::uint32_t now = 0;
  if (cnt_nodes == world.first_count) LookAgainAfter(allotted());
  return now += kLongerThanAnyAllowance;
}

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
  return {BoundingClock, seed};
}

}  // namespace tarvyle
