#pragma once

#include "eval/attacksets.h"
#include "eval/distance.h"
#include "eval/mobility.h"
#include "eval/side.h"
#include "eval/tables.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

// What each piece is worth where it stands, besides its piece-square value, the threats to it and
// its pawns or king: one procedure a term, all compiled into the walk over the pieces. They need
// the attack sets of the position.

namespace tarvyle {

// By the number of empty squares seen, up to the most that there can be.
inline constexpr int kRookMobility[15] = {0, 1, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 9, 9, 10};
inline constexpr int kBishopMobility[14] = {0, 1, 2, 4, 5, 6, 7, 8, 9, 10, 10, 11, 11, 12};
inline constexpr int kQueenMobility[28] = {0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3,
                                           3, 4, 4, 4, 4, 4, 5, 5, 5, 5, 5, 5, 5, 6};

inline constexpr int kRookFileBonus[8] = {0, 0, 1, 1, 1, 1, 0, 0};  // by file

// Empty squares that the slider on `square` sees.
inline int EmptySeen(Square square) { return CountOf(slider_reach[square] & ~Occupied()); }

// Pawns on the board, the way to the enemy king, and whether a knight or a pawn helps.
inline int KnightTerm(const Side& side, Square square) {
  int term = 50 + (g.piece_cnt[White][Pawn] + g.piece_cnt[Black][Pawn]) / 2;
  term -= Distance(square, g.king_sq[side.opponent]);
  if (Contains(side.attacks.by[Knight], square)) term += 1;
  if (!Contains(side.attacks.by[Pawn], square)) term -= 1;
  return term;
}

// Lines, the pair, the long diagonals.
inline int BishopTerm(const Side& side, Square square) {
  const int pair = g.piece_cnt[side.colour][Bishop] >= 2 ? 8 : 0;
  return 51 + LineBonus(side, Bishop, square) + kBishopMobility[EmptySeen(square)] + pair +
         main_diag[square];
}

// A file without own pawns, half open or open.
inline int RookFileTerm(const Side& side, int file) {
  if ((side.own[Pawn] & FileSet(file)) != 0) return 0;
  return (side.theirs[Pawn] & FileSet(file)) != 0 ? 4 : 10;
}

// A rook on its seventh row is worth a bonus when it finds pawns there or a king behind them.
inline int RookRowTerm(const Side& side, int row) {
  const int own_rank = rank[side.colour * 8 + row];
  if (own_rank == 0) return 1;
  if (own_rank != 6) return 0;
  const int king_row = RowOf(g.king_sq[side.opponent]);
  const bool target =
      (side.theirs[Pawn] & RowSet(row)) != 0 || rank[side.colour * 8 + king_row] == 7;
  return target ? 8 : 0;
}

// What goes into a rook's truncation.
inline int RookTerm(const Side& side, Square square) {
  const int file = FileOf(square);
  return 37 + kRookFileBonus[file] + FileDistance(square, g.king_sq[side.opponent]) / 2 +
         LineBonus(side, Rook, square) + kRookMobility[EmptySeen(square)];
}

// What is added after it.
inline int RookPlaceTerm(const Side& side, Square square) {
  const int helped = Contains(side.attacks.by[Rook], square) ? 1 : 0;
  const int pair = g.piece_cnt[side.colour][Rook] >= 2 ? 1 : 0;
  return helped + pair + RookFileTerm(side, FileOf(square)) + RookRowTerm(side, RowOf(square));
}

// Lines, rook and bishop behind her, the way to both kings, other officers of her side.
inline int QueenTerm(const Side& side, Square square) {
  const auto& count = g.piece_cnt[side.colour];
  const Square enemy_king = g.king_sq[side.opponent];
  int term = 107 + LineBonus(side, Queen, square) + kQueenMobility[EmptySeen(square)];
  if (Contains(side.attacks.by[Rook], square)) term += 1;
  if (Contains(side.attacks.by[Bishop], square)) term += 1;
  if (Distance(square, g.king_sq[side.colour]) >= 3) term -= 1;
  if (Distance(square, enemy_king) < 4) term += 5;
  term += (14 - Taxi(square, enemy_king)) / 2;
  const int helpers = count[Knight] + count[Bishop] + count[Rook];
  if (helpers > 0) term += helpers == 1 ? 2 : 6;
  return term;
}

// The rook's conversion: the total of everything before it, and its own terms, go through a
// truncation, on purpose. Returns what that adds to `total`.
inline int Truncated(double phase, int total) {
  return static_cast<int>(10 * (1 - phase) + total) - total;
}

// From this total on the truncation adds the same whatever the total. Below, it depends: a negative
// sum is truncated the other way, and in two phases 10 * (1 - phase) falls short of a whole number
// by so little that adding 3 rounds the gap away, where adding 2 may keep it.
inline constexpr int kSteadyTotal = 3;

}  // namespace tarvyle
