#pragma once

#include "position/types.h"

// The en-passant square, by its two rules. Generation goes by the first; texts and keys that
// identify a position go by the second, so that positions with the same moves share them.

namespace tarvyle {

// Square that a pawn has just passed over, whether or not one can be captured there, or 0. Before
// the first move since the set-up it is that of the set-up text.
Square EnPassantSquare();

// The square that may be captured en passant after `side` has played `move`: a pawn has passed over
// it, and an enemy pawn stands beside. 0 otherwise.
Square en_pass_to(Move move, int side);

}  // namespace tarvyle
