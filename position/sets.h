#pragma once

#include <bit>
#include <cstdint>

#include "position/types.h"

// Sets of squares, one bit each (bit 0 = a8): questions about many squares at once. Sets have no
// order; that of moves and of evaluation terms always comes from the piece list.

namespace tarvyle {

using SquareSet = std::uint64_t;

constexpr SquareSet SetOf(Square square) { return SquareSet{1} << square; }
constexpr bool Contains(SquareSet set, Square square) { return (set >> square & 1) != 0; }
constexpr bool HasSeveral(SquareSet set) { return (set & (set - 1)) != 0; }
inline Square FirstOf(SquareSet set) { return std::countr_zero(set); }
inline int CountOf(SquareSet set) { return std::popcount(set); }

// Takes the first square out of a set that is not empty.
inline Square TakeFirst(SquareSet& set) {
  const Square square = FirstOf(set);
  set &= set - 1;
  return square;
}

inline constexpr SquareSet kFileA = 0x0101010101010101;
inline constexpr SquareSet kFileH = kFileA << 7;
inline constexpr SquareSet kRow0 = 0xFF;  // the eighth rank

constexpr SquareSet FileSet(int file) { return kFileA << file; }
constexpr SquareSet RowSet(int row) { return kRow0 << (8 * row); }

// One step towards the promotion row, and the squares that a set of pawns attacks.
constexpr SquareSet Ahead(int colour, SquareSet set) {
  return colour == White ? set >> 8 : set << 8;
}
constexpr SquareSet PawnTargetsLeft(int colour, SquareSet pawns) {
  return colour == White ? (pawns & ~kFileA) >> 9 : (pawns & ~kFileA) << 7;
}
constexpr SquareSet PawnTargetsRight(int colour, SquareSet pawns) {
  return colour == White ? (pawns & ~kFileH) >> 7 : (pawns & ~kFileH) << 9;
}
constexpr SquareSet PawnTargets(int colour, SquareSet pawns) {
  return PawnTargetsLeft(colour, pawns) | PawnTargetsRight(colour, pawns);
}

}  // namespace tarvyle
