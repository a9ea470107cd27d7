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

}  // namespace tarvyle
