#pragma once

#include "position/types.h"
#include "search/roothooks.h"  // IWYU pragma: export

// The root search: what the front end calls when the engine must move.

namespace tarvyle {

// Finds a move for the current position within `limit_time`: from the book, or by iterative
// deepening, or by the randomised root search when that is on. Writes it and returns true, or
// returns false when there is no legal move or none was found in time. The result goes to the learn
// table. Moves that may be redone survive.
bool SearchMove(Move& move);

}  // namespace tarvyle
