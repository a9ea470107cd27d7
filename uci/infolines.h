#pragma once

#include <cstdint>

#include "search/status.h"

// What the GUI is told while the engine thinks.

namespace tarvyle::uci {

// Nodes and milliseconds of the search so far.
struct Effort {
  std::uint64_t nodes;
  std::int64_t milliseconds;
};

// Tells a line: a new best one, or again that of an iteration that is complete. Effort and score
// are those of the moment; the status' own counters are left out.
void SayLine(const SearchStatus& status, const Effort& effort);

}  // namespace tarvyle::uci
