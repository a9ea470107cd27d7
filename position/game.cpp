#include "position/game.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "position/invariant.h"
#include "position/makemove.h"

namespace tarvyle {

namespace {

std::uint32_t RecordSum() { return ControlSumm(&g, static_cast<int>(sizeof g)); }

}  // namespace

// Eight bytes at a time: two to each of four lanes of 16 bits, which 128 words cannot overflow.
std::uint32_t ControlSumm(const void* data, int length) {
  constexpr std::uint64_t kLanes = 0x00FF00FF00FF00FF;
  const auto* bytes = static_cast<const unsigned char*>(data);
  std::uint32_t sum = 0;
  while (length >= 8) {
    const int words = std::min(length / 8, 128);
    std::uint64_t lanes = 0;
    for (int i = 0; i < words; ++i, bytes += 8) {
      std::uint64_t word = 0;
      std::memcpy(&word, bytes, sizeof word);
      lanes += (word & kLanes) + (word >> 8 & kLanes);
    }
    for (; lanes != 0; lanes >>= 16) sum += lanes & 0xFFFF;
    length -= 8 * words;
  }
  for (int i = 0; i < length; ++i) sum += bytes[i];
  return sum;
}

bool InsertMoveInGame(Move move, int score) {
  if (g.game_len >= kMaxGameMoves) return false;
  const std::uint32_t sum_before = RecordSum();
  MakeMove(move);
  UnMakeMove(move);
  if (RecordSum() != sum_before) {
    std::fputs("---> InsertMoveInGame: error control summ ?! \n", stderr);
    AbortOnBrokenInvariant();
  }
  MakeMove(move);
  ply = 0;
  const int index = g.game_len;
  g.game_score[index] = score;
  g.game_len = index + 1;
  g.game_max = index + 1;
  return true;
}

void UndoGameMove() {
  if (g.game_len == 0) return;
  const int index = g.game_len - 1;
  const Move move = g.game_moves[index];
  UnMakeMove(move);
  ply = 0;
  g.game_moves[index] = move;
  g.game_len = index;
}

void RedoGameMove() {
  if (g.game_len >= g.game_max) return;
  MakeMove(g.game_moves[g.game_len]);
  ply = 0;
  ++g.game_len;
}

const Move* EndGameLine() {
  g.game_moves[g.game_len] = 0;
  return g.game_moves;
}

RedoGuard::RedoGuard() : first_(g.game_len), count_(g.game_max - g.game_len) {
  std::copy_n(g.game_moves + first_, count_, moves_);
}

RedoGuard::~RedoGuard() { std::copy_n(moves_, count_, g.game_moves + first_); }

}  // namespace tarvyle
