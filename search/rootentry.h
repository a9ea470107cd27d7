#pragma once

#include "position/types.h"

// What both root searches do alike with their moves, before and after they search.

namespace tarvyle {

// Builds the list of the root moves to search. False when there is none, or the position illegal.
bool ListRootMoves();

// Asks the book, when the configuration lets it move and a draw of a random number says so (51 in
// 101). A move that it has among the first `count` root moves is written, becomes `search_mv` and
// is told by true.
bool TakeBookMove(int count, Move& move);

// Puts the result of a search of all root moves into the learn table.
void LearnResult(int score, int depth);

}  // namespace tarvyle
