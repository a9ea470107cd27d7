#pragma once

#include <string>

namespace tarvyle {

// Text of the current position in a static buffer, overwritten by the next call.
const char* get_board();

// Announces the position ("position %s") unless it was the last one announced. Returns 0.
int print_board();

// Number of full moves that `half_moves` make.
constexpr int use_moves(int half_moves) { return half_moves == 0 ? 0 : (half_moves - 1) / 2 + 1; }

// The board diagram, the number of full moves and the side to move, in twelve lines.
std::string BoardDiagram();

// Prints it.
void show_board();

// Lists the moves of the game: on standard output after "moves ", or, given a path, in a file that
// takes that place, under a header with the event's name ("player - chess" without one). A file
// that cannot be written is reported on standard error.
void print_moves(const char* path, const char* event);

// Prints the moves alone, each followed by a blank, and a newline.
void PrintBareMoves();

}  // namespace tarvyle
