// The engine's evaluation term by term: what its procedures give piece by piece, and what they give
// once more with one thing changed.

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "eval/pieceterms.h"
#include "position/record.h"
#include "position/types.h"
#include "tests/support/any_position.h"
#include "tests/support/build_kind.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_evaluation.h"
#include "tests/support/taken_apart.h"

namespace tarvyle {
namespace {

using support::SetUpRoot;
using support::TakeApart;
using support::TakenApart;
using support::TermAmounts;
using Amounts = std::vector<int>;

// --- over many positions -------------------------------------------------------------------------

// Every name of a term that either of two ledgers has.
std::vector<std::string> NamesOf(const TermAmounts& a, const TermAmounts& b) {
  TermAmounts both = a;
  both.insert(b.begin(), b.end());
  std::vector<std::string> names;
  for (const auto& [name, amounts] : both) names.push_back(name);
  return names;
}

TEST(Terms, EqualThePlainEvaluationsOneByOne) {
  std::map<std::string, int> met;
  const auto compare = [&] {
    for (const int colour : {White, Black}) {
      const TakenApart apart = TakeApart(colour);
      const support::PlainSide plain = support::PlainSideScore(colour);
      for (const std::string& name : NamesOf(apart.terms, plain.terms)) {
        ASSERT_EQ(apart.Of(name), plain.Of(name)) << name << " of colour " << colour;
        ++met[name];
      }
    }
  };
  support::VisitRandomPositions(71, support::Scaled(6000, 100000), compare);
  support::VisitTrees(72, support::Scaled(6000, 100000), compare);
  if (support::kSlowBuild) return;  // too few positions to meet every term
  EXPECT_EQ(met.size(), 38u);
  for (const auto& [name, times] : met) EXPECT_GE(times, 20) << name;
}

TEST(Terms, AddUpToTheEvaluation) {
  support::VisitTrees(73, support::Scaled(6000, 100000), [] {
    const int full = support::EvaluateFully();
    if (full == 0) return;  // nobody can win
    const int material = g.material[g.side] - g.material[g.xside];
    ASSERT_EQ(full, material + TakeApart(g.side).total - TakeApart(g.xside).total);
  });
}

// --- threats -------------------------------------------------------------------------------------

// The engine's terms of one side.
TakenApart Apart(const std::string& fen, int colour) {
  SetUpRoot(fen);
  return TakeApart(colour);
}

TEST(Terms, SecondHangingPieceCostsTenAndEachOtherFour) {
  const TakenApart side = Apart("r1r1r1r1/7k/8/8/N1N1N1N1/8/8/7K w", White);
  EXPECT_EQ(side.Of("hanging"), (Amounts{-4, -10, -4, -4}));
  EXPECT_EQ(side.Of("attacked"), (Amounts{-1, -1, -1, -1}));
}

TEST(Terms, HangingPawnCostsOneMoreAndKeepsItsPawnTerms) {
  const TakenApart side = Apart("r6k/8/8/8/P7/8/8/7K w", White);
  EXPECT_EQ(side.Of("hanging"), Amounts{-4});
  EXPECT_EQ(side.Of("hanging pawn"), Amounts{-1});
  EXPECT_EQ(side.Of("isolated"), Amounts{-8});
}

struct ThreatRow {
  const char* meaning;
  const char* fen;
  int attacked;
  Amounts hanging;
  Amounts weak;
  Amounts cheaper;
};

TEST(Terms, WeighAttackersAgainstDefenders) {
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
    const TakenApart side = Apart(row.fen, White);
    int attacked = 0;
    for (const int amount : side.Of("attacked")) attacked += amount;
    EXPECT_EQ(attacked, row.attacked);
    EXPECT_EQ(side.Of("hanging"), row.hanging);
    EXPECT_EQ(side.Of("weak pawn"), row.weak);
    EXPECT_EQ(side.Of("cheaper attacker"), row.cheaper);
  }
}

// --- pieces --------------------------------------------------------------------------------------

struct TermRow {
  const char* fen;
  const char* term;
  Amounts amounts;  // White's
};

const TermRow kTermRows[] = {
    // Fifty, and half of the pawns on the board.
    {"7k/8/8/4N3/8/8/8/KQ6 w", "knight", {50}},
    {"7k/ppp5/8/4N3/5P2/5N2/P7/K7 w", "knight", {52, 52}},
    {"7k/8/8/4N3/8/8/8/KQ6 w", "knight to king", {-3}},
    {"7k/ppp5/8/4N3/5P2/5N2/P7/K7 w", "knight to king", {-3, -5}},
    {"7k/8/8/4N3/8/5N2/8/KQ6 w", "knight by knight", {1, 1}},
    {"7k/8/8/4N3/8/4N3/8/KQ6 w", "knight by knight", {}},
    {"7k/8/8/4N3/5P2/5N2/8/K7 w", "knight without pawn", {-1}},
    // Ten squares seen, on the long diagonal; walled in beside it.
    {"7k/p7/8/8/3B4/8/8/K7 w", "bishop", {51 + 10 + 2}},
    {"7k/8/8/8/8/8/4P1P1/K4BB1 w", "bishop", {51, 51 + 8 + 1}},
    {"7k/8/8/8/8/8/4P1P1/K4BB1 w", "bishop pair", {8, 8}},
    {"7k/8/8/8/8/8/4P1P1/K4B2 w", "bishop pair", {}},
    // Files c to f earn a point; so does each second file from the enemy king.
    {"6k1/p7/8/8/8/8/8/R2R3K w", "rook", {37 + 6, 37 + 9 + 1}},
    {"6k1/p7/8/8/8/8/8/R2R3K w", "rook to king", {3, 1}},
    {"6k1/p6p/8/8/8/8/R7/R6K w", "rook by rook", {1, 1}},
    {"6k1/p6p/8/8/8/8/1P6/R1R4K w", "rook by rook", {1, 1}},
    {"6k1/p6p/8/8/8/8/1R6/R6K w", "rook by rook", {}},
    {"6k1/p6p/8/8/8/8/1R6/R6K w", "rook pair", {1, 1}},
    {"6k1/p6p/8/8/8/8/8/R6K w", "rook pair", {}},
    {"6k1/p7/8/8/8/8/8/R2R3K w", "rook file", {4, 10}},
    {"6k1/8/8/8/8/8/P7/R6K w", "rook file", {}},
    {"6k1/p7/8/8/8/8/8/R6K w", "rook row", {1}},
    {"8/R6p/6k1/8/8/8/8/7K w", "rook row", {8}},
    {"6k1/R7/8/8/8/8/8/7K w", "rook row", {8}},
    {"8/R7/6k1/8/8/8/8/7K w", "rook row", {}},
    {"6k1/7p/R7/8/8/8/8/7K w", "rook row", {}},
    // A pinned knight, a knight that shields its own king's attacker, and nothing behind a pawn.
    {"7k/8/8/4n3/8/8/1B6/7K w", "pins and x-rays", {7}},
    {"7k/8/8/4N3/8/8/1B6/7K w", "pins and x-rays", {8}},
    {"7k/8/8/4p3/8/8/1B6/7K w", "pins and x-rays", {}},
    {"r1k5/8/8/n7/8/8/8/R6K w", "pins and x-rays", {6}},
    {"q1k5/8/8/N7/8/8/8/R6K w", "pins and x-rays", {5}},
    {"k7/8/8/n7/8/8/8/Q6K w", "pins and x-rays", {7}},
    {"k7/8/8/8/8/3Q4/4B3/3R3K w", "queen by rook", {1}},
    {"k7/8/8/8/8/3Q4/4B3/3R3K w", "queen by bishop", {1}},
    {"k7/8/8/8/8/3Q4/4N3/3N3K w", "queen by bishop", {}},
    {"k7/8/8/8/8/8/8/Q2K4 w", "queen far from king", {-1}},
    {"k7/8/8/8/8/8/8/Q1K5 w", "queen far from king", {}},
    {"k7/8/8/Q7/8/8/8/K7 w", "queen to king", {5 + (14 - 3) / 2}},
    {"k7/8/8/8/Q7/8/8/K7 w", "queen to king", {(14 - 4) / 2}},
    {"k7/8/8/8/8/8/8/K6Q w", "queen to king", {}},
    {"k7/8/8/8/Q7/8/8/K7 w", "queen helpers", {}},
    {"k7/8/8/8/Q7/8/8/KN6 w", "queen helpers", {2}},
    {"k7/8/8/8/Q7/8/8/KNBR4 w", "queen helpers", {6}},
    {"k7/8/8/8/Q7/8/8/KQ6 w", "queen helpers", {}},
    // From the centre of an otherwise empty board a queen sees 27 squares less those behind kings.
    {"8/8/8/8/3Q4/8/k7/4K3 w", "queen", {107 + 6}},
    {"8/8/8/8/8/1k6/1PPP4/1PQP3K w", "queen", {107}},
};

TEST(Terms, OfEachPieceAreThese) {
  for (const TermRow& row : kTermRows) {
    EXPECT_EQ(Apart(row.fen, White).Of(row.term), row.amounts) << row.term << " in " << row.fen;
  }
}

// --- a rook's truncation -------------------------------------------------------------------------

TEST(Terms, TruncationOfARookCutsTheWholeSumTowardsZero) {
  for (int weight = 0; weight <= 40; ++weight) {
    const double phase = weight <= 4 ? 0.0 : weight / 40.0;
    for (int total = -300; total <= 300; ++total) {
      const double sum = 10.0 * (1.0 - phase) + static_cast<double>(total);
      ASSERT_EQ(AddedByTruncation(phase, total), static_cast<int>(std::trunc(sum)) - total)
          << "weight " << weight << " total " << total;
    }
  }
}

TEST(Terms, TruncationOfARookIsSteadyFromAFewPointsOn) {
  for (int weight = 0; weight <= 40; ++weight) {
    const double phase = weight <= 4 ? 0.0 : weight / 40.0;
    for (int total = kSteadyTotal; total <= 5000; ++total) {
      ASSERT_EQ(AddedByTruncation(phase, total), AddedByTruncation(phase, kSteadyTotal))
          << weight << ' ' << total;
    }
  }
}

// --- pawns and the side as a whole ---------------------------------------------------------------

const TermRow kPawnTermRows[] = {
    {"7k/8/8/8/8/8/P7/K7 w", "no enemy pawn on file", {1}},
    {"7k/p7/8/8/8/8/P7/K7 w", "no enemy pawn on file", {}},
    {"7k/p7/8/8/8/8/PP5P/K7 w", "front unsupported", {-1}},
    {"7k/p7/8/8/8/P7/1P6/K7 w", "front unsupported", {-1, -1}},
    {"7k/p7/8/8/8/n7/P7/K7 w", "front blocked", {-2}},
    {"7k/p7/8/8/8/N7/P7/K7 w", "front blocked", {}},
    {"7k/8/8/P7/P7/P7/P7/K7 w", "doubled", {-2, -2, -8, -2}},
    {"7k/8/8/8/8/8/P1P1P1P1/K7 w", "isolated", {-8, -8, -14, -8}},
    {"7k/8/8/8/8/8/PP1P3P/K7 w", "isolated", {-8, -8}},
    {"n6k/P7/8/8/8/8/8/K7 w", "passed", {12 + 64}},
    {"n6k/8/8/8/8/P7/8/K7 w", "passed", {12 + 4}},
    {"n6k/1p6/8/8/8/P7/8/K7 w", "passed", {}},
    {"n6k/8/8/8/8/P7/1P6/K7 w", "passed and supported", {4}},
    {"n6k/8/8/8/1P6/P7/8/K7 w", "passed and supported", {4}},
    {"n6k/8/8/P7/8/8/8/R6K w", "passed with rook", {4}},
    {"n6k/8/8/8/P7/8/8/R6K w", "passed with rook", {}},
    {"8/P7/8/8/8/7k/8/K7 w", "unstoppable", {512}},
    {"2k5/P7/8/8/8/8/8/K7 w", "unstoppable", {512}},
    {"1k6/P7/8/8/8/8/8/K7 w", "unstoppable", {}},
    {"n7/P7/8/8/8/7k/8/K7 w", "unstoppable", {}},
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w", "pawn count", {}},
    {"7k/8/8/8/8/8/3PP3/K7 w", "pawn count", {-6}},
    {"7k/8/8/8/8/8/8/KQ6 w", "pawn count", {-8 - 16}},
    {"7k/8/8/8/8/8/3PP3/K7 w", "no centre pawn", {}},
    {"7k/8/8/8/8/8/3P4/K7 w", "no centre pawn", {-1}},
    {"7k/8/8/8/8/8/4P3/K7 w", "no centre pawn", {-1}},
    {"7k/8/8/8/8/8/5P2/K7 w", "no centre pawn", {-3}},
    {"kq6/p7/8/8/Q7/8/8/KN6 w", "majority", {2}},
    {"kq6/p7/8/8/8/8/8/KN6 w", "majority", {}},
    {"kq6/8/8/8/Q7/8/8/KN6 w", "majority", {}},
};

TEST(Terms, OfPawnsAndOfTheSideAreThese) {
  for (const TermRow& row : kPawnTermRows) {
    EXPECT_EQ(Apart(row.fen, White).Of(row.term), row.amounts) << row.term << " in " << row.fen;
  }
}

}  // namespace
}  // namespace tarvyle
