#pragma once

#include <cstdint>

// The clock, the node counter and the stop flag of a search.

namespace tarvyle {

inline constexpr int kDefaultLimit = 750;  // 1/100 s

// Allowance for one move, 1/100 s. Set by configuration and commands; a randomised search and
// host/engine.h set it for their own time and put it back.
extern int limit_time;
extern int start_time;           // clock reading at the start of the search, 1/100 s
extern int curr_time;            // last clock reading of the search, 1/100 s
extern std::uint64_t cnt_nodes;  // world.first_count and the nodes since TimeReset (see StopSearch)
// 1 once the time is used up, until the next TimeReset. A root hook may set it as well, to end the
// search after an iteration or with a line.
extern int is_stop_search;

// What a search takes from the world outside: a clock in milliseconds, and a seed for the random
// generator. Tests, benchmarks and tools put their own in place; the last two are theirs alone.
struct World {
  std::uint32_t (*milliseconds)();
  unsigned (*seed)();
  // Asked whenever the clock is read: true stops the search. Null: only the clock does.
  bool (*should_stop)() = nullptr;
  // Where the node counter of a search starts. The clock is read each time the counter reaches a
  // multiple of kNodesPerPoll: this decides at which nodes.
  std::uint64_t first_count = 0;
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

// Starts the clock of a new search: no stop, and the node counter at `world.first_count`, which is
// 0 unless a tool counts towards a limit of its own.
void TimeReset();

// Counts one node and returns the stop flag. When the counter comes to a multiple of kNodesPerPoll
// it reads the clock first and sets the flag when 95 % of `limit_time` have passed; the rest is
// left for unwinding. Then, too, it asks `world.should_stop`.
int StopSearch();

}  // namespace tarvyle
