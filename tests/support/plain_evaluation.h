#pragma once

#include <map>
#include <string>
#include <vector>

#include "position/types.h"

// A second, slow and plain evaluation: it looks from each square outwards, counts pieces by
// scanning the board, and keeps a ledger of what it adds. It shares no code with the engine's but
// the position, the piece-square tables and the direction table in use. The phase and the king's
// part are in plain_phase.h and plain_kingsafety.h.

namespace tarvyle::support {

// The lines of a slider: empty squares seen, and the bonus for pins and x-rays.
struct PlainRays {
  int empty = 0;
  int bonus = 0;
};
PlainRays PlainRayScan(Square square, int piece, int colour);

// One side: the sum of its terms without material, and each term but 0 as it was added, by name.
struct PlainSide {
  int total = 0;
  int dearest_hanging = 0;
  std::map<std::string, std::vector<int>> terms;

  void Add(const std::string& term, int amount);
  std::vector<int> Of(const std::string& term) const;
};
PlainSide PlainSideScore(int colour);

// The evaluation for the side to move, with the early answer of the window.
int PlainEvaluate(int alpha, int beta);

}  // namespace tarvyle::support
