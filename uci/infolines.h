#pragma once

#include <cstdint>

#include "position/types.h"
#include "search/status.h"

// What the GUI is told while the engine thinks.

namespace tarvyle::uci {

// Nodes and milliseconds of the search so far.
struct Effort {
  std::uint64_t nodes;
  std::int64_t milliseconds;
};

// Tells a new best line. The effort is that of the moment; the status' own counters are left out.
void SayLine(const SearchStatus& status, const Effort& effort);

// Tells the effort of a whole search.
void SayEffort(const Effort& effort);

// Tells how far the search is: iteration, root move (0: between two of them) and which one of them
// it is, from 1.
void SayProgress(int depth, Move move, int number, const Effort& effort);

}  // namespace tarvyle::uci
