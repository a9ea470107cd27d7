#pragma once

#include "position/types.h"

namespace tarvyle {

// One side's evaluation while its piece list is walked.
struct SideScore {
  int colour;    // the side
  int opponent;  // the other one
  double phase;  // of the game, by the opponent's material
  int total;     // positional sum so far, in 1/1000 pawn
  int hanging;   // hanging pieces met
  int doubled;   // doubled pawns met
  int isolated;  // isolated pawns met
};

// Chebyshev distance of two squares (king moves).
constexpr int Distance(Square a, Square b) {
  const int rows = RowOf(a) > RowOf(b) ? RowOf(a) - RowOf(b) : RowOf(b) - RowOf(a);
  const int files = FileOf(a) > FileOf(b) ? FileOf(a) - FileOf(b) : FileOf(b) - FileOf(a);
  return rows > files ? rows : files;
}

// Manhattan distance of two squares.
constexpr int Taxi(Square a, Square b) {
  const int rows = RowOf(a) > RowOf(b) ? RowOf(a) - RowOf(b) : RowOf(b) - RowOf(a);
  const int files = FileOf(a) > FileOf(b) ? FileOf(a) - FileOf(b) : FileOf(b) - FileOf(a);
  return rows + files;
}

}  // namespace tarvyle
