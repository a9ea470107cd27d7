#pragma once

#include "position/types.h"

namespace tarvyle {

// line[ply] = move, followed by child_line from ply + 1 on up to its end, and a terminating 0.
void SavePvLine(Move* line, const Move* child_line, Move move);

// Publishes a root result: search_mv, search_depth, search_score, search_list (game and line) and
// search_start_pos_key, and prints the thinking line. The second argument has no meaning.
void SaveRootScore(int score, int ignored, Move move, int depth, const Move* line);

// What a move that raised alpha leaves behind at its node: best move, killers and, when it did not
// cut off (at the root always), the line. At the root the result is published and the line kept for
// the tree of principal variations.
void SaveNewBest(Move move, int score, int beta, int depth, Move* line, const Move* child_line);

}  // namespace tarvyle
