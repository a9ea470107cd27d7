#include "search/clock.h"

#include <cstdlib>
#include <ctime>

namespace tarvyle {

World world = {RealMilliseconds, RealSeed};

namespace {

constexpr std::uint64_t kPollMask = kNodesPerPoll - 1;

int Now() { return static_cast<int>(TICK_COUNT()); }

}  // namespace

std::uint32_t RealMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<std::uint32_t>(now.tv_sec) * kMillisecondsPerSecond +
         static_cast<std::uint32_t>(now.tv_nsec / 1000000);
}

unsigned RealSeed() { return static_cast<unsigned>(std::time(nullptr)); }

std::uint32_t tick_cnt() { return world.milliseconds(); }

std::uint32_t TICK_COUNT() { return tick_cnt() / 10; }

void SeedRandom() { std::srand(world.seed()); }

void SetAllowance(int hundredths) { limit_time = hundredths; }

void TimeReset() {
  const std::uint64_t first = world.first_count != nullptr ? world.first_count() : 0;
  search_clock = {};
  cnt_nodes = first;
  start_time = Now();
  curr_time = start_time;
}

int StopSearch() {
  ++cnt_nodes;
  if ((cnt_nodes & kPollMask) != 0 || is_stop_search != 0) return is_stop_search;
  curr_time = Now();
  if (curr_time < start_time) start_time = curr_time;
  if (curr_time - start_time >= limit_time * 95 / 100) is_stop_search = 1;
  if (world.should_stop != nullptr && world.should_stop()) is_stop_search = 1;
  return is_stop_search;
}

void StopNow() { is_stop_search = 1; }

}  // namespace tarvyle
