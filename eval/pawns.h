#pragma once

#include "eval/side.h"
#include "position/sets.h"

namespace tarvyle {

// Sum of the terms of some of a side's pawns, those that lower it apart.
struct PawnSum {
  int losses;
  int gains;
};

// Terms of the pawns in `pawns`: front square, doubled, isolated, passed. The third doubled and the
// third isolated one cost more, so the sum over some pawns is what it is when exactly they are
// walked.
PawnSum PawnTerms(const Side& side, SquareSet pawns);

// Terms of the side as a whole: pawn count, missing centre pawns, more pieces than the opponent.
int SideTerms(const Side& side);

}  // namespace tarvyle
