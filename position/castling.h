#pragma once

#include "position/record.h"

namespace tarvyle {

inline bool Holds(Square square, int piece, int colour) {
  return g.board[square] == piece && g.color[square] == colour;
}

inline bool IsEmpty(Square square) { return g.color[square] == NoColour; }

// Whether castling is possible by rights, king, rook and empty squares; attacks are not looked at.
inline bool ShortCastlingReady(int colour) {
  const Square king = kKingHome[colour];
  return (g.castle & ShortRight(colour)) != 0 && g.king_sq[colour] == king && IsEmpty(king + 1) &&
         IsEmpty(king + 2) && Holds(king + 3, Rook, colour);
}

inline bool LongCastlingReady(int colour) {
  const Square king = kKingHome[colour];
  return (g.castle & LongRight(colour)) != 0 && g.king_sq[colour] == king && IsEmpty(king - 1) &&
         IsEmpty(king - 2) && IsEmpty(king - 3) && Holds(king - 4, Rook, colour);
}

}  // namespace tarvyle
