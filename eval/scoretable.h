#pragma once

#include "position/types.h"

// The piece-square tables, generated from how pieces move and bent by the material at the root.

namespace tarvyle {

// By colour, piece code and square, in 1/1000 pawn; codes 0 and 7 stay 0. Rebuilt as a whole by
// InitEvaluate, read by Evaluate.
extern int score_table[2][8][kSquares];

// Rebuilds `score_table` for the piece counts now on the board. Runs at the start of each search,
// so inside one search the king tables reflect the material at its root. Who evaluates a position
// outside a search runs it first.
void InitEvaluate();

// Fills a 64-entry table for one piece and colour. Pieces other than the pawn get a value for how
// many forward squares can be reached from each square in three rounds of moves on an empty board;
// the best square gets exactly `scale`. The pawn's table (which InitEvaluate does not use) rates
// the cone of squares between the pawn and its promotion row.
void GenScoreTable(int piece, int* table, int colour, int scale);

// Width of the promotion cone of a pawn on `square`: one for its own file, and what a diagonal walk
// to either side passes up to the promotion row or the edge. Each walk counts the square that it
// starts from, so this is two more than the squares of the cone on the promotion row.
int CntAtkPromoteSq(Square square, int colour);

// Rows between a pawn on `square` and its promotion row.
int PromotePathLen(Square square, int colour);

}  // namespace tarvyle
