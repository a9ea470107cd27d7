#pragma once

#include "position/types.h"

// What a search has found: the line of each node, the result at the root, and the root's lines on
// their way into the tree of principal variations.

namespace tarvyle {

// line[ply] = move, followed by child_line from ply + 1 on up to its end, and a terminating 0.
void SavePvLine(Move* line, const Move* child_line, Move move);

// Publishes a root result: search_mv, search_depth, search_score, search_list (game and line) and
// search_start_pos_key, and tells the thinking line. The second argument has no meaning.
void SaveRootScore(int score, int ignored, Move move, int depth, const Move* line);

// What a move that raised alpha leaves behind at its node: best move, killers and, when it did not
// cut off (at the root always), the line. At the root the result is published and a copy of the
// line goes to `pv_table`.
void SaveNewBest(Move move, int score, int beta, int depth, Move* line, const Move* child_line);

// Frees the lines of `pv_table`, oldest first, after merging them into the tree of principal
// variations or not. Dropping them is for a reset alone.
void MergeLines();
void DropLines();

}  // namespace tarvyle
