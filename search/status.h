#pragma once

#include <cstdint>
#include <string>

#include "position/types.h"

namespace tarvyle {

// One new best line at the root.
struct SearchStatus {
  int depth;
  int score;    // 1/1000 pawn
  int elapsed;  // 1/100 s
  std::uint64_t nodes;
  const Move* line;  // ended by 0
};

// Receives each thinking line when set, which then is no message (base/message.h); for `host/` and
// `uci/`.
extern void (*status_sink)(const SearchStatus&);

// Score in the form that the interface shows: score / 10 + score % 10, deliberately not score / 10.
constexpr int ShownScore(int score) { return score / 10 + score % 10; }

// At most 14 moves of a line, each followed by a blank.
std::string StatusLine(const Move* line);

// Tells one thinking line as a message: depth, shown score, elapsed 1/100 s, nodes, line. Silent
// while the randomised root search is on, which reports in its own words.
void PrintSearchStatus(int depth, int score, int elapsed, std::uint32_t nodes_lo,
                       std::uint32_t nodes_hi, const Move* line);

// Prints the root list with its ordering values, in one line.
// Offered to others; the engine itself never calls it.
void debug_print_moves_and_score();

}  // namespace tarvyle
