#pragma once

#include "eval/attacksets.h"
#include "eval/distance.h"
#include "eval/mobility.h"
#include "eval/side.h"
#include "eval/tables.h"
#include "eval/weights.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

// What each knight, bishop, rook and queen is worth where it stands, besides its piece-square value
// and the threats to it. All of this is compiled into the walk over the pieces.

namespace tarvyle {

// Empty squares that the side's slider on `square` sees.
inline int EmptySeen(const Side& side, Square square) {
  return CountOf(side.reach[square] & ~Occupied());
}

// Pawns on the board, the way to the enemy king, and whether a knight or a pawn helps.
inline int KnightTerm(const Side& side, Square square) {
  const int pawns = g.piece_cnt[White][Pawn] + g.piece_cnt[Black][Pawn];
  int term = weight::kKnight + pawns / weight::kPawnsToKnightPoint;
  term -= weight::kKnightStepLoss * Distance(square, g.king_sq[side.opponent]);
  if (Contains(side.attacks.by[Knight], square)) term += weight::kKnightByKnight;
  if (!Contains(side.attacks.by[Pawn], square)) term -= weight::kKnightWithoutPawnLoss;
  return term;
}

// Lines, the pair, the long diagonals.
inline int BishopTerm(const Side& side, Square square) {
  const int pair = g.piece_cnt[side.colour][Bishop] >= 2 ? weight::kBishopPair : 0;
  return weight::kBishop + LineBonus(side, Bishop, square) +
         weight::kBishopMobility[EmptySeen(side, square)] + pair + main_diag[square];
}

// A file without own pawns, half open or open.
inline int RookFileTerm(const Side& side, int file) {
  if ((side.own[Pawn] & FileSet(file)) != 0) return 0;
  return (side.theirs[Pawn] & FileSet(file)) != 0 ? weight::kRookOnHalfOpenFile
                                                  : weight::kRookOnOpenFile;
}

// A rook on its seventh row is worth a bonus when it finds pawns there or a king behind them.
inline int RookRowTerm(const Side& side, int row) {
  if (row == prom_row[side.opponent]) return weight::kRookOnFirstRow;
  if (row != SeventhRow(side.colour)) return 0;
  const bool target = (side.theirs[Pawn] & RowSet(row)) != 0 ||
                      RowOf(g.king_sq[side.opponent]) == prom_row[side.colour];
  return target ? weight::kRookOnSeventhRow : 0;
}

// What goes into a rook's truncation.
inline int RookTerm(const Side& side, Square square) {
  const int aside = FileDistance(square, g.king_sq[side.opponent]);
  return weight::kRook + weight::kRookFile[FileOf(square)] + aside / weight::kFilesToRookPoint +
         LineBonus(side, Rook, square) + weight::kRookMobility[EmptySeen(side, square)];
}

// What is added after it.
inline int RookPlaceTerm(const Side& side, Square square) {
  const int helped = Contains(side.attacks.by[Rook], square) ? weight::kRookByRook : 0;
  const int pair = g.piece_cnt[side.colour][Rook] >= 2 ? weight::kRookPair : 0;
  return helped + pair + RookFileTerm(side, FileOf(square)) + RookRowTerm(side, RowOf(square));
}

// Lines, rook and bishop behind her, the way to both kings, what else her side has.
inline int QueenTerm(const Side& side, Square square) {
  const auto& count = g.piece_cnt[side.colour];
  const Square enemy_king = g.king_sq[side.opponent];
  int term = weight::kQueen + LineBonus(side, Queen, square) +
             weight::kQueenMobility[EmptySeen(side, square)];
  if (Contains(side.attacks.by[Rook], square)) term += weight::kQueenByRook;
  if (Contains(side.attacks.by[Bishop], square)) term += weight::kQueenByBishop;
  if (Distance(square, g.king_sq[side.colour]) >= weight::kQueenAwaySteps) {
    term -= weight::kQueenAwayLoss;
  }
  if (Distance(square, enemy_king) <= weight::kQueenNearSteps) term += weight::kQueenNearEnemy;
  term += (kLongestTaxi - Taxi(square, enemy_king)) / weight::kStepsToQueenPoint;
  const int helpers = count[Knight] + count[Bishop] + count[Rook];
  if (helpers > 0) term += helpers == 1 ? weight::kQueenWithOne : weight::kQueenWithSeveral;
  return term;
}

// The rook's conversion: the total of everything before it, and its own terms, go through a
// truncation, on purpose. Returns what that adds to `total`.
inline int AddedByTruncation(double phase, int total) {
  return static_cast<int>(weight::kRookEnding * (1 - phase) + total) - total;
}

// From this total on the truncation adds the same whatever the total. Below, it depends: a negative
// sum is truncated the other way, and in two phases kRookEnding * (1 - phase) falls short of a
// whole number by so little that adding 3 rounds the gap away, where adding 2 may keep it.
inline constexpr int kSteadyTotal = 3;

}  // namespace tarvyle
