#include "position/enpassant.h"

#include "position/record.h"

namespace tarvyle {

// A pawn move over two rows; in a saved game it may lead aside as well.
Square EnPassantSquare() {
  if (g.game_len + ply == 0) return g.ep_sq;
  const Move last = LastMove();
  if (PieceOf(last) != Pawn) return 0;
  const int rows = RowOf(OriginOf(last)) - RowOf(TargetOf(last));
  return rows == 2 || rows == -2 ? TargetOf(last) + dP[g.side] : 0;
}

Square en_pass_to(Move move, int side) {
  const Square to = TargetOf(move);
  const int step = OriginOf(move) - to;
  if (PieceOf(move) != Pawn || (step != 16 && step != -16)) return 0;
  return PawnBeside(to, 1 - side) ? to - dP[side] : 0;
}

}  // namespace tarvyle
