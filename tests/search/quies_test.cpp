// The quiescence search.

#include "search/quies.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "eval/evaluate.h"
#include "position/directions.h"
#include "position/movegen.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// Three queens among a queen and pawns: twenty-one captures for White, and one less.
constexpr const char* kTwentyOne = "k7/8/1pppppp1/1pQqQpQ1/1pppppp1/8/8/K7 b";
constexpr const char* kTwenty = "k7/8/1pppppp1/1pQqQpQ1/1ppppp2/8/8/K7 b";

// The same search as a plain negamax: every capture, no order, no early stand-pat return. Positions
// that need more than `plain_budget` nodes are given up.
int plain_budget = 0;

int PlainQuies() {
  int best = Evaluate(-kInfinity, kInfinity);
  if (ply > 96 || --plain_budget < 0) return best;
  if (!GenerateCaptures()) return kCaptureKing - ply;
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
    MakeMove(tree[i]);
    best = std::max(best, -PlainQuies());
    UnMakeMove(tree[i]);
  }
  return best;
}

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

TEST_F(Quiescence, ResolvesExchanges) {
  struct Row {
    const char* what;
    const char* root;
    int gain_from;  // at least that much above the evaluation
    int gain_to;
  };
  constexpr Row kRows[] = {
      {"a hanging queen", "4k3/8/8/3q4/4P3/8/8/4K3 b", 5000, 15000},
      {"a defended pawn is left alone by a queen", "4k3/2p5/3p4/8/8/8/3Q4/4K3 b", 0, 0},
      {"a promotion", "8/P3k3/8/8/8/8/8/4K3 b", 5000, 15000},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    GoTo(row.root, "0");
    const int stand_pat = Evaluate(-kInfinity, kInfinity);
    const int score = Quies(-kInfinity, kInfinity);
    EXPECT_GE(score - stand_pat, row.gain_from);
    EXPECT_LE(score - stand_pat, row.gain_to);
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

TEST_F(Quiescence, IsWorthAPlainSearchOfAllCaptures) {
  // Far outside the window the evaluation answers with bare material, which a wide window does not
  // let it do: the two may differ by a little, but not by a piece.
  constexpr int kLittle = 500;
  int checked = 0;
  for (const auto& row : support::DataRows("movelists.tsv")) {
    ASSERT_TRUE(SetUpGame(row[0]));
    InitEvaluate();
    set_dir(g.side);
    treeCnt[1] = 0;
    MakeMove(0);
    plain_budget = 5000;
    const int wanted = PlainQuies();
    if (plain_budget >= 0) {
      EXPECT_NEAR(Quies(-kInfinity, kInfinity), wanted, kLittle) << row[0];
      ++checked;
    }
    UnMakeMove(0);
  }
  EXPECT_GT(checked, 20);
}

}  // namespace

}  // namespace tarvyle
