#pragma once

#include "eval/sidescore.h"

namespace tarvyle {

// Terms of one pawn of the side being scored: front square, doubled, isolated, passed. Needs the
// attack words.
void AddPawnTerms(SideScore& score, Square square);

// Terms of the side as a whole: pawn count, missing centre pawns, more pieces than the opponent.
void AddSideTerms(SideScore& score);

}  // namespace tarvyle
