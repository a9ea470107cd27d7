#include "eval/kingsafety.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <set>
#include <string>

#include "position/directions.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/types.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_kingsafety.h"

namespace tarvyle {
namespace {

using support::PlainAttackedLines;
using support::PlainKingSafety;
using support::SetUpRoot;

// King safety under White's direction table.
int Safety(const std::string& fen, int colour) {
  SetUpRoot(fen);
  set_dir(White);
  return KingSFTY(colour);
}

struct SafetyRow {
  const char* meaning;
  const char* fen;
  int expected;  // for White
};

// In these positions Black's weight is 40 or more, so the terms are not scaled.
TEST(KingSafety, AddsTheseTerms) {
  const SafetyRow rows[] = {
      {"start position: a shield pawn on f2 earns 2",
       "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq", 2},
      {"castling to the long side alone: 4 for the short right",
       "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w Qkq", 2 - 4},
      {"castling to the short side alone: 2 for the long right",
       "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w Kkq", 2 - 2},
      {"both rights gone: 2, 4 and 12 more", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w kq",
       2 - 18},
      {"rights without rooks count as gone", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/1NBQKBN1 w KQkq",
       2 - 18},
      {"more than a full set is held at the full phase",
       "qnbqkbnq/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w kq", 2 - 18},
      {"no pawn near: 4, no shield: 8, none on the king's file: 4",
       "rnbqkbnr/pppppppp/8/8/3P1P2/8/PPP3PP/RNBQKBNR w KQkq", -4 - 8 - 4},
      {"the ninth square of the ring, d3, can hold the shield",
       "rnbqkbnr/pppppppp/8/8/5P2/3P4/PPP3PP/RNBQKBNR w KQkq", -4},
      {"pawns beside the king are near but no shield, and h1 is out of reach",
       "qrnbbnrk/pppppppp/8/8/8/8/8/PK1P4 w - -", -8 - 4 - 18},
  };
  for (const SafetyRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    EXPECT_EQ(Safety(row.fen, White), row.expected);
  }
}

TEST(KingSafety, IsNoneAgainstALoneMinorPiece) {
  for (const char* piece : {"7", "n6", "b6"}) {
    EXPECT_EQ(Safety(std::string("k") + piece + "/pppppppp/8/8/8/8/8/K7 w", White), 0) << piece;
  }
  EXPECT_NE(Safety("kr6/pppppppp/8/8/8/8/8/K7 w", White), 0);
}

TEST(KingSafety, EqualsThePlainOneUnderBothDirectionTables) {
  std::set<int> lines_seen;
  support::VisitRandomPositions(47, 4000, [&] {
    for (const int colour : {White, Black}) {
      lines_seen.insert(PlainAttackedLines(colour));
      for (const int table : {White, Black}) {
        set_dir(table);
        ASSERT_EQ(KingSFTY(colour), PlainKingSafety(colour))
            << "colour " << colour << " direction table " << table;
      }
    }
  });
  for (int lines = 0; lines <= 15; ++lines) EXPECT_TRUE(lines_seen.contains(lines)) << lines;
}

struct LinesRow {
  const char* fen;
  int colour;
  int lines;
};

TEST(KingSafety, FollowsTheDangerCurveUpAndDownAndBeyondItsEnd) {
  const LinesRow rows[] = {
      {"1p4Q1/4R3/1Qp5/8/4Q3/5KQ1/4Q3/6k1 b Q -", Black, 10},
      {"1n6/1k2q3/3n2r1/4q3/3K4/q7/6q1/5b2 b - -", White, 20},
      {"4qq1k/4qnqn/8/3K4/1q2q3/2n3r1/5q2/4q3 w Q -", White, 21},
      {"k7/1q6/5K2/2q5/4q1q1/4q3/2R4r/3qq3 w Q -", White, 24},
      {"1Q2N3/Q3QKQN/7B/1nQ5/Q3k3/Q7/3Q1Q2/QN5N b - -", Black, 26},
      {"1q2q3/2n1n3/7k/7q/3K4/q7/6q1/1qn2q1q w - -", White, 33},
  };
  for (const LinesRow& row : rows) {
    const int safety = Safety(row.fen, row.colour);
    EXPECT_EQ(PlainAttackedLines(row.colour), row.lines) << row.fen;
    EXPECT_EQ(safety, PlainKingSafety(row.colour)) << row.fen;
  }
}

TEST(KingSafety, LooksAtTheKnightJumpThatTheDirectionTableNamesFirst) {
  // Black attacks the first jump of White's table, c3 from d1's king, but not that of Black's.
  SetUpRoot("rnbqkbnr/pp1ppppp/8/8/1p6/8/8/3K4 w");
  set_dir(White);
  const int under_white = KingSFTY(White);
  set_dir(Black);
  const int under_black = KingSFTY(White);
  EXPECT_EQ(under_black - under_white, 1);
}

struct RewardRow {
  const char* fen;
  const char* castling;
  const char* set_up;  // the position after it, in which nobody has castled and no right is left
  int gain;
};

// The reward by the king's wing, and the 18 that lost rights would have cost.
TEST(KingSafety, RewardsCastlingByTheKingsWing) {
  const RewardRow rows[] = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQK2R w KQkq", "e1g1",
       "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQ1RK1 b kq", 8 + 18},
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/R3KBNR w KQkq", "e1c1",
       "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/2KR1BNR b kq", 6 + 18},
  };
  for (const RewardRow& row : rows) {
    SCOPED_TRACE(row.castling);
    SetUpRoot(row.fen);
    Move move = 0;
    ASSERT_TRUE(StrToMove(row.castling, move));
    ASSERT_TRUE(InsertMoveInGame(move, 0));
    set_dir(White);
    const int castled = KingSFTY(White);
    EXPECT_EQ(castled, PlainKingSafety(White));
    EXPECT_EQ(castled - Safety(row.set_up, White), row.gain);
  }
}

