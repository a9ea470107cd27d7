#pragma once

#include "position/types.h"

// What both root searches do alike with their moves, before and after they search.

namespace tarvyle {

// Builds the list of the root moves to search. False when there is none, or the position illegal.
bool ListRootMoves();

// Whether the configuration lets the book move, and this time's draw does (51 in 101), and the book
// has a move among the first `count` root moves: then it is written.
bool BookAnswers(int count, Move& move);

// Puts the result of a search of all root moves into the learn table.
void LearnResult(int score, int depth);

// Frees the lines of `pv_table`, oldest first, after merging them into the tree of principal
// variations or not. Dropping them is for a reset alone.
void MergeLines();
void DropLines();

}  // namespace tarvyle
