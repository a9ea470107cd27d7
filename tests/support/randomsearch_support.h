#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Whoever includes this uses the engine as well:
// IWYU pragma: begin_exports
#include "tests/support/search_support.h"
// IWYU pragma: end_exports

// What the tests of the randomised root search share: a clock that runs at a speed of its own in
// each stage, and a run with what it said.

namespace tarvyle::support {

inline constexpr int kAllowance = 1000;  // 1/100 s: the stages get 500, 900 and 100
inline constexpr const char* kMateInOne = "6k1/5ppp/8/8/8/8/8/R6K w";
inline constexpr const char* kHangingQueen = "4k3/pp6/8/3q4/4P3/8/PP6/4K3 w";
inline constexpr const char* kBothMovesAreMated = "7k/R7/p7/8/8/8/8/1R5K b";
inline constexpr const char* kOneMove = "k7/8/8/8/8/7p/7P/7K w";

// One look at the clock.
struct Reading {
  int limit;       // of the stage
  int hundredths;  // the clock
};

struct StageClock {
  int allowance = kAllowance;
  std::uint32_t steps[3] = {500, 900, 100};  // ms a reading: ten polls and the stage is over
  int first_poll = 4096;                     // node of each stage at which it is first read
  std::uint32_t now = 100000;
  std::vector<Reading> readings;
  std::vector<int> values_before_stage1;
  int set_aside_at_stop = 0;  // root moves set aside when the stage of candidates last looked
};
inline StageClock stage_clock;

// The stage with this limit, from 0, or -1.
int StageOf(int limit);

struct Outcome {
  bool found = false;
  std::string move;
  std::vector<std::string> lines;
};

// Searches the current position by the stage clock. Checks what every path must leave as it was.
Outcome RunSearch(int allowance = kAllowance);

bool Contains(const Outcome& run, const std::string& line);

// A move with its score, as some line told it.
struct Told {
  std::string move;
  int score = 0;
  int depth = 0;
};
std::vector<Told> BestMoveOf(const Outcome& run);
std::vector<Told> CandidatesOf(const Outcome& run);
std::vector<Told> ResultsOf(const Outcome& run);
std::vector<Told> SelectedOf(const Outcome& run);

// The last line of a search: clock time from entering it to its last reading.
std::string SearchTimeLine();

class RandomisedSearch : public SearchTest {
 protected:
  RandomisedSearch() { stage_clock = {}; }
};

}  // namespace tarvyle::support
