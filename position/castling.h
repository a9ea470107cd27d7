#pragma once

#include <cstdint>

#include "position/record.h"
#include "position/types.h"

// What castling needs of the board; attacked squares are another matter (LegalCastl).

namespace tarvyle {

// Whether a castling right is held, and king and rook stand at home for it.
inline bool ShortRightStands(int colour) {
  return StandsOn(King, colour, kKingHome[colour]) &&
         StandsOn(Rook, colour, kShortRookHome[colour]) && (g.castle & ShortRight(colour)) != 0;
}
inline bool LongRightStands(int colour) {
  return StandsOn(King, colour, kKingHome[colour]) &&
         StandsOn(Rook, colour, kLongRookHome[colour]) && (g.castle & LongRight(colour)) != 0;
}

// Those rights of both colours, in the bits of `castle`.
inline std::uint32_t StandingRights() {
  std::uint32_t rights = 0;
  for (int colour = White; colour <= Black; ++colour) {
    if (LongRightStands(colour)) rights |= LongRight(colour);
    if (ShortRightStands(colour)) rights |= ShortRight(colour);
  }
  return rights;
}

// The right stands, and nothing between king and rook: castling is listed.
inline bool ShortCastlingReady(int colour) {
  const Square king = kKingHome[colour];
  return ShortRightStands(colour) && IsEmpty(king + 1) && IsEmpty(king + 2);
}
inline bool LongCastlingReady(int colour) {
  const Square king = kKingHome[colour];
  return LongRightStands(colour) && IsEmpty(king - 1) && IsEmpty(king - 2) && IsEmpty(king - 3);
}

}  // namespace tarvyle
