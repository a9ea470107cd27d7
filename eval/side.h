#pragma once

#include "eval/attacksets.h"
#include "eval/phase.h"
#include "position/piecesets.h"
#include "position/sets.h"

namespace tarvyle {

// One side and its view of the board while it is scored.
struct Side {
  int colour;
  int opponent;
  double phase;                     // of the game, by the opponent's material
  const SquareSet* own;             // its pieces, by code
  const SquareSet* theirs;          // the opponent's
  const AttackSets& attacks;        // its own
  const AttackSets& their_attacks;  // the opponent's
  const SquareSet* reach;           // what each slider sees, by its square
};

// One side's view of the current position, whose attacks are handed in. It refers to them, so they
// must live longer and be those of this position.
inline Side SideOf(int colour, const BoardAttacks& attacks) {
  return {colour,
          1 - colour,
          Stage(colour),
          board_sets.of[colour],
          board_sets.of[1 - colour],
          attacks.of[colour],
          attacks.of[1 - colour],
          attacks.reach};
}
Side SideOf(int colour, const BoardAttacks&& attacks) = delete;

}  // namespace tarvyle
