#pragma once

#include <cstdint>

#include "position/types.h"

// Moves as the entries of a book hold them: bits 0-2 target file, 3-5 target row from the first
// rank, 6-8 and 9-11 the same of the origin, 12-14 promotion (1 knight to 4 queen). Castling is the
// king taking the rook that he castles with.

namespace tarvyle::polyglot {

// The code of a legal move.
std::uint16_t CodeOfMove(Move move);

// The legal move of the position on the board with this code, or 0. Castling is also known by the
// king's own two squares, as some programs write it. Writes the list of ply `ply`.
Move MoveOfCode(std::uint16_t code);

}  // namespace tarvyle::polyglot
