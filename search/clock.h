#pragma once

#include <cstdint>

#include "search/settings.h"  // IWYU pragma: export

// The clock, the node counter and the stop flag of a search.

namespace tarvyle {

// The clock of one stage: of an ordinary search as a whole, or of each part of a randomised one
// that has an allowance of its own. Begun by TimeReset; written in clock.cpp alone, and reset
// with all else that a search leaves.
struct SearchClock {
  int start_time = 0;           // clock reading at the start, 1/100 s
  int curr_time = 0;            // last clock reading, 1/100 s
  std::uint64_t cnt_nodes = 0;  // where `world.first_count` began, and the nodes since
  int is_stop_search = 0;       // 1 once the time is used up, or something else has ended the stage

  bool operator==(const SearchClock&) const = default;
};
inline SearchClock search_clock;

inline constexpr auto& start_time = search_clock.start_time;
inline constexpr auto& curr_time = search_clock.curr_time;
inline constexpr auto& cnt_nodes = search_clock.cnt_nodes;
inline constexpr auto& is_stop_search = search_clock.is_stop_search;

// What a search takes from the world outside: a clock in milliseconds, and a seed for the random
// generator. host/, uci/, fuzz targets and tests put their own in place; the last two are theirs
// alone.
struct World {
  std::uint32_t (*milliseconds)();
  unsigned (*seed)();
  // Asked whenever StopSearch reads the clock: true stops the search. Null: only the clock does.
  bool (*should_stop)() = nullptr;
  // Asked at the start of each stage, while the counter is still that of the one before: where it
  // begins. The clock is read each time the counter reaches a multiple of kNodesPerPoll: this
  // decides at which nodes. Null: at 0.
  std::uint64_t (*first_count)() = nullptr;
};
extern World world;

inline constexpr std::uint32_t kMillisecondsPerSecond = 1000;
inline constexpr std::uint64_t kNodesPerPoll = 4096;  // between two looks at the clock

// The real ones: the system's clock, and the current time as seed.
std::uint32_t RealMilliseconds();
unsigned RealSeed();

// Current time in milliseconds (unsigned, wrapping).
std::uint32_t tick_cnt();

// Current time in hundredths of a second.
std::uint32_t TICK_COUNT();

// Seeds the C library's random generator, from which every random choice is drawn.
void SeedRandom();

// Sets the allowance for one move, 1/100 s, from now on.
void SetAllowance(int hundredths);

// Gives the allowance back that there was, whatever has been set meanwhile.
class AllowanceGuard {
 public:
  AllowanceGuard() = default;
  ~AllowanceGuard() { SetAllowance(own_); }
  AllowanceGuard(const AllowanceGuard&) = delete;
  AllowanceGuard& operator=(const AllowanceGuard&) = delete;

 private:
  int own_ = limit_time;
};

// Starts the clock of a new stage: no stop, and the node counter at 0, or where the world wants it.
void TimeReset();

// Counts one node and returns the stop flag. When the counter comes to a multiple of kNodesPerPoll
// it reads the clock first and sets the flag when 95 % of `limit_time` have passed; the rest is
// left for unwinding. Then, too, it asks `world.should_stop`. A clock that went back, or wrapped,
// moves `start_time`: what has passed is measured anew from there.
int StopSearch();

// Ends the stage at its next node; for root hooks, after an iteration or with a line.
void StopNow();

}  // namespace tarvyle
