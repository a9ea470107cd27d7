#pragma once

#include "position/types.h"

// Constant tables of the evaluation terms, in 1/1000 pawn where they are bonuses, and two helpers.

namespace tarvyle {

// Relative row by colour * 8 + row: 0 = own first row, 7 = the promotion row.
// Offered to others; the engine itself never reads it.
inline constexpr int rank[16] = {7, 6, 5, 4, 3, 2, 1, 0, 0, 1, 2, 3, 4, 5, 6, 7};

// Bishop on or near the long diagonals, by square.
inline constexpr int main_diag[kSquares] = {
    2, 1, 0, 0, 0, 0, 1, 2,  //
    1, 2, 1, 0, 0, 1, 2, 1,  //
    0, 1, 2, 1, 1, 2, 1, 0,  //
    0, 0, 1, 2, 2, 1, 0, 0,  //
    0, 0, 1, 2, 2, 1, 0, 0,  //
    0, 1, 2, 1, 1, 2, 1, 0,  //
    1, 2, 1, 0, 0, 1, 2, 1,  //
    2, 1, 0, 0, 0, 0, 1, 2,
};

// Bonus of a passed pawn by colour * 8 + row.
inline constexpr int PASSED_PAWN_ROW[16] = {0, 64, 32, 16, 8, 4, 2, 0, 0, 2, 4, 8, 16, 32, 64, 0};

// By row: whose far half it is (0: White's).
inline constexpr int opponent_board[8] = {0, 0, 0, 0, 1, 1, 1, 1};

// Value classes by piece code, for the piece behind another one on a line.
inline constexpr int comp_value[7] = {0, 1, 3, 3, 5, 10, 20};

// Plain signed maximum and minimum. Offered to others; the engine itself uses those of the standard
// library.
constexpr int max(int a, int b) { return a > b ? a : b; }
constexpr int min(int a, int b) { return a < b ? a : b; }

}  // namespace tarvyle
