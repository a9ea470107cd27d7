#pragma once

#include <string>
#include <string_view>

#include "position/types.h"

// Moves in standard algebraic notation. The game stays as it is, moves that may be redone included.

namespace tarvyle::tools {

// A legal move of the current position, with "+" or "#" where it gives check or mate.
std::string SanOf(Move move);

// Finds the legal move that a text names: algebraic notation (more of the origin than needed, and
// "!", "?", "+", "#" are fine, castling also with zeros) or coordinate notation. Returns 0 when
// there is none or more than one.
Move MoveOfSan(std::string_view text);

}  // namespace tarvyle::tools
