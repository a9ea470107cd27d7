#pragma once

#include "position/types.h"

// The opening book: lines of play whose positions become book nodes of the learn table.

namespace tarvyle {

struct LearnNode;

// A book move among the root moves at first..last of the move list, drawn with weights by stored
// scores, or 0 when none leads to a book position.
Move MoveFromLib(int first, int last);

// Finds the root moves at first..last that lead to book positions: fills the parallel arrays with
// the node reached and the move, and `count`. Returns whether there is any.
bool ListLibMoves(int first, int last, LearnNode** nodes, Move* moves, int& count);

// Gives every root move at first..last a random ordering value, from a wider range to book moves.
// One draw a move, in list order, after its look-up.
void RndMovesWithLib(int first, int last);

}  // namespace tarvyle
