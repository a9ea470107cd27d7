#pragma once

#include "eval/side.h"

namespace tarvyle {

// King-safety term of a side in 1/1000 pawn, usually 0 or negative; 0 when the opponent has at most
// one minor piece. Hidden input: the direction table in use, whose first knight jump names the
// ninth square of the king's ring.
int KingTerm(const Side& side);

// The same for the side of `colour` on the current board, whose attacks are worked out for it.
// Offered to others; the engine itself never calls it.
int KingSFTY(int colour);

// Whether king and a-file rook stand at home and the long castling right is held.
bool LeftCastlEnable(int colour);

// The same for the h-file rook and the short castling right.
bool RightCastlEnable(int colour);

}  // namespace tarvyle
