#pragma once

#include "position/types.h"

// The two alpha-beta functions. Scores are from the side to move's point of view, in 1/1000 pawn;
// 0 comes back from every node once the search is stopped.

namespace tarvyle {

// Searches a node off the principal variation, with all pruning.
//   in_check       1 if the side to move is in check
//   line           receives the principal variation from this ply on (kLineSize words, by ply)
//   is_probe_child 1 for null-move, internal-deepening and verification searches
//   on_pv          1 if the node lies on a stored principal variation
//   first_move     to try first, 0 for none
//   excluded_move  not to be searched, 0 for none
int Search(int alpha, int beta, int depth, int in_check, Move* line, int is_probe_child, int on_pv,
           int null_allowed, Move first_move, Move excluded_move);

// Searches a node of the principal variation, or the root (`ply` 0, whose list stands ready).
// Prunes nothing; probes each move with Search, in the way of the play style, before it commits
// itself. At the root the score of each move goes to its sort_val. `is_probe_child` and
// `null_allowed` have no meaning here.
int main_search(int alpha, int beta, int depth, int in_check, Move* line, int is_probe_child,
                int on_pv, int null_allowed, Move first_move);

}  // namespace tarvyle
