#pragma once

#include <cstdio>

namespace tarvyle {

// Writes one 64-entry table as text: a line "colour piece", then a line for each row, rank 8 first,
// of eight values in three characters and a comma. Returns the result of the last write.
int PrintArray(std::FILE* stream, const int* table, int piece, int colour);

// Writes all twelve tables of `score_table`, White's first, to an open stream.
void PrintScoreTables(std::FILE* stream);

// Writes them to "sctable.txt" in the working directory. When that cannot be opened, one line goes
// to standard error and nothing is written. Returns 0.
// Offered to others; the engine itself never calls it.
int print_score_tbl();

}  // namespace tarvyle
