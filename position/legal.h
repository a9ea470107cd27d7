#pragma once

#include <string_view>

#include "position/types.h"

namespace tarvyle {

// Builds the fully legal list of ply `ply`, in generated order. False, with an empty list, when the
// side not to move could lose its king; an empty list with true is mate or stalemate. At the root
// the moves that may be redone survive.
bool LegalMoveList();

// Number of moves in the list of ply `ply`.
int ListLength();

// Recognises a move of the current position (`ply` 0) by text: two squares (e2e4; what follows the
// fourth character is ignored but for a promotion's letter n, b, r, else queen) or exactly "o-o" or
// "o-o-o". Stores the move and returns true; otherwise stores nothing. Only text of these forms
// touches the move list.
bool StrToMove(std::string_view text, Move& move);

}  // namespace tarvyle
