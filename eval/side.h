#pragma once

#include "eval/attacksets.h"
#include "eval/phase.h"

namespace tarvyle {

// One side and its view of the board while it is scored.
struct Side {
  int colour;
  int opponent;
  double phase;             // of the game, by the opponent's material
  const SquareSet* own;     // its pieces, by code
  const SquareSet* theirs;  // the opponent's
  const AttackSets& attacks;
  const AttackSets& threats;  // the opponent's attacks
};

// One side's view of the current position; needs the attack sets.
inline Side SideOf(int colour) {
  return {colour,
          1 - colour,
          Stage(colour),
          board_sets.of[colour],
          board_sets.of[1 - colour],
          attack_sets[colour],
          attack_sets[1 - colour]};
}

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

// Manhattan distance of two squares.
inline int Taxi(Square a, Square b) { return RowDistance(a, b) + FileDistance(a, b); }

}  // namespace tarvyle
