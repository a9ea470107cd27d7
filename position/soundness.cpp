#include "position/soundness.h"

#include <cstdint>
#include <cstring>

#include "position/hashkey.h"
#include "position/types.h"

namespace tarvyle {

namespace {

// All that the helpers of pieces.h keep up is recomputed and compared. What a board does not tell,
// castling rights and the counters of moves, is not looked at.

// Counters and keys that follow from a board alone.
struct Tally {
  std::int32_t piece_cnt[2][8];
  std::int32_t material[2];
  std::int32_t pawn_file_cnt[2][8];
  std::int32_t pawn_row_cnt[2][8];
  std::uint64_t color_key[2];
};

bool IndexesAreSound(const GameRecord& record) {
  for (int colour = White; colour <= Black; ++colour) {
    if (record.list_first[colour] != FirstSlot(colour)) return false;
    if (!SlotOfColour(record.list_last[colour], colour)) return false;
    if (!OnBoard(record.king_sq[colour])) return false;
  }
  return (record.side == White || record.side == Black) && record.xside == 1 - record.side &&
         OnBoard(record.ep_sq);
}

bool SquareIsSound(const GameRecord& record, Square square) {
  const int piece = record.board[square];
  const int colour = record.color[square];
  const int slot = record.list_idx[square];
  if (piece == NoPiece) return colour == NoColour && slot == -1;
  if (piece < Pawn || piece > King || (colour != White && colour != Black)) return false;
  return SlotOfColour(slot, colour) && slot <= record.list_last[colour] &&
         record.list_sq[slot] == square;
}

bool SlotIsSound(const GameRecord& record, int slot) {
  const Square square = record.list_sq[slot];
  return square == -1 || (OnBoard(square) && record.list_idx[square] == slot);
}

Tally TallyOf(const GameRecord& record) {
  Tally tally{};
  for (Square square = 0; square < kSquares; ++square) {
    const int piece = record.board[square];
    if (piece == NoPiece) continue;
    const int colour = record.color[square];
    ++tally.piece_cnt[colour][piece];
    tally.material[colour] += value[piece];
    if (piece == Pawn) {
      ++tally.pawn_file_cnt[colour][FileOf(square)];
      ++tally.pawn_row_cnt[colour][RowOf(square)];
    }
    tally.color_key[colour] ^= PieceKey(piece, colour, square);
  }
  return tally;
}

bool CountersAreSound(const GameRecord& record) {
  const Tally tally = TallyOf(record);
  for (int colour = White; colour <= Black; ++colour) {
    if (record.material[colour] != tally.material[colour]) return false;
    if (record.color_key[colour] != tally.color_key[colour]) return false;
    if (tally.piece_cnt[colour][King] != 1) return false;
    if (record.board[record.king_sq[colour]] != King) return false;
    if (record.color[record.king_sq[colour]] != colour) return false;
  }
  return record.key == (tally.color_key[White] ^ tally.color_key[Black]) &&
         std::memcmp(record.piece_cnt, tally.piece_cnt, sizeof tally.piece_cnt) == 0 &&
         std::memcmp(record.pawn_file_cnt, tally.pawn_file_cnt, sizeof tally.pawn_file_cnt) == 0 &&
         std::memcmp(record.pawn_row_cnt, tally.pawn_row_cnt, sizeof tally.pawn_row_cnt) == 0;
}

}  // namespace

bool RecordIsSound(const GameRecord& record) {
  if (!IndexesAreSound(record)) return false;
  for (Square square = 0; square < kSquares; ++square) {
    if (!SquareIsSound(record, square)) return false;
  }
  for (int slot = 0; slot < kPieceSlots; ++slot) {
    if (!SlotIsSound(record, slot)) return false;
  }
  return CountersAreSound(record);
}

}  // namespace tarvyle
