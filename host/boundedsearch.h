#pragma once

#include <cstdint>
#include <string>

#include "position/types.h"
#include "search/limits.h"

namespace tarvyle {

// What ends a search: the first of both that is reached. A search of a fixed depth repeats itself
// node by node; one with a clock does not.
struct SearchBounds {
  int depth = kMaxIteration;
  double seconds = 0;  // 0: no clock
};

// What such a search found, and what it took.
struct BoundedResult {
  Move move = 0;  // 0: no legal move, or none found in time
  int score = 0;
  int depth = 0;
  std::uint64_t nodes = 0;
  double seconds = 0;
  int settled_depth = 0;       // depth at which the move took the lead for good
  double settled_seconds = 0;  // and when that was
};

// Sets up a position as SetUpText does, in what a fresh process has (empty learn table, no book),
// and searches it. The result is also in the engine's learn table. Throws std::runtime_error when
// the text is refused.
BoundedResult SearchPosition(const std::string& text, const SearchBounds& bounds);

}  // namespace tarvyle
