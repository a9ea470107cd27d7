#pragma once

#include <algorithm>

#include "position/types.h"
#include "tests/support/plain_board.h"

// The phase of the game as the plain evaluation finds it.

namespace tarvyle::support {

// Weight of the opponent's pieces, uncapped.
inline int PlainWeight(int colour) {
  const int o = 1 - colour;
  return 14 * plain::Count(o, Queen) + 6 * plain::Count(o, Rook) + 3 * plain::Count(o, Knight) +
         4 * plain::Count(o, Bishop);
}

// The phase that `colour` sees by it.
inline double PlainPhase(int colour) {
  const int weight = PlainWeight(colour);
  return weight <= 4 ? 0.0 : std::min(weight, 40) / 40.0;
}

}  // namespace tarvyle::support
