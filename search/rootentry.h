#pragma once

#include "position/types.h"

// What both root searches do alike, before and after they search.

namespace tarvyle {

// Starts the clock, empties tables, killers and results, and takes over from the current position
// what a search wants to know of its root.
void PrepareRoot();

// Resets the search for the current root altogether, history, tree of principal variations and
// random generator included; used by the randomised root search.
void init_search();

// Does nothing; the hook for resetting the repetition state.
void set_rep();

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
