#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "position/types.h"
#include "search/clock.h"
#include "search/roothooks.h"
#include "search/status.h"

// The engine as a library: started once, reset to what a fresh process has, searched at fixed
// depth or by a setting of one's own.

namespace tarvyle {

inline constexpr int kUsualEntries = 0x80000;  // of each hash table: "hash size" 38
inline constexpr int kNoTimeLimit = 20000000;  // 1/100 s; the engine's clock can reckon with it

// Builds all tables, with this many entries in each hash table, and resets the engine. What has
// been built is not built again: whoever needs a started engine may call it. False without memory.
bool StartEngine(int entries = kUsualEntries);

// What a process has right after its start with this book file (none: an empty learn table and no
// book): the start position, empty learn table, history and counters (ForgetAll). Settings stay as
// they are. False when the book cannot be read.
bool FreshProcess(const std::string& book_file = {});

// Sets up "FEN" or "FEN moves m1 m2 ...". False, with some position on the board, when refused.
bool SetUpRoot(std::string_view root);

// The static evaluation of the current position, for the side to move; fits the evaluation tables
// to it first, as each search does.
int StaticScore();

// Score and node count after one iteration.
struct Iteration {
  int depth;
  int score;
  std::uint64_t nodes;
};

// What a search takes in place of what the process has. The randomised search does not heed all
// hooks (roothooks.h).
struct SearchSetting {
  World world{};                 // must be given: a clock and a seed at least
  int allowance = kNoTimeLimit;  // 1/100 s
  RootHooks hooks;
  void (*on_line)(const SearchStatus&) = nullptr;  // is told each thinking line
};

// Searches the current position as SearchMove does, with that setting; clock, allowance, hooks and
// the receiver of thinking lines are as before afterwards.
bool SearchWith(const SearchSetting& setting, Move& move);

// What one search did.
struct SearchReport {
  std::vector<Iteration> iterations;
  std::vector<std::string> lines;  // thinking lines without their time column
  std::string best_move;           // empty when there is none
  int score = 0;
  int depth = 0;
  std::uint64_t nodes = 0;
};

// The same, and tells what happened; the setting's own hooks are called as well.
SearchReport SearchAndReport(SearchSetting setting);

// Searches the current position with iterations kFirstIteration..depth, without a clock, with a
// fixed seed. Asks `world.should_stop` when there is one.
SearchReport SearchToDepth(int depth, unsigned seed);

}  // namespace tarvyle
