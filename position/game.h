#pragma once

#include <cstdint>

#include "position/record.h"
#include "position/score.h"
#include "position/types.h"

// The moves of the game: inserting, taking back, replaying.

namespace tarvyle {

// The score recorded with a move that the engine did not choose: above any that a search finds.
inline constexpr int kTypedMove = kInfinity + 1;

// Sum of `length` bytes from `data` on as an unsigned 32-bit number; 0 for a length of 0 or less.
std::uint32_t ControlSumm(const void* data, int length);

// Plays a legal move into the game (`ply` 0) and records `score` with it. Returns false, changing
// nothing, when the game has kMaxGameMoves moves. Before, a byte sum over the whole record must
// survive making and taking back the move; if not, a message goes to standard error and the process
// aborts. That happens also when the move's place still holds a move that may be redone:
// deliberately so.
bool InsertMoveInGame(Move move, int score);

// Takes back the last move of the game, which RedoGameMove may then replay; nothing at the start.
void UndoGameMove();

// Replays the move taken back last, if there is one.
void RedoGameMove();

// Writes a 0 behind the moves of the game, over the first move that may be redone, and returns them
// as a line.
const Move* EndGameLine();

// Puts back, at its end of life, the moves that may be redone as they were at its start: looking at
// moves and searching overwrite them. Keys and undo words stay overwritten.
class RedoGuard {
 public:
  RedoGuard();
  ~RedoGuard();
  RedoGuard(const RedoGuard&) = delete;
  RedoGuard& operator=(const RedoGuard&) = delete;

 private:
  int first_;
  int count_;
  Move moves_[kMaxGameMoves];
};

}  // namespace tarvyle
