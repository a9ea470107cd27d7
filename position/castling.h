#pragma once

#include "position/record.h"
#include "position/types.h"

// What castling needs of the board; attacked squares are another matter (LegalCastl).

namespace tarvyle {

// Whether a castling right is held, and king and rook stand at home for it.
inline bool ShortRightStands(int colour) {
  return Holds(kKingHome[colour], King, colour) && Holds(kShortRookHome[colour], Rook, colour) &&
         (g.castle & ShortRight(colour)) != 0;
}
inline bool LongRightStands(int colour) {
  return Holds(kKingHome[colour], King, colour) && Holds(kLongRookHome[colour], Rook, colour) &&
         (g.castle & LongRight(colour)) != 0;
}

// The same with nothing between the two: castling is listed.
inline bool ShortCastlingReady(int colour) {
  const Square king = kKingHome[colour];
  return ShortRightStands(colour) && IsEmpty(king + 1) && IsEmpty(king + 2);
}
inline bool LongCastlingReady(int colour) {
  const Square king = kKingHome[colour];
  return LongRightStands(colour) && IsEmpty(king - 1) && IsEmpty(king - 2) && IsEmpty(king - 3);
}

}  // namespace tarvyle
