#pragma once

namespace tarvyle {

// King-safety term of `colour` in 1/1000 pawn, usually 0 or negative; 0 when the opponent has at
// most one minor piece. Needs the attack sets of the position. Hidden input: the direction table in
// use, whose first knight jump names the ninth square of the king's ring.
int KingSFTY(int colour);

// Whether king and a-file rook stand at home and the long castling right is held.
bool LeftCastlEnable(int colour);

// The same for the h-file rook and the short castling right.
bool RightCastlEnable(int colour);

}  // namespace tarvyle
