// The quiescence search, position by position; quiestwin_test.cpp compares it with a plain one.

#include "search/quies.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "eval/evaluate.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// Three queens among a queen and pawns: twenty-one captures for White, and one less.
constexpr const char* kTwentyOne = "k7/8/1pppppp1/1pQqQpQ1/1pppppp1/8/8/K7 b";
constexpr const char* kTwenty = "k7/8/1pppppp1/1pQqQpQ1/1ppppp2/8/8/K7 b";

// The ordering values of the ply's list as a search has left them.
std::vector<int> ListValues() { return {sort_val + treeCnt[ply], sort_val + treeCnt[ply + 1]}; }

using Quiescence = SearchTest;

TEST_F(Quiescence, QuietPositionIsWorthItsEvaluationAndNeverLessThanAlpha) {
  GoTo("4k3/2p5/8/8/8/8/3P4/4K3 b", "e8e7");
  const int stand_pat = Evaluate(-kInfinity, kInfinity);
  EXPECT_EQ(Quies(-kInfinity, kInfinity), stand_pat);
  EXPECT_EQ(Quies(stand_pat - 1, stand_pat + 1), stand_pat);
  EXPECT_EQ(Quies(stand_pat + 1, stand_pat + 2), stand_pat + 1);
  EXPECT_EQ(Quies(stand_pat + 100, stand_pat + 200), stand_pat + 100);
}

TEST_F(Quiescence, WithStandPatAtBetaNoMovesAreGenerated) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  const int stand_pat = Evaluate(-kInfinity, kInfinity);
  for (const int beta : {stand_pat, stand_pat - 1}) {
    treeCnt[2] = 77;
    EXPECT_EQ(Quies(beta - 100, beta), stand_pat);
    EXPECT_EQ(treeCnt[2], 77);
  }
  EXPECT_GT(Quies(stand_pat, stand_pat + 1), stand_pat);
  EXPECT_EQ(treeCnt[2], treeCnt[1] + 1);
}

// What the position after these moves is worth to the side that moves first.
int WorthAfter(const std::string& moves) {
  const int from = ply;
  const int side = g.side;
  EXPECT_TRUE(Descend(moves));
  const int worth = Evaluate(-kInfinity, kInfinity);
  const int signed_worth = g.side == side ? worth : -worth;
  while (ply > from) UnMakeMove(LastMove());
  return signed_worth;
}

TEST_F(Quiescence, IsWorthTheEvaluationAtTheEndOfTheBestExchange) {
  struct Row {
    const char* what;
    const char* root;
    const char* exchange;
  };
  // With pawns enough that moves may be passed over.
  constexpr Row kRows[] = {
      {"a hanging queen", "4k3/6pp/8/3q4/4P3/8/6PP/4K3 b", "e4d5"},
      {"a defended pawn is left alone by a queen", "4k3/2p3pp/3p4/8/8/8/3Q2PP/4K3 b", ""},
      {"a promotion", "8/P3k1pp/8/8/8/8/6PP/4K3 b", "a7a8q"},
      {"a promotion that captures", "1r6/P3k1pp/8/8/8/8/6PP/4K3 b", "a7b8q"},
      {"a knight for a pawn", "4k3/2p3pp/3n4/4P3/8/8/6PP/4K3 b", "e5d6 c7d6"},
      {"a rook for a knight", "4k3/2p3pp/3r4/8/4N3/8/6PP/4K3 b", "e4d6 c7d6"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    GoTo(row.root, "0");
    const int worth = WorthAfter(row.exchange);
    EXPECT_EQ(Quies(-kInfinity, kInfinity), worth);
    EXPECT_EQ(Quies(worth - 1, worth + 1), worth);
    EXPECT_GE(Quies(worth - 1, worth), worth);
    EXPECT_EQ(Quies(worth, worth + 1), worth);
    Ascend();
  }
}

TEST_F(Quiescence, SideInCheckMayStandPat) {
  GoTo("4k3/8/8/8/8/8/q7/4K3 b", "a2a1");  // no capture gets White out of check
  ASSERT_TRUE(Check());
  EXPECT_EQ(Quies(-kInfinity, kInfinity), Evaluate(-kInfinity, kInfinity));
}

TEST_F(Quiescence, GivesNoChecks) {
  GoTo("6k1/5ppp/8/8/8/8/8/R6K b", "g8h8");  // a rook's move to a8 would mate
  EXPECT_EQ(Quies(-kInfinity, kInfinity), Evaluate(-kInfinity, kInfinity));
}

TEST_F(Quiescence, KingThatCanBeCapturedEndsItAboveTheRootOnly) {
  GoTo("4k3/8/8/8/8/8/4R3/4K3 b", "0");
  EXPECT_EQ(Quies(-kInfinity, kInfinity), 1000000 - 1);
  Ascend();
  GoTo("4k3/8/8/8/8/8/4R3/4K3 b", "0 0 0");
  EXPECT_EQ(Quies(-kInfinity, kInfinity), 1000000 - 3);
}

TEST_F(Quiescence, AtTheRootTheListIsUsedAsItStands) {
  GoTo("3q1q2/4k3/4P3/8/8/8/8/3RK3 w");
  treeCnt[1] = 0;
  const int stand_pat = Evaluate(-kInfinity, kInfinity);
  EXPECT_EQ(Quies(-kInfinity, kInfinity), stand_pat) << "an empty list";
  tree[0] = Find("d1d8");
  treeCnt[1] = 1;
  EXPECT_GT(Quies(-kInfinity, kInfinity), stand_pat);
  tree[0] = Find("e1e2");  // even a quiet move
  treeCnt[1] = 1;
  Quies(-kInfinity, kInfinity);
  EXPECT_EQ(treeCnt[1], 1);
  EXPECT_EQ(sort_val[0], 0);
}

TEST_F(Quiescence, EnPassantCaptureOfTheRootListWinsAPawn) {
  // Its victim does not stand on the move's target square.
  GoTo("4k3/8/8/8/4p3/8/P2P3P/K7 w - - moves d2d4");
  tree[0] = Find("e4d3");
  treeCnt[1] = 1;
  const int alpha = Evaluate(-kInfinity, kInfinity) + 700;
  EXPECT_GT(Quies(alpha, alpha + 1), alpha);
}

TEST_F(Quiescence, NodeAtPly97IsNotSearched) {
  const std::string root = "4k3/8/8/3q4/4P3/8/8/4K3 b";
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 w", Nulls(96));
  const int stand_pat = Evaluate(-kInfinity, kInfinity);
  EXPECT_GT(Quies(-kInfinity, kInfinity), stand_pat) << "ply 96 still searches";
  Ascend();
  GoTo(root, Nulls(97));
  ASSERT_EQ(ply, 97);
  treeCnt[98] = 77;
  EXPECT_EQ(Quies(-kInfinity, kInfinity), stand_pat);
  EXPECT_EQ(Quies(stand_pat + 50, kInfinity), stand_pat + 50);
  EXPECT_EQ(treeCnt[98], 77);
}

TEST_F(Quiescence, AfterTheStopEveryCallReturns0) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  is_stop_search = 1;
  EXPECT_EQ(Quies(-kInfinity, kInfinity), 0);
  EXPECT_EQ(Quies(100, 200), 0);
}

