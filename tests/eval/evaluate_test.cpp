#include "eval/evaluate.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "eval/cache.h"
#include "eval/scoretable.h"
#include "position/directions.h"
#include "position/record.h"
#include "position/types.h"
#include "tests/support/data_rows.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_evaluation.h"

namespace tarvyle {
namespace {

using support::DataRows;
using support::EvaluateFully;
using support::kFar;
using support::PlainEvaluate;
using support::PlainSide;
using support::PlainSideScore;
using support::SetUpRoot;
using support::VisitRandomPositions;
using Amounts = std::vector<int>;

// The plain evaluation's ledger of one side, after holding the total against the engine's.
PlainSide Ledger(const std::string& fen, int colour) {
  SetUpRoot(fen);
  EXPECT_EQ(EvaluateFully(), PlainEvaluate(-kFar, kFar)) << fen;
  return PlainSideScore(colour);
}

TEST(Evaluate, EqualsTheReferenceValues) {
  const auto rows = DataRows("positions.tsv");
  ASSERT_GT(rows.size(), 1000u);
  for (const auto& row : rows) {
    SetUpRoot(row[0]);
    EXPECT_EQ(EvaluateFully(), std::stoi(row[1])) << row[0];
  }
}

TEST(PlainEvaluation, EqualsTheReferenceValues) {
  for (const auto& row : DataRows("positions.tsv")) {
    SetUpRoot(row[0]);
    EXPECT_EQ(PlainEvaluate(-kFar, kFar), std::stoi(row[1])) << row[0];
  }
}

TEST(Evaluate, EqualsThePlainEvaluationUnderBothDirectionTables) {
  VisitRandomPositions(43, 4000, [] {
    for (const int table : {White, Black}) {
      set_dir(table);
      ASSERT_EQ(EvaluateFully(), PlainEvaluate(-kFar, kFar)) << "direction table " << table;
    }
  });
}

TEST(Evaluate, LeavesTheRecordAlone) {
  VisitRandomPositions(44, 300, [] {
    const GameRecord before = g;
    EvaluateFully();
    EXPECT_EQ(std::memcmp(&before, &g, sizeof g), 0);
  });
}

TEST(Evaluate, IsNegatedForTheOtherSide) {
  support::Random random(45);
  for (int i = 0; i < 300; ++i) {
    std::string fen = support::RandomBoard(random);
    SetUpRoot(fen);
    set_dir(White);
    const int first = EvaluateFully();
    const int first_side = g.side;
    const auto field = fen.find(first_side == White ? " w " : " b ");
    fen[field + 1] = first_side == White ? 'b' : 'w';
    SetUpRoot(fen);
    set_dir(White);
    EXPECT_EQ(EvaluateFully(), -first) << fen;
  }
}

TEST(Evaluate, UsesThePieceSquareTablesAsTheyStand) {
  SetUpRoot("7k/8/8/8/8/8/PP6/KN6 w");
  const int before = EvaluateFully();
  score_table[White][Knight][57] += 13;
  ForgetScores();
  EXPECT_EQ(EvaluateFully(), before + 13);
  SetUpRoot("7k/8/8/8/8/8/PP6/KN6 b");
  score_table[White][Knight][57] += 13;
  ForgetScores();
  EXPECT_EQ(EvaluateFully(), -before - 13);
}

struct DrawRow {
  const char* meaning;
  const char* fen;
  bool drawn;
};

TEST(Evaluate, KnowsTheEndingsThatNobodyCanWin) {
  const DrawRow rows[] = {
      {"bare kings", "k7/8/8/8/8/8/8/7K w", true},
      {"knight against bishop", "k7/b7/8/8/8/8/6N1/7K w", true},
      {"knight and bishop against knight", "k7/n7/8/8/8/5B2/6N1/7K w", false},
      {"knight and bishop against a bare king", "k7/8/8/8/8/5B2/6N1/7K w", false},
      {"two knights against two knights", "k7/nn6/8/8/8/5N2/6N1/7K w", true},
      {"two bishops", "k7/8/8/8/8/5B2/6B1/7K w", false},
      {"two bishops of the side not to move", "k7/8/8/8/8/5B2/6B1/7K b", false},
      {"three knights", "k7/8/8/8/8/4NN2/6N1/7K w", false},
      {"a lone pawn", "k7/8/8/8/8/8/6P1/7K w", false},
      {"a pawn against a knight", "k7/n7/8/8/8/8/6P1/7K w", false},
      {"a rook", "k7/8/8/8/8/8/6R1/7K w", false},
      {"a queen of the side not to move", "k7/q7/8/8/8/8/8/7K w", false},
  };
  for (const DrawRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    SetUpRoot(row.fen);
    EXPECT_EQ(EvaluateFully() == 0, row.drawn);
    EXPECT_EQ(EvaluateFully(), PlainEvaluate(-kFar, kFar));
    EXPECT_EQ(Evaluate(500000, 600000) == 0, row.drawn) << "the window is looked at later";
  }
}

struct WindowRow {
  int alpha;
  int beta;
  bool bare;  // the answer is the material difference
};

TEST(Evaluate, AnswersWithBareMaterialOutsideTheWindowOnly) {
  SetUpRoot("rnbqkbnr/pppppppp/8/8/8/8/PPPP1PPP/RNBQKBNR b KQkq -");
  constexpr int kMaterial = 1000;  // the pawn that White misses
  const int full = EvaluateFully();
  ASSERT_NE(full, kMaterial);
  const WindowRow rows[] = {
      {-kFar, kFar, false},
      {kMaterial + 499, kFar, false},
      {kMaterial + 500, kFar, true},
      {-kFar, kMaterial - 499, false},
      {-kFar, kMaterial - 500, true},
      {kMaterial - 499, kMaterial - 499, false},
      {kMaterial + 499, kMaterial + 499, false},
      {900000, 900001, true},
      {-900001, -900000, true},
  };
  for (const WindowRow& row : rows) {
    EXPECT_EQ(Evaluate(row.alpha, row.beta), row.bare ? kMaterial : full)
        << row.alpha << " " << row.beta;
  }
}

TEST(Evaluate, MaterialOfTheLazyAnswerIsTheSideToMoves) {
  SetUpRoot("k7/8/8/8/8/8/8/KQQ5 b");
  EXPECT_EQ(Evaluate(0, 1), -20000);
  SetUpRoot("k7/8/8/8/8/8/8/KQQ5 w");
  EXPECT_EQ(Evaluate(0, 1), 20000);
}

TEST(Evaluate, TheSecondHangingPieceCostsTenAndEachOtherFour) {
  const PlainSide side = Ledger("r1r1r1r1/7k/8/8/N1N1N1N1/8/8/7K w", White);
  EXPECT_EQ(side.Of("hanging"), (Amounts{-4, -10, -4, -4}));
  EXPECT_EQ(side.Of("attacked"), (Amounts{-1, -1, -1, -1}));
  EXPECT_EQ(maxHungValue[White], 3000);
  EXPECT_EQ(maxHungValue[Black], 0);
}

TEST(Evaluate, AHangingPawnCostsOneMoreAndKeepsItsPawnTerms) {
  const PlainSide side = Ledger("r6k/8/8/8/P7/8/8/7K w", White);
  EXPECT_EQ(side.Of("hanging"), Amounts{-4});
  EXPECT_EQ(side.Of("hanging pawn"), Amounts{-1});
  EXPECT_EQ(side.Of("isolated"), Amounts{-8});
  EXPECT_EQ(maxHungValue[White], 1000);
}

struct ThreatRow {
  const char* meaning;
  const char* fen;
  int attacked;
  Amounts hanging;
  Amounts weak;
  Amounts cheaper;
};

TEST(Evaluate, WeighsAttackersAgainstDefenders) {
  const ThreatRow rows[] = {
      {"not attacked", "7k/8/8/8/3N4/8/8/7K w", 0, {}, {}, {}},
      {"attacked by a dearer piece, defended by a cheaper one",
       "3r3k/8/8/8/3N4/4P3/8/7K w",
       -1,
       {},
       {},
       {}},
      {"attacked by a dearer piece, defended by a dearer one still",
       "3r3k/8/8/8/3N4/8/8/3Q3K w",
       -1,
       {},
       {},
       {-1}},
      {"attacked by a pawn: hanging although defended",
       "7k/8/8/4p3/3N4/4P3/8/7K w",
       -1,
       {-4},
       {},
       {}},
      {"bishop attacks knight: minor pieces count as equal",
       "7k/6b1/8/8/3N4/4P3/8/7K w",
       -1,
       {},
       {},
       {}},
      {"bishop attacks a knight that a bishop defends", "7k/6b1/8/8/3N4/8/8/6BK w", -1, {}, {}, {}},
      {"knight attacks rook: hanging although defended",
       "7k/8/4n3/8/3R4/8/8/3R3K w",
       -1,
       {-4},
       {},
       {}},
      {"rook attacks rook", "3r3k/8/8/8/3R4/8/8/3R3K w", -1, {}, {}, {}},
      {"two attackers, one defender, not a pawn", "3r3k/3r4/8/8/3N4/4P3/8/7K w", -2, {}, {}, {}},
      {"pawn defended by a piece, two attackers", "3r3k/3r4/8/8/3P4/8/8/3R3K w", -2, {}, {-1}, {}},
      {"pawn defended by two pieces, two attackers",
       "3r3k/3r4/8/8/3P4/8/3R4/3R3K w",
       -2,
       {},
       {},
       {}},
      {"pawn defended by a pawn, two attackers", "3r3k/3r4/8/8/3P4/4P3/8/7K w", -2, {}, {}, {}},
      {"pawn attacks pawn, defended by a piece", "7k/8/8/4p3/3P4/8/8/3R3K w", -1, {}, {}, {-1}},
      {"pawn attacks pawn, defended by a pawn", "7k/8/8/4p3/3P4/4P3/8/7K w", -1, {}, {}, {}},
  };
  for (const ThreatRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    const PlainSide side = Ledger(row.fen, White);
    int attacked = 0;
    for (const int amount : side.Of("attacked")) attacked += amount;
    EXPECT_EQ(attacked, row.attacked);
    EXPECT_EQ(side.Of("hanging"), row.hanging);
    EXPECT_EQ(side.Of("weak pawn"), row.weak);
    EXPECT_EQ(side.Of("cheaper attacker"), row.cheaper);
  }
}

struct HungRow {
  const char* fen;
  int white;
  int black;
};

TEST(MaxHungValue, IsTheDearestHangingPieceOfEachSide) {
  const HungRow rows[] = {
      {"7k/8/8/8/8/8/8/7K w", 0, 0},
      {"7k/8/8/8/8/8/R7/7K w", 0, 0},
      {"r6k/8/8/N6Q/8/8/8/r6K w", 1000000, 1000000},
      {"r6k/8/8/8/N6P/8/8/K6r w", 1000000, 0},
      {"rq6/7k/8/8/N7/8/PQ6/7K b", 3000, 0},
  };
  for (const HungRow& row : rows) {
    SetUpRoot(row.fen);
    EvaluateFully();
    EXPECT_EQ(maxHungValue[White], PlainSideScore(White).dearest_hanging) << row.fen;
    EXPECT_EQ(maxHungValue[Black], PlainSideScore(Black).dearest_hanging) << row.fen;
    EXPECT_EQ(maxHungValue[White], row.white) << row.fen;
    EXPECT_EQ(maxHungValue[Black], row.black) << row.fen;
  }
}

TEST(MaxHungValue, EqualsThePlainEvaluationsInRandomPositions) {
  VisitRandomPositions(46, 1000, [] {
    EvaluateFully();
    for (const int colour : {White, Black}) {
      EXPECT_EQ(maxHungValue[colour], PlainSideScore(colour).dearest_hanging);
    }
  });
}

TEST(MaxHungValue, IsResetByEveryCallEvenALazyOne) {
  for (const char* fen : {"k7/8/8/8/8/8/8/KQ6 w", "k7/8/8/8/8/8/8/KN6 w"}) {
    SetUpRoot(fen);
    maxHungValue[White] = maxHungValue[Black] = 5;
    Evaluate(900000, 900001);
    EXPECT_EQ(maxHungValue[White], 0);
    EXPECT_EQ(maxHungValue[Black], 0);
  }
}

TEST(Evaluate, GivesAnUnstoppablePawnOnTheSeventhItsFullWorth) {
  const PlainSide side = Ledger("8/P7/8/8/8/7k/8/K7 w", White);
  EXPECT_EQ(side.Of("passed"), Amounts{12 + 64});
  EXPECT_EQ(side.Of("unstoppable"), Amounts{512});
  EXPECT_EQ(Ledger("2k5/P7/8/8/8/8/8/K7 w", White).Of("unstoppable"), Amounts{512});
  EXPECT_EQ(Ledger("1k6/P7/8/8/8/8/8/K7 w", White).Of("unstoppable"), Amounts{});
}

struct TermRow {
  const char* meaning;
  const char* fen;
  const char* term;
  Amounts amounts;
};

TEST(Evaluate, AddsTheTermsOfEachPiece) {
  const TermRow rows[] = {
      {"knight: 50, no pawn on the board, 3 from the king, no pawn behind it",
       "7k/8/8/4N3/8/8/8/KQ6 w",
       "knight",
       {50 - 3 - 1}},
      {"knight: half of five pawns, a knight and a pawn behind it",
       "7k/ppp5/8/4N3/5P2/5N2/P7/K7 w",
       "knight",
       {50 + 2 - 3 + 1, 50 + 2 - 5 + 1 - 1}},
      {"bishop: ten squares seen, on the long diagonal",
       "7k/p7/8/8/3B4/8/8/K7 w",
       "bishop",
       {51 + 10 + 2}},
      {"bishop pair", "7k/8/8/8/8/8/4P1P1/K4BB1 w", "bishop", {51 + 8, 51 + 8 + 8 + 1}},
      {"second rook term: rook behind rook, two rooks",
       "6k1/p6p/8/8/8/8/R7/R6K w",
       "rook pair",
       {1, 1, 1, 1}},
      {"rook on a file with an enemy pawn, and on an open one",
       "6k1/p7/8/8/8/8/8/R2R3K w",
       "rook file",
       {4, 10}},
      {"rook on a file with an own pawn", "6k1/8/8/8/8/8/P7/R6K w", "rook file", {}},
      {"rook on its first row", "6k1/p7/8/8/8/8/8/R6K w", "rook row", {1}},
      {"rook on its seventh row with a pawn there", "8/R6p/6k1/8/8/8/8/7K w", "rook row", {8}},
      {"rook on its seventh row before the king", "6k1/R7/8/8/8/8/8/7K w", "rook row", {8}},
      {"rook on its seventh row with neither", "8/R7/6k1/8/8/8/8/7K w", "rook row", {}},
      {"queen with rook and bishop behind it",
       "k7/8/8/8/8/3Q4/4B3/3R3K w",
       "queen support",
       {1, 1}},
      {"queen far from her king", "k7/8/8/8/8/8/8/Q2K4 w", "queen far from king", {-1}},
      {"queen beside her king", "k7/8/8/8/8/8/8/Q1K5 w", "queen far from king", {}},
      {"queen three squares from the enemy king", "k7/8/8/Q7/8/8/8/K7 w", "queen near king", {5}},
      {"queen four squares from him", "k7/8/8/8/Q7/8/8/K7 w", "queen near king", {}},
      {"queen alone", "k7/8/8/8/Q7/8/8/K7 w", "queen helpers", {0}},
      {"queen with one piece", "k7/8/8/8/Q7/8/8/KN6 w", "queen helpers", {2}},
      {"queen with three pieces", "k7/8/8/8/Q7/8/8/KNBR4 w", "queen helpers", {6}},
      {"queen with another queen", "k7/8/8/8/Q7/8/8/KQ6 w", "queen helpers", {0, 0}},
      {"more pieces than the opponent", "kq6/p7/8/8/Q7/8/8/KN6 w", "majority", {2}},
      {"as many pieces", "kq6/p7/8/8/8/8/8/KN6 w", "majority", {}},
      {"more pieces, no pawn anywhere", "kq6/8/8/8/Q7/8/8/KN6 w", "majority", {}},
  };
  for (const TermRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    EXPECT_EQ(Ledger(row.fen, White).Of(row.term), row.amounts);
  }
}

TEST(Evaluate, CountsMobilityOfAQueenThatSeesMoreThanTwentySquares) {
  // From the centre of an otherwise empty board a queen sees 27 squares less those behind kings.
  const PlainSide side = Ledger("8/8/8/8/3Q4/8/k7/4K3 w", White);
  EXPECT_EQ(side.Of("queen"), Amounts{107 + 6 + (14 - 5) / 2});
}

// Positions in which a rook's truncation falls where ten times one minus the phase, formed in
// double precision, is not the exact quarter.
TEST(Evaluate, TruncatesARooksRunningTotalInDoublePrecision) {
  const char* const fens[] = {
      "p7/8/8/8/8/5k2/6q1/2qK3R w Q -",
      "1kKP4/R7/q7/7p/3p4/2q4p/5P1B/2p5 w Qk -",
      "8/8/k2K2R1/3q4/q3BR2/6P1/2P5/1pp5 w KQkq -",
      "8/np2Kkb1/2b5/3p3P/b1P2R2/b2br3/3B2n1/8 b KQkq -",
      "kN4r1/2qb2b1/4r3/2Q2b1N/1rR5/1p3KP1/2B3N1/3n2qN w Q -",
      "1K2b1k1/8/2R5/1B3PR1/4Pq2/4P3/5q2/3R4 w - -",
      "1K2b1k1/8/1R6/1B3PR1/4Pq2/4P3/5q2/3R4 w - -",
      "8/1p4k1/8/8/4Q3/2Q1Kr2/7r/8 b KQkq -",
  };
  for (const char* fen : fens) Ledger(fen, White);
}

TEST(Evaluate, HoldsWithFifteenQueensASide) {
  const char* const fens[] = {
      "kqqqqqqq/qqqqqqqq/8/8/8/8/QQQQQQQQ/KQQQQQQQ w - -",
      "k7/8/1Q1Q1Q2/1NQQQN2/1QQpQQ2/3QK3/2NQ4/8 w - -",
      "qQqQqQqQ/QqQqQqQq/qQqQKqQq/8/8/QqQkQqQ1/8/8 b - -",
  };
  for (const char* fen : fens) Ledger(fen, White);
}

TEST(Evaluate, HoldsWithPawnsOnTheFirstAndLastRows) {
  const char* const fens[] = {
      "PPPPPPPP/k7/8/8/8/8/K7/pppppppp w - -",
      "pppppppp/k7/8/8/8/8/K7/PPPPPPPP b - -",
      "pPpPpPpk/8/8/8/8/8/8/KPpPpPpP w - -",
      "RPR4k/pppppppp/8/8/8/8/PPPPPPPP/rpr4K w - -",
  };
  for (const char* fen : fens) {
    Ledger(fen, White);
    Ledger(fen, Black);
  }
}

}  // namespace
}  // namespace tarvyle
