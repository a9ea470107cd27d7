#include "eval/scoretable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "eval/phase.h"
#include "position/text.h"
#include "tests/support/eval_support.h"

namespace tarvyle {
namespace {

using support::SetUpRoot;

constexpr int kScales[7] = {0, 0, 34, 32, 32, 32, 36};

// The squares that a piece reaches in one move from `from` on an empty board.
std::vector<Square> Reach(int piece, Square from) {
  std::vector<Square> reached;
  for (Square to = 0; to < kSquares; ++to) {
    const int rows = std::abs(from / 8 - to / 8);
    const int files = std::abs(from % 8 - to % 8);
    const bool straight = (rows == 0) != (files == 0);
    const bool diagonal = rows == files && rows > 0;
    const bool reaches = piece == Knight   ? rows * files == 2
                         : piece == Bishop ? diagonal
                         : piece == Rook   ? straight
                         : piece == Queen  ? straight || diagonal
                                           : std::max(rows, files) == 1;
    if (reaches) reached.push_back(to);
  }
  return reached;
}

// The generator told again: three rounds, sums carried from each to the next.
std::vector<int> PlainTable(int piece, int colour, int scale) {
  std::vector<std::int64_t> table(kSquares);
  for (Square square = 0; square < kSquares; ++square) {
    table[square] = colour == White ? 7 - square / 8 : square / 8;
  }
  std::vector<std::int64_t> sums(kSquares, 0);
  for (int round = 1; round <= 3; ++round) {
    for (Square from = 0; from < kSquares; ++from) {
      for (const Square to : Reach(piece, from)) sums[from] += table[to];
    }
    table = sums;
  }
  const std::int64_t best = *std::max_element(table.begin(), table.end());
  std::vector<int> result;
  for (const std::int64_t sum : table) result.push_back(static_cast<int>(sum * scale / best));
  return result;
}

std::vector<int> Generated(int piece, int colour, int scale) {
  std::vector<int> table(kSquares);
  GenScoreTable(piece, table.data(), colour, scale);
  return table;
}

std::vector<int> Table(int colour, int piece) {
  return {score_table[colour][piece], score_table[colour][piece] + kSquares};
}

TEST(GenScoreTable, ReachesExactlyItsScaleAndStaysWithinIt) {
  for (int piece = Knight; piece <= King; ++piece) {
    for (const int colour : {White, Black}) {
      const std::vector<int> table = Generated(piece, colour, kScales[piece]);
      EXPECT_EQ(*std::max_element(table.begin(), table.end()), kScales[piece]) << piece;
      EXPECT_GE(*std::min_element(table.begin(), table.end()), 0) << piece;
    }
  }
}

TEST(GenScoreTable, EqualsThreeRoundsOfCarriedSums) {
  for (int piece = Knight; piece <= King; ++piece) {
    for (const int colour : {White, Black}) {
      for (const int scale : {1, 32, 34, 36, 1000}) {
        EXPECT_EQ(Generated(piece, colour, scale), PlainTable(piece, colour, scale))
            << "piece " << piece << " colour " << colour << " scale " << scale;
      }
    }
  }
}

TEST(GenScoreTable, IsTheSameForBothColoursButForTheSideOfTheBoard) {
  for (int piece = Pawn; piece <= King; ++piece) {
    const std::vector<int> white = Generated(piece, White, 32);
    const std::vector<int> black = Generated(piece, Black, 32);
    for (Square square = 0; square < kSquares; ++square) {
      EXPECT_EQ(white[square], black[square ^ 56]) << piece << " on " << chb[square];
    }
  }
}

TEST(GenScoreTable, RatesPawnsByTheirConeOverTheirWay) {
  for (const int colour : {White, Black}) {
    const std::vector<int> table = Generated(Pawn, colour, 100);
    // The best square is one step from the promotion row, off the edge: a cone of five.
    for (Square square = 0; square < kSquares; ++square) {
      const int row = square / 8;
      const int way = colour == White ? row : 7 - row;
      const int cone = CntAtkPromoteSq(square, colour);
      const int expected = row == 0 || row == 7 ? 0 : 100 * cone / (5 * way);
      EXPECT_EQ(table[square], expected) << chb[square];
    }
  }
}

TEST(PromotePathLen, CountsTheRowsToThePromotionRow) {
  for (Square square = 0; square < kSquares; ++square) {
    EXPECT_EQ(PromotePathLen(square, White), square / 8);
    EXPECT_EQ(PromotePathLen(square, Black), 7 - square / 8);
  }
}

TEST(CntAtkPromoteSq, EqualsAWalkToBothSides) {
  for (const int colour : {White, Black}) {
    const int forward = colour == White ? -1 : 1;
    for (Square square = 0; square < kSquares; ++square) {
      int cone = 1;
      for (const int aside : {-1, 1}) {
        int row = square / 8;
        int file = square % 8;
        for (; row >= 0 && row < 8 && file >= 0 && file < 8; row += forward, file += aside) ++cone;
      }
      EXPECT_EQ(CntAtkPromoteSq(square, colour), cone) << chb[square];
    }
  }
}

TEST(InitEvaluate, GivesEachPieceItsScale) {
  SetUpRoot("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
  for (const int colour : {White, Black}) {
    for (int piece = Knight; piece <= Queen; ++piece) {
      EXPECT_EQ(Table(colour, piece), Generated(piece, colour, kScales[piece])) << piece;
    }
  }
}

TEST(InitEvaluate, LeavesTheUnusedSlotsAtZero) {
  SetUpRoot("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
  for (const int colour : {White, Black}) {
    EXPECT_EQ(Table(colour, 0), std::vector<int>(kSquares, 0));
    EXPECT_EQ(Table(colour, 7), std::vector<int>(kSquares, 0));
  }
}

TEST(InitEvaluate, TakesPawnsFromTheFixedTable) {
  const std::vector<int> black = {
      0,  0,  0,  0,  0,  0,  0,  0,   //
      4,  4,  4,  0,  0,  4,  4,  4,   //
      6,  8,  2,  10, 10, 2,  8,  6,   //
      6,  8,  12, 16, 16, 12, 8,  6,   //
      7,  11, 15, 23, 23, 15, 11, 7,   //
      11, 15, 23, 31, 31, 23, 15, 11,  //
      12, 16, 24, 32, 32, 24, 16, 12,  //
      0,  0,  0,  0,  0,  0,  0,  0,
  };
  SetUpRoot("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
  EXPECT_EQ(Table(Black, Pawn), black);
  EXPECT_EQ(Table(White, Pawn), std::vector<int>(black.rbegin(), black.rend()));
  EXPECT_EQ(score_table[White][Pawn][StrToSq("e2")], 0);
  EXPECT_EQ(score_table[Black][Pawn][StrToSq("d7")], 0);
  EXPECT_EQ(score_table[White][Pawn][StrToSq("e4")], 16);
  EXPECT_EQ(score_table[Black][Pawn][StrToSq("d5")], 16);
}

struct KingRow {
  const char* meaning;
  const char* fen;
  int colour;
  bool untouched;  // else all zero
};

TEST(InitEvaluate, LeavesOrBendsTheKingTable) {
  const KingRow rows[] = {
      {"only pawns against", "k7/pppp4/8/8/8/8/PPP5/K7 w", White, true},
      {"a knight against", "kn6/pppp4/8/8/8/8/PPP5/K7 w", White, true},
      {"a bishop against", "kb6/pppp4/8/8/8/8/PPP5/K7 w", White, true},
      {"no own pawn, a full set against", "rnbqkbnr/pppppppp/8/8/8/8/8/K7 w", White, true},
      {"no own pawn, queens against", "kqqqqqqq/8/8/8/8/8/8/K7 w", White, true},
      {"the same for Black", "k7/8/8/8/8/8/PPPPPPPP/RNBQKBNR w", Black, true},
      {"queen and rook against: exactly half way", "kqr5/pppp4/8/8/8/8/PPP5/K7 w", White, false},
      {"rook, rook and two bishops", "krrbb3/pppp4/8/8/8/8/PPP5/K7 w", White, false},
      {"the same for Black", "k7/pppp4/8/8/8/8/8/KQR5 w", Black, false},
  };
  for (const KingRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    SetUpRoot(row.fen);
    const std::vector<int> plain =
        row.untouched ? Generated(King, row.colour, 36) : std::vector<int>(kSquares, 0);
    EXPECT_EQ(Table(row.colour, King), plain);
  }
}

// A set of pieces of each weight that pieces can have, as letters.
std::map<int, std::string> ArmiesByWeight() {
  std::map<int, std::string> armies;
  for (unsigned q = 0; q <= 4; ++q) {
    for (unsigned r = 0; r <= 4; ++r) {
      for (unsigned n = 0; n <= 3; ++n) {
        for (unsigned b = 0; b <= 3; ++b) {
          const auto weight = static_cast<int>(14 * q + 6 * r + 3 * n + 4 * b);
          armies[weight] =
              std::string(q, 'q') + std::string(r, 'r') + std::string(n, 'n') + std::string(b, 'b');
        }
      }
    }
  }
  return armies;
}

// White has a pawn, Black these pieces; or, flipped, the other way about.
std::string FenAgainst(const std::string& army, bool flipped) {
  std::string board = "k";
  for (std::size_t i = 0; i < army.size(); ++i) board += (i == 7 ? "/" : "") + army.substr(i, 1);
  const auto used = army.size() + 1;
  if (used % 8 != 0) board += std::to_string(8 - used % 8);
  board += used > 8 ? "/8/8/8/8/P7/7K" : "/8/8/8/8/8/P7/7K";
  if (flipped) {
    for (char& letter : board) {
      if (std::isalpha(static_cast<unsigned char>(letter)) != 0) letter ^= 32;
    }
  }
  return board + " w";
}

TEST(InitEvaluate, BendsTheKingTableInEveryPhase) {
  constexpr int kFileBonus[8] = {0, 0, 3, 4, 4, 3, 0, 0};
  constexpr std::int64_t kOne = std::int64_t{1} << 55;  // every phase is a multiple of 1 / kOne
  int phases = 0;
  for (const auto& [weight, army] : ArmiesByWeight()) {
    for (const int colour : {White, Black}) {
      SetUpRoot(FenAgainst(army, colour == Black));
      ASSERT_EQ(OpponentWeight(colour), weight) << army;
      ++phases;
      const double phase = weight <= 4 ? 0.0 : std::min(weight, 40) / 40.0;
      const auto s = static_cast<std::int64_t>(std::ldexp(phase, 55));
      const std::vector<int> plain = Generated(King, colour, 36);
      for (Square square = 0; square < kSquares; ++square) {
        const int v = plain[square] + (phase > 0.5 ? kFileBonus[square % 8] : 0);
        EXPECT_EQ(score_table[colour][King][square], v * (kOne - 2 * s) / kOne)
            << "weight " << weight << " on " << chb[square];
      }
    }
  }
  EXPECT_GT(phases, 90);
}

TEST(InitEvaluate, BuildsEverythingAnewEachTime) {
  SetUpRoot("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
  int first[2][8][kSquares];
  std::memcpy(first, score_table, sizeof first);
  std::fill_n(&score_table[0][1][0], 6 * kSquares, 777);
  std::fill_n(&score_table[1][1][0], 6 * kSquares, -777);
  InitEvaluate();
  EXPECT_EQ(std::memcmp(first, score_table, sizeof first), 0);
}

}  // namespace
}  // namespace tarvyle
