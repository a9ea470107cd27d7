#pragma once

#include "position/types.h"

// Pseudo-legal moves. Only queen and knight promotions are generated; castling is listed without
// looking at attacked squares.

namespace tarvyle {

// Lists all moves of the side to move as the list of ply `ply`, in slot order: en passant first,
// castling last. Selects the direction table of the side to move. Returns false, with an empty
// list, when the enemy king could be captured (the position is illegal).
bool Generate();

// The same contract for captures (without en passant) and promotions. Uses whichever direction
// table is current, so the order can follow the other side's table: the search depends on it.
bool GenerateCaptures();

// Turns the move before the write cursor into a queen promotion, writes the knight promotion at the
// cursor and returns the advanced cursor.
Move* MakePromote(Move* cursor);

}  // namespace tarvyle
