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

// By colour, as of the last BuildAttackSets.
extern AttackSets attack_sets[2];

// What the slider on each square sees, as of the same; meaningful for sliders' squares only.
extern SquareSet slider_reach[kSquares];

// Builds the attack sets of both sides from the board.
void BuildAttackSets();

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
