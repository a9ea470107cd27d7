#pragma once

#include "position/sets.h"
#include "position/types.h"

// Which squares each side attacks, how often, and with which types of pieces, as sets of squares.

namespace tarvyle {

// The attacks of one side. The words of attackmap.h tell the same square by square.
struct AttackSets {
  SquareSet by[8];     // attacked by pieces of each code, x-rays left out
  SquareSet all;       // attacked at all, bare x-rays included
  SquareSet count[4];  // number of attacks, bit by bit, modulo 16
};

// The attacks on one board. Nothing keeps them up: whoever asks for them hands them on to those who
// look at that same board, and nobody keeps them for longer.
struct BoardAttacks {
  AttackSets of[2];           // by colour
  SquareSet reach[kSquares];  // what the slider on each square sees; unset for all other squares
};

// The attacks on the current board.
BoardAttacks AttacksOnBoard();

// Number of attacks on one square, modulo 16.
inline int AttackCountAt(const AttackSets& sets, Square square) {
  return static_cast<int>((sets.count[0] >> square & 1) | (sets.count[1] >> square & 1) << 1 |
                          (sets.count[2] >> square & 1) << 2 | (sets.count[3] >> square & 1) << 3);
}

// Sum of the numbers of attacks over a set of squares.
inline int AttackSum(const AttackSets& sets, SquareSet squares) {
  int sum = CountOf(sets.count[0] & squares) + 2 * CountOf(sets.count[1] & squares);
  const SquareSet many = (sets.count[2] | sets.count[3]) & squares;
  if (many != 0) sum += 4 * CountOf(sets.count[2] & squares) + 8 * CountOf(sets.count[3] & squares);
  return sum;
}

}  // namespace tarvyle
