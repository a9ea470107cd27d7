#include "eval/evaluate.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "eval/cache.h"
#include "eval/scoretable.h"
#include "position/directions.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
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
using support::PlainSideScore;
using support::SetUpRoot;
using support::VisitRandomPositions;

void ExpectThePlainEvaluation(const std::string& fen) {
  SetUpRoot(fen);
  EXPECT_EQ(EvaluateFully(), PlainEvaluate(-kFar, kFar)) << fen;
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

TEST(Evaluate, AnswersWithBareMaterialWhereItFallsShortOfABoundAndOnlyThere) {
  int bare = 0;
  int whole = 0;
  VisitRandomPositions(46, 2000, [&] {
    const int material = g.material[g.side] - g.material[g.xside];
    const int full = EvaluateFully();
    if (full == material || !WinnableAfterAnyMove()) return;
    for (const int distance : {-501, -500, -499, -498, 0, 498, 499, 500, 501}) {
      const int bound = material + distance;
      const bool too_low = MaterialFallsShort(material, bound);
      EXPECT_EQ(too_low, distance > 499);
      EXPECT_EQ(Evaluate(bound, kFar), too_low ? material : full) << distance;
      const bool too_high = MaterialFallsShort(-material, -bound);
      EXPECT_EQ(Evaluate(-kFar, bound), too_high ? material : full) << distance;
      ++(too_low || too_high ? bare : whole);
    }
  });
  EXPECT_GT(bare, 5000);
  EXPECT_GT(whole, 5000);
}

// Kings and so few pieces that one move may take the last which can win.
std::string SparseBoard(support::Random& random) {
  std::string squares(64, '1');
  const auto place = [&](char letter, int rows, int files) {
    Square square = A8;
    do {
      square = 8 * support::Below(random, rows) + support::Below(random, files);
    } while (squares[square] != '1');
    squares[square] = letter;
  };
  place('k', 8, 8);
  place('K', 8, 8);
  for (int pieces = support::Below(random, 6); pieces > 0; --pieces) {
    place("pPnNbBrRqQ"[support::Below(random, 10)], 3, 4);
  }
  std::string fen = squares.substr(0, 8);
  for (int row = 1; row < 8; ++row) fen += "/" + squares.substr(8 * row, 8);
  return fen + (support::Below(random, 2) == 0 ? " w" : " b");
}

TEST(WinnableAfterAnyMove, RulesOutTheDrawForWantOfPiecesAfterEachMove) {
  support::Random random(47);
  int winnable = 0;
  int drawn_by_a_move = 0;
  for (int i = 0; i < 5000; ++i) {
    const std::string fen = SparseBoard(random);
    SetUpRoot(fen);
    if (!LegalMoveList()) continue;
    const bool promised = WinnableAfterAnyMove();
    winnable += promised ? 1 : 0;
    for (int k = 0; k < treeCnt[1]; ++k) {
      const Move move = tree[k];
      MakeMove(move);
      const int material = g.material[g.side] - g.material[g.xside];
      if (material != 0) {
        const bool drawn = Evaluate(kFar, kFar) != material;
        EXPECT_FALSE(promised && drawn) << fen << " move " << k;
        drawn_by_a_move += drawn ? 1 : 0;
      }
      UnMakeMove(move);
    }
  }
  EXPECT_GT(winnable, 500);
  EXPECT_GT(drawn_by_a_move, 300);
}

TEST(WinnableAfterAnyMove, CountsPawnsRooksAndQueensOfBothSides) {
  const struct {
    const char* fen;
    bool winnable;
  } rows[] = {
      {"k7/1p6/8/8/8/8/6R1/6QK w", true},   {"k7/1p6/8/8/8/8/8/6QK b", false},
      {"k7/pp6/8/8/8/8/8/NNBB3K w", false}, {"k7/pp6/8/8/8/8/7P/7K w", true},
      {"kqr5/8/8/8/8/8/8/NNBBR2K w", true}, {"k7/8/8/8/8/8/8/NNBBN2K w", false},
  };
  for (const auto& row : rows) {
    SetUpRoot(row.fen);
    EXPECT_EQ(WinnableAfterAnyMove(), row.winnable) << row.fen;
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
  for (const char* fen : fens) ExpectThePlainEvaluation(fen);
}

TEST(Evaluate, HoldsWithFifteenQueensASide) {
  const char* const fens[] = {
      "kqqqqqqq/qqqqqqqq/8/8/8/8/QQQQQQQQ/KQQQQQQQ w - -",
      "k7/8/1Q1Q1Q2/1NQQQN2/1QQpQQ2/3QK3/2NQ4/8 w - -",
      "qQqQqQqQ/QqQqQqQq/qQqQKqQq/8/8/QqQkQqQ1/8/8 b - -",
  };
  for (const char* fen : fens) ExpectThePlainEvaluation(fen);
}

TEST(Evaluate, HoldsWithPawnsOnTheFirstAndLastRows) {
  const char* const fens[] = {
      "PPPPPPPP/k7/8/8/8/8/K7/pppppppp w - -",
      "pppppppp/k7/8/8/8/8/K7/PPPPPPPP b - -",
      "pPpPpPpk/8/8/8/8/8/8/KPpPpPpP w - -",
      "RPR4k/pppppppp/8/8/8/8/PPPPPPPP/rpr4K w - -",
  };
  for (const char* fen : fens) ExpectThePlainEvaluation(fen);
}

}  // namespace
}  // namespace tarvyle
