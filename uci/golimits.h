#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "position/types.h"

namespace tarvyle::uci {

// What "go" asks for. Times in milliseconds; -1 and 0 mean "not said".
struct Limits {
  std::int64_t time[2] = {-1, -1};  // on the clock, by colour
  std::int64_t increment[2] = {0, 0};
  int moves_to_go = 0;
  std::int64_t move_time = -1;
  int depth = 0;
  std::uint64_t nodes = 0;
  int mate = 0;            // moves
  bool infinite = false;   // no answer before "stop"
  std::vector<Move> only;  // root moves to search; empty: all
};

// Reads what follows "go" for the position on the board. Words and values that make no sense are
// reported and left out. Without any limit the search is an infinite one.
Limits ReadLimits(std::string_view words);

}  // namespace tarvyle::uci