TEST_F(Quiescence, EveryCallCountsANode) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  cnt_nodes = 0;
  Quies(-kInfinity, kInfinity);
  EXPECT_EQ(cnt_nodes, 2u);  // itself and the position after the capture, where nothing is left
}

TEST_F(Quiescence, HopelessCapturesCountAsNodesAndLeaveTheirStamp) {
  // The queen can be taken, but not even that reaches the bound: what making the move and taking it
  // back leaves behind is there all the same.
  GoTo("4k3/pp6/8/3q4/4P3/8/PP6/4K3 b", "e8e7");
  ASSERT_NE(g.fifty, 77);
  g.undo[g.game_len + ply].fifty_before = 77;
  cnt_nodes = 0;
  EXPECT_EQ(Quies(900000, 900001), 900000);
  EXPECT_EQ(cnt_nodes, 2u);
  EXPECT_EQ(g.undo[g.game_len + ply].fifty_before, g.fifty);
}

TEST_F(Quiescence, CaptureThatLeavesNobodyAbleToWinIsNeverHopeless) {
  // Three pawns and more behind, White draws by taking the last pawn.
  GoTo("7k/8/8/4p3/4K3/8/8/n7 b", "0");
  ASSERT_LT(Evaluate(-kInfinity, kInfinity), -3000);
  EXPECT_EQ(Quies(-500, 500), 0);
}

TEST_F(Quiescence, DoesNotTouchTheTable) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  HashInsert(12345, kInfinity, 90, Find("e1e2"));
  EXPECT_NE(Quies(-kInfinity, kInfinity), 12345);
  MakeMove(Find("e4d5"));
  EXPECT_EQ(StoredEntry(), nullptr);
}

TEST_F(Quiescence, TwentyOneHopelessCapturesAreTriedFromTheLowestValueUp) {
  GoTo(kTwentyOne, "0");
  Quies(900000, 900001);
  const std::vector<int> values = ListValues();
  EXPECT_EQ(values.size(), 21u);
  EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
  EXPECT_LT(values.front(), values.back());
}

TEST_F(Quiescence, TwentyHopelessCapturesAreTriedFromTheHighestValueDown) {
  // Just beyond reach: farther out, no move would be worth an order, for all would be refuted
  // alike.
  GoTo(kTwenty, "0");
  const int reach = 10000 + g.material[White] - g.material[Black];
  Quies(reach + 1, reach + 2);
  const std::vector<int> values = ListValues();
  EXPECT_EQ(values.size(), 20u);
  EXPECT_TRUE(std::is_sorted(values.rbegin(), values.rend()));
}

TEST_F(Quiescence, TwentyOneCapturesWithHopeAreTriedFromTheHighestValueDown) {
  // Hope means: greatest victim and material balance together reach the value to beat.
  GoTo(kTwentyOne, "0");
  const int reach = 10000 + g.material[White] - g.material[Black];
  ASSERT_GT(reach, Evaluate(-kInfinity, kInfinity)) << "the value to beat is alpha";
  for (const auto& [alpha, hopeless] : {std::pair{reach, false}, std::pair{reach + 1, true}}) {
    Quies(alpha, alpha + 1);
    const std::vector<int> values = ListValues();
    EXPECT_EQ(std::is_sorted(values.begin(), values.end()), hopeless) << alpha;
  }
}

}  // namespace

}  // namespace tarvyle
