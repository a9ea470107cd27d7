#pragma once

#include <cstdio>

#include "position/types.h"
#include "pv/tree.h"

// The tree of principal variations as a table of lines, for looking at.

namespace tarvyle {

inline constexpr int kPvRows = 90;
inline constexpr int kPvColumns = 10;

// One printed line a row, one ply a column; filled only for printing.
extern PvNode* pvTable[kPvRows][kPvColumns];

// One past the last row that holds a node; 0 when the table is empty.
int GetFirstY();

// Lays out a list and all below it: its first three nodes in `column`, each with its first reply in
// the same row, alternatives below everything laid out so far. Nodes outside the table are left
// out.
void pvTreeToTable(PvNode* list, int column, int row);

// Lays out the whole tree and prints the rows, moves in seven characters, "-" for an empty cell.
void pvPrint(PvTree& tree, std::FILE* out);

// Writes a move's text with "+" behind it when `check` is set, and returns the buffer, which must
// hold kMoveTextSize bytes.
// Offered to others; the engine itself never calls it.
char* PrintMove(char* buffer, Move move, bool check);

}  // namespace tarvyle
