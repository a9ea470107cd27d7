#include "position/image.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "position/enpassant.h"
#include "position/makemove.h"
#include "position/pieces.h"
#include "position/record.h"
#include "position/soundness.h"
#include "position/types.h"

namespace tarvyle {

namespace {

// Whether an en-passant capture that the generator would list here could be made.
bool EnPassantIsSound() {
  const Square target = EnPassantSquare();
  if (target == 0) return true;
  const Square pawn = target - dP[g.side];
  if (!OnBoard(target) || !OnBoard(pawn)) return false;
  if (!PawnBeside(pawn, g.side)) return true;
  return IsEmpty(target) && g.color[pawn] == g.xside && g.board[pawn] != King;
}

bool StateIsSound() { return RecordIsSound(g) && EnPassantIsSound(); }

bool LengthsAreSound() {
  return g.game_len >= 0 && g.game_len <= g.game_max && g.game_max <= kMaxGameMoves;
}

bool TakeBackToStart() {
  while (g.game_len > 0) {
    const Move move = g.game_moves[g.game_len - 1];
    if (!TryUnMakeMove(move)) return false;
    ply = 0;
    --g.game_len;
    g.game_moves[g.game_len] = move;
    if (!StateIsSound()) return false;
  }
  return true;
}

bool ReplayToEnd() {
  while (g.game_len < g.game_max) {
    if (!TryMakeMove(g.game_moves[g.game_len])) return false;
    ply = 0;
    ++g.game_len;
    if (!StateIsSound()) return false;
  }
  return true;
}

// At the start of a game: the counters are of its castling moves alone.
bool NobodyHasCastled() { return g.castled[White] == 0 && g.castled[Black] == 0; }

bool GameCanBeReplayed() {
  return LengthsAreSound() && StateIsSound() && TakeBackToStart() && NobodyHasCastled() &&
         ReplayToEnd();
}

}  // namespace

bool RestoreImage(const GameRecord& image) {
  if (image.tag != kSavedTag) return false;
  const auto saved_game = std::make_unique<GameRecord>(g);
  const auto saved_counters = std::make_unique<std::uint32_t[]>(kRepetitionMask + 1);
  std::copy_n(repetition_set, kRepetitionMask + 1, saved_counters.get());
  SetRecord(image);
  const bool sound = GameCanBeReplayed();
  std::copy_n(saved_counters.get(), kRepetitionMask + 1, repetition_set);
  ply = 0;
  SetRecord(sound ? image : *saved_game);
  return sound;
}

void TagRecord() { g.tag = kSavedTag; }

}  // namespace tarvyle
