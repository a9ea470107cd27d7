#pragma once

#include "position/types.h"

// How far two squares are from each other.

namespace tarvyle {

inline int RowDistance(Square a, Square b) {
  return RowOf(a) > RowOf(b) ? RowOf(a) - RowOf(b) : RowOf(b) - RowOf(a);
}
inline int FileDistance(Square a, Square b) {
  return FileOf(a) > FileOf(b) ? FileOf(a) - FileOf(b) : FileOf(b) - FileOf(a);
}

// Chebyshev distance of two squares (king moves).
inline int Distance(Square a, Square b) {
  const int rows = RowDistance(a, b);
  const int files = FileDistance(a, b);
  return rows > files ? rows : files;
}

// Manhattan distance of two squares (a rook's steps), and the greatest that there is.
inline int Taxi(Square a, Square b) { return RowDistance(a, b) + FileDistance(a, b); }
inline constexpr int kLongestTaxi = 14;

}  // namespace tarvyle
