#pragma once

#include "position/record.h"
#include "position/types.h"

namespace tarvyle {

// Plays a move for the side to move (0: only the turn passes) and records at index
// `game_len` + `ply` what taking it back needs. Does not decide legality: a king left in check is
// found out afterwards. Aborts when the move does not agree with the board.
void MakeMove(Move move);

// Takes back the move made last, which the caller passes again. Aborts like MakeMove.
void UnMakeMove(Move move);

// Leaves in the record what making some move here and taking it back would, for moves that are
// looked at without being made: the self-check of an insertion, and saved games, count on it.
inline void LeaveTrace() {
  const int index = g.game_len + ply;
  g.game_moves[index] = 0;
  g.game_keys[index] = 0;
  g.undo[index] = {0, 0, 0, 0, g.fifty};
}

// Making and taking back for moves of doubtful origin: false, with the record left half-way,
// where the others abort or would read outside a table.
bool TryMakeMove(Move move);
bool TryUnMakeMove(Move move);

}  // namespace tarvyle
