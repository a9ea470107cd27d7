#include "eval/scoretable.h"

#include <algorithm>
#include <cstring>

#include "eval/cache.h"
#include "eval/phase.h"
#include "position/directions.h"
#include "position/record.h"

namespace tarvyle {

int score_table[2][8][kSquares];

namespace {

// Black's pawn values by square; White's are their point reflection. A pawn still on d7/e7 gets
// nothing, and one that only went to c6/f6 less than one at home: the centre is to be taken.
constexpr int kPawnTable[kSquares] = {
    0,  0,  0,  0,  0,  0,  0,  0,   //
    4,  4,  4,  0,  0,  4,  4,  4,   //
    6,  8,  2,  10, 10, 2,  8,  6,   //
    6,  8,  12, 16, 16, 12, 8,  6,   //
    7,  11, 15, 23, 23, 15, 11, 7,   //
    11, 15, 23, 31, 31, 23, 15, 11,  //
    12, 16, 24, 32, 32, 24, 16, 12,  //
    0,  0,  0,  0,  0,  0,  0,  0,
};

constexpr int kScale[7] = {0, 0, 34, 32, 32, 32, 36};  // best value of a table, by piece code

constexpr int kKingFileBonus[8] = {0, 0, 3, 4, 4, 3, 0, 0};  // by file, in the opening phase

constexpr int kRounds = 3;

// Adds to acc[from] the table values of every square that the piece reaches from there.
void AddReach(int piece, Square from, const int* table, int* acc) {
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    for (int wide = ToWide(from) + dir_white[d]; !OffBoard(wide); wide += dir_white[d]) {
      acc[from] += table[FromWide(wide)];
      if (!IsSlider(piece)) break;
    }
  }
}

void GenPieceTable(int piece, int* table, int colour, int scale) {
  // The seed is how many rows a square lies ahead of the owner's first row.
  for (Square square = 0; square < kSquares; ++square) {
    table[square] = colour == White ? 7 - RowOf(square) : RowOf(square);
  }
  // Sums are carried from round to round, which is meant.
  int acc[kSquares] = {};
  for (int round = 0; round < kRounds; ++round) {
    for (Square square = 0; square < kSquares; ++square) AddReach(piece, square, table, acc);
    std::memcpy(table, acc, sizeof acc);
  }
  const int best = *std::max_element(acc, acc + kSquares);
  for (Square square = 0; square < kSquares; ++square) table[square] = table[square] * scale / best;
}

void GenPawnTable(int* table, int colour, int scale) {
  double raw[kSquares] = {};
  double largest = 0.0;
  for (Square square = 8; square < 56; ++square) {
    raw[square] =
        static_cast<double>(CntAtkPromoteSq(square, colour)) / PromotePathLen(square, colour);
    largest = std::max(largest, raw[square]);
  }
  for (Square square = 0; square < kSquares; ++square) {
    table[square] = static_cast<int>(raw[square] * scale / largest);
  }
}

// Pulls the king to the centre when the opponent has little left, and repels it from there, most
// of all on the central files, when he has much. Extended precision decides some of the points.
void BendKingTable(int colour, double phase) {
  const bool opening = phase > 0.5;
  for (Square square = 0; square < kSquares; ++square) {
    int& entry = score_table[colour][King][square];
    const long double v = entry + (opening ? kKingFileBonus[FileOf(square)] : 0);
    const long double s = phase;
    entry = static_cast<int>(v * (1.0L - s) - v * s);
  }
}

// The tables of all pieces but pawns, before the kings' are bent.
struct PieceTables {
  PieceTables() {
    for (int colour = White; colour <= Black; ++colour) {
      for (int piece = Knight; piece <= King; ++piece) {
        GenScoreTable(piece, of[colour][piece], colour, kScale[piece]);
      }
    }
  }

  int of[2][8][kSquares] = {};
};

}  // namespace

int CntAtkPromoteSq(Square square, int colour) {
  const int rows = PromotePathLen(square, colour);
  return 1 + std::min(rows + 1, FileOf(square) + 1) + std::min(rows + 1, 8 - FileOf(square));
}

int PromotePathLen(Square square, int colour) {
  return colour == White ? RowOf(square) : 7 - RowOf(square);
}

void GenScoreTable(int piece, int* table, int colour, int scale) {
  if (piece == Pawn) {
    GenPawnTable(table, colour, scale);
  } else {
    GenPieceTable(piece, table, colour, scale);
  }
}

void InitEvaluate() {
  // What does not depend on the position is worked out once.
  static const PieceTables kTables;
  ForgetScores();
  std::memcpy(score_table, kTables.of, sizeof score_table);
  for (Square square = 0; square < kSquares; ++square) {
    score_table[Black][Pawn][square] = kPawnTable[square];
    score_table[White][Pawn][square] = kPawnTable[63 - square];
  }
  // A side without pawns needs its king in the centre, whatever the opponent has.
  for (int colour = White; colour <= Black; ++colour) {
    BendKingTable(colour, g.piece_cnt[colour][Pawn] > 0 ? Stage(colour) : 0.0);
  }
}

}  // namespace tarvyle