TEST(KingSafety, RewardsCastlingWhateverTheOpponentHolds) {
  // Two rooks and no queen: a phase of 12 / 40, and of the reward of 8 two and a bit.
  SetUpRoot("r3k2r/pppppppp/8/8/8/8/5PPP/4K2R w KQkq");
  Move move = 0;
  ASSERT_TRUE(StrToMove("e1g1", move));
  ASSERT_TRUE(InsertMoveInGame(move, 0));
  set_dir(White);
  // A shield of 2 + 6 + 4; (12 + 2.4) truncated, times the phase, truncated.
  EXPECT_EQ(KingSFTY(White), 14 * 12 / 40);
}

struct CastlingRow {
  const char* meaning;
  const char* fen;
  bool white_left, white_right, black_left, black_right;
};

TEST(CastlingStillPossible, NeedsKingRookAndRightOfThatSide) {
  const CastlingRow rows[] = {
      {"everything at home", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", true, true, true, true},
      {"pieces between do not matter", "rnbqkbnr/8/8/8/8/8/8/RNBQKBNR w KQkq", true, true, true,
       true},
      {"no right", "r3k2r/8/8/8/8/8/8/R3K2R w -", false, false, false, false},
      {"left rights", "r3k2r/8/8/8/8/8/8/R3K2R w Qq", true, false, true, false},
      {"right rights", "r3k2r/8/8/8/8/8/8/R3K2R w Kk", false, true, false, true},
      {"rooks of the other colour", "R3k2R/8/8/8/8/8/8/r3K2r w KQkq", false, false, false, false},
      {"other pieces in the corners", "q3k2b/8/8/8/8/8/8/Q3K2B w KQkq", false, false, false, false},
      {"kings of the other colour", "r3K2r/8/8/8/8/8/8/R3k2R w KQkq", false, false, false, false},
      {"kings elsewhere", "r2k3r/8/8/8/8/8/8/R4K1R w KQkq", false, false, false, false},
  };
  for (const CastlingRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    SetUpRoot(row.fen);
    EXPECT_EQ(LeftCastlEnable(White), row.white_left);
    EXPECT_EQ(RightCastlEnable(White), row.white_right);
    EXPECT_EQ(LeftCastlEnable(Black), row.black_left);
    EXPECT_EQ(RightCastlEnable(Black), row.black_right);
  }
}

}  // namespace
}  // namespace tarvyle
