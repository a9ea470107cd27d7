#include "host/nodelimit.h"

#include <algorithm>
#include <cstdint>

namespace tarvyle {

namespace {

int (*allotted)() = nullptr;

// All but a few nodes to the first look at the clock lie behind.
std::uint64_t AlmostAll() {
  const int few = std::clamp(allotted(), 1, static_cast<int>(kNodesPerPoll));
  return kNodesPerPoll - static_cast<std::uint64_t>(few);
}

// One that moved on would wrap one day, and give a search many nodes more.
std::uint32_t StandingClock() { return 0; }

bool AtTheFirstLook() { return true; }

}  // namespace

World NodeBoundWorld(int (*allot)(), unsigned (*seed)()) {
  allotted = allot;
  return {StandingClock, seed, AtTheFirstLook, AlmostAll};
}

}  // namespace tarvyle
