#pragma once

#include <vector>

#include "position/types.h"

namespace tarvyle::uci {

// The best of these legal moves by the static evaluation of the positions that they lead to; mate
// and stalemate are seen. For a search that has ended before it knew any move.
Move FirstGuess(const std::vector<Move>& moves);

}  // namespace tarvyle::uci
