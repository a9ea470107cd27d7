#pragma once

#include <cstdint>

#include "position/hashkey.h"
#include "position/invariant.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

// The helpers that do all the bookkeeping of the position: lift, place and move one piece, and set
// a whole record. Whatever is kept incrementally is updated here and nowhere else.

namespace tarvyle {

// What a broken invariant leads to: the end of the process, or a refusal by return value (used
// when a loaded game is tried out).
enum class OnBroken { kAbort, kRefuse };

template <OnBroken kHow>
inline bool Require(bool condition) {
  if constexpr (kHow == OnBroken::kAbort) {
    if (!condition) [[unlikely]] {
      AbortOnBrokenInvariant();
    }
    return true;
  }
  return condition;
}

inline void KeyStep(int colour, std::uint64_t step) {
  g.key ^= step;
  g.color_key[colour] ^= step;
}

// Counters, keys and sets of a piece that comes (`delta` 1) or goes (-1).
inline void AccountForPiece(int piece, int colour, Square square, int slot, int delta) {
  g.material[colour] += delta * value[piece];
  g.piece_cnt[colour][piece] += delta;
  if (piece == Pawn) {
    g.pawn_file_cnt[colour][FileOf(square)] += delta;
    g.pawn_row_cnt[colour][RowOf(square)] += delta;
    board_sets.pawn_slots ^= 1u << slot;
  }
  KeyStep(colour, PieceKey(piece, colour, square));
  // A piece that comes and one that goes flip the same bits.
  board_sets.of[colour][piece] ^= SetOf(square);
  board_sets.colour[colour] ^= SetOf(square);
  board_sets.slots ^= 1u << slot;
  board_sets.slot_key ^= slot_rnd[slot][square];
}

// Counters, keys and sets of a piece that stays on the board but changes its square.
inline void AccountForStep(int piece, int colour, Square from, Square to, int slot) {
  if (piece == Pawn) {
    --g.pawn_file_cnt[colour][FileOf(from)];
    --g.pawn_row_cnt[colour][RowOf(from)];
    ++g.pawn_file_cnt[colour][FileOf(to)];
    ++g.pawn_row_cnt[colour][RowOf(to)];
  }
  KeyStep(colour, PieceKey(piece, colour, from) ^ PieceKey(piece, colour, to));
  const SquareSet both = SetOf(from) | SetOf(to);
  board_sets.of[colour][piece] ^= both;
  board_sets.colour[colour] ^= both;
  board_sets.slot_key ^= slot_rnd[slot][from] ^ slot_rnd[slot][to];
}

// Takes the piece in `slot` off `square`.
template <OnBroken kHow>
inline bool LiftPiece(int piece, int colour, Square square, int slot) {
  if (!Require<kHow>(g.board[square] == piece && g.color[square] == colour)) return false;
  if (!Require<kHow>(g.list_idx[square] == slot && g.list_sq[slot] == square)) return false;
  g.list_idx[square] = -1;
  g.board[square] = NoPiece;
  g.color[square] = NoColour;
  g.list_sq[slot] = -1;
  AccountForPiece(piece, colour, square, slot, -1);
  return true;
}

// Puts a piece on the empty `square` into the free `slot`.
template <OnBroken kHow>
inline bool PlacePiece(int piece, int colour, Square square, int slot) {
  if constexpr (kHow == OnBroken::kRefuse) {
    // What comes back on trial is what a saved undo record says: anything.
    if (piece < Pawn || piece > King || !OnBoard(square) || !SlotOfColour(slot, colour)) {
      return false;
    }
  }
  if (!Require<kHow>(g.board[square] == NoPiece && g.list_idx[square] == -1)) return false;
  if (!Require<kHow>(g.list_sq[slot] == -1)) return false;
  g.list_idx[square] = slot;
  g.board[square] = piece;
  g.color[square] = colour;
  g.list_sq[slot] = square;
  if (piece == King) g.king_sq[colour] = square;
  AccountForPiece(piece, colour, square, slot, 1);
  return true;
}

// Takes a piece from one square to another, empty one.
template <OnBroken kHow>
inline bool MovePiece(int piece, int colour, Square from, Square to) {
  if (!Require<kHow>(OnBoard(from) && OnBoard(to))) return false;
  const int slot = g.list_idx[from];
  if (!Require<kHow>(g.board[from] == piece && g.color[from] == colour)) return false;
  if (!Require<kHow>(g.list_sq[slot] == from)) return false;
  if (!Require<kHow>(g.board[to] == NoPiece && g.list_idx[to] == -1)) return false;
  g.list_idx[from] = -1;
  g.board[from] = NoPiece;
  g.color[from] = NoColour;
  g.list_idx[to] = slot;
  g.board[to] = piece;
  g.color[to] = colour;
  g.list_sq[slot] = to;
  if (piece == King) g.king_sq[colour] = to;
  AccountForStep(piece, colour, from, to, slot);
  return true;
}

// Makes `record` the game, as it stands.
void SetRecord(const GameRecord& record);

// Makes `g` the empty record: no piece, White to move, Black's slots starting at 16.
void ClearRecord();

// Puts a piece on an empty square into a free slot, with all counters and keys. Aborts when the
// square or the slot is taken.
void InsertPiece(int piece, int colour, Square square, int slot);

// Undoes exactly that. Aborts when piece, colour, square and slot do not agree with the board.
// Offered to others; the engine itself never calls it.
void RemovePiece(int piece, int colour, Square square, int slot);

}  // namespace tarvyle
