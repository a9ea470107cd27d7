// The search of nodes off the principal variation.

#include "search/node.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>

#include "search/history.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using NodeSearch = SearchTest;

// --- transposition table -----------------------------------------------------------------------

TEST_F(NodeSearch, UsableTableScoreEndsANodeOffTheStoredLine) {
  GoTo(kMiddleGame, "f1e1");
  const Move move = Find("a7a6");
  HashInsert(4321, kInfinity, 9, move);
  gl_find_move[1] = 0;
  EXPECT_EQ(SearchOffPv(Depth(9)), 4321);
  EXPECT_EQ(cut_forse[1], kTableCut);
  EXPECT_EQ(gl_find_move[1], move);
  EXPECT_EQ(cnt_nodes, 1u);
}

TEST_F(NodeSearch, TableScoreWithoutAMoveLeavesTheMoveFoundBefore) {
  GoTo(kMiddleGame, "f1e1");
  HashInsert(-4321, kInfinity, 9, 0);
  gl_find_move[1] = 77;
  NodeArguments arguments = Depth(3);
  arguments.alpha = 0;
  EXPECT_EQ(SearchOffPv(arguments), -4321);
  EXPECT_EQ(gl_find_move[1], 77u);
}

TEST_F(NodeSearch, TableScoreIsIgnoredOnTheStoredLineAndWithAMoveLeftOut) {
  GoTo(kMiddleGame, "f1e1");
  const Move move = Find("a7a6");
  for (const bool on_pv : {true, false}) {
    Forget();
    HashInsert(4321, kInfinity, 9, move);
    NodeArguments arguments = Depth(2);
    arguments.on_pv = on_pv ? 1 : 0;
    arguments.excluded_move = on_pv ? 0 : Find("h7h6");
    EXPECT_NE(SearchOffPv(arguments), 4321);
    EXPECT_NE(cut_forse[1], kTableCut);
    EXPECT_GT(cnt_nodes, 1u);
  }
}

TEST_F(NodeSearch, BestMoveIsStoredWithDepthAndBound) {
  GoTo(kMiddleGame, "f1e1");
  const int score = SearchOffPv(Depth(3));
  ASSERT_NE(StoredEntry(), nullptr);
  EXPECT_EQ(StoredEntry()->depth, 3);
  EXPECT_EQ(StoredEntry()->bound, kExact);
  EXPECT_EQ(StoredEntry()->score, score);
  EXPECT_EQ(StoredEntry()->move, gl_find_move[1]);

  Forget();
  const int cut = SearchOffPv(ZeroWindow(score - 100, 3));
  EXPECT_GE(cut, score - 100);
  ASSERT_NE(StoredEntry(), nullptr);
  EXPECT_EQ(StoredEntry()->bound, kLower);
  EXPECT_EQ(StoredEntry()->score, cut);
}

TEST_F(NodeSearch, NodeWhoseMovesAllFailLowStoresNothing) {
  GoTo(kMiddleGame, "f1e1");
  EXPECT_EQ(SearchOffPv(ZeroWindow(20000, 3)), 19999);
  EXPECT_EQ(StoredEntry(), nullptr);
  EXPECT_EQ(killer[1], 0u);
  EXPECT_EQ(std::count(history + 512, history + 1024, 0), 512) << "of Black's moves";
}

TEST_F(NodeSearch, NodeWithAMoveLeftOutIsNotStoredButCountsForTheHistory) {
  GoTo(kMiddleGame, "f1e1");
  NodeArguments arguments = Depth(1);
  arguments.excluded_move = Find("a7a6");
  SearchOffPv(arguments);
  EXPECT_EQ(StoredEntry(), nullptr);
  ASSERT_NE(gl_find_move[1], 0u);
  EXPECT_EQ(History(Black, gl_find_move[1]), 2);
}

TEST_F(NodeSearch, AtPly0NothingIsStored) {
  GoTo(kMiddleGame);
  ASSERT_TRUE(LegalMoveList());
  Printed([] { SearchOffPv(Depth(2)); });
  EXPECT_EQ(StoredEntry(), nullptr);
  EXPECT_NE(search_mv, 0u) << "but the result is published";
  DropLines();
}

TEST_F(NodeSearch, MoveOfTheTableIsTriedEvenWhenItsScoreIsOfNoUse) {
  GoTo(kMiddleGame, "f1e1");
  const Move move = Find("a7a6");
  HashInsert(0, kInfinity, 1, move);
  SearchOffPv(Depth(2));
  EXPECT_GE(StoredDepthAfter(move), 1) << "the first move has the full window";
}

// --- the excluded move -------------------------------------------------------------------------

TEST_F(NodeSearch, ExcludedMoveCountsButIsNotSearched) {
  // The only legal move is left out: neither mate nor stalemate.
  struct Row {
    const char* what;
    const char* root;
    const char* moves;
    const char* only;
  };
  constexpr Row kRows[] = {
      {"in check", "r5k1/8/8/8/8/8/4RPPP/6K1 b", "a8a1", "e2e1"},
      {"not in check", "k7/8/8/8/8/7p/7P/7K b", "a8b8", "h1g1"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    Forget();
    GoTo(row.root, row.moves);
    const Move only = Find(row.only);
    ASSERT_NE(only, 0u);
    NodeArguments arguments = Depth(2);
    arguments.alpha = 123;
    arguments.excluded_move = only;
    ASSERT_EQ(ListLength(), 1);
    EXPECT_EQ(SearchOffPv(arguments), 123);
    EXPECT_EQ(cut_forse[1], kNoCut);
    Ascend();
  }
}

TEST_F(NodeSearch, ExcludedBestMoveLeavesTheSecondBest) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  NodeArguments arguments = Depth(1);
  const int with = SearchOffPv(arguments);
  ASSERT_STREQ(MoveToStr(gl_find_move[1]), "e4d5");
  Forget();
  arguments.excluded_move = Find("e4d5");
  EXPECT_LT(SearchOffPv(arguments), with - 5000);
  EXPECT_STRNE(MoveToStr(gl_find_move[1]), "e4d5");
}

// --- what a new best move leaves -----------------------------------------------------------------

TEST_F(NodeSearch, BestMoveBecomesKillerAndHistoryAndLine) {
  GoTo("6k1/5ppp/8/8/8/1p6/P4PPP/3R2K1 b", "b3b2");
  EXPECT_EQ(SearchOffPv(Depth(1)), 999998 - 1 + 0);
  const Move mate = Find("d1d8");
  EXPECT_EQ(gl_find_move[1], mate);
  EXPECT_EQ(killer[1], mate);
  EXPECT_EQ(pv_killer[1], mate);
  EXPECT_EQ(node_line[1], mate);
  EXPECT_EQ(node_line[2], 0u);
  EXPECT_EQ(History(White, mate), 6);
}

TEST_F(NodeSearch, CutOffIsAKillerButNoPvKillerAndNoLine) {
  GoTo("6k1/5ppp/8/8/8/1p6/P4PPP/3R2K1 b", "b3b2");
  node_line[1] = 77;
  NodeArguments arguments = ZeroWindow(5000, 1);
  arguments.first_move = Find("d1d8");
  EXPECT_GE(SearchOffPv(arguments), 5000);
  EXPECT_EQ(killer[1], arguments.first_move);
  EXPECT_EQ(pv_killer[1], 0u);
  EXPECT_EQ(node_line[1], 77u);
  EXPECT_EQ(History(White, arguments.first_move), 5);
}

TEST_F(NodeSearch, RecaptureIsAPvKillerButNoKiller) {
  GoTo("4k3/8/2p5/3P4/4P3/8/8/4K3 b", "c6d5");
  SearchOffPv(Depth(1));
  ASSERT_STREQ(MoveToStr(gl_find_move[1]), "e4d5");
  EXPECT_EQ(killer[1], 0u);
  EXPECT_EQ(pv_killer[1], gl_find_move[1]);
}

TEST_F(NodeSearch, FollowsTheFirstMoveAsAStoredLine) {
  // The child of the first move is on the line: it does not cut off by the table.
  PLAY_STYLE = kKnowledge1;  // no reduction to depth 0, where the table is not asked
  GoTo(kMiddleGame, "f1e1");
  NodeArguments arguments = Depth(2);
  arguments.first_move = Find("a7a6");
  MakeMove(arguments.first_move);
  HashInsert(-30000, kInfinity, 50, Find("a2a3"));
  UnMakeMove(arguments.first_move);
  EXPECT_LT(SearchOffPv(arguments), 20000) << "the table's score would be 30000 for Black";
  // Any other child does.
  Forget();
  arguments.first_move = 0;
  const Move other = Find("a7a6");
  MakeMove(other);
  HashInsert(-30000, kInfinity, 50, Find("a2a3"));
  UnMakeMove(other);
  EXPECT_EQ(SearchOffPv(arguments), 30000);
}

// --- the stop ------------------------------------------------------------------------------------

TEST_F(NodeSearch, StoppedSearchReturns0AndLeavesTheRecordAsItWas) {
  for (const int after : {1, 2, 5}) {
    Forget();
    GoTo(kMiddleGame, "f1e1");
    const GameRecord before = g;
    limit_time = 100;
    test_clock = {};
    TimeReset();
    test_clock.step = static_cast<std::uint32_t>(1000 / after);
    EXPECT_EQ(SearchOffPv(Depth(9)), 0);
    EXPECT_EQ(is_stop_search, 1);
    EXPECT_EQ(ply, 1);
    EXPECT_TRUE(StoredEntry() == nullptr || StoredEntry()->depth < 9);
    EXPECT_EQ(std::memcmp(g.board, before.board, sizeof g.board), 0);
    EXPECT_EQ(g.key, before.key);
    EXPECT_EQ(g.fifty, before.fifty);
    EXPECT_EQ(doNull, 0);
    Ascend();
  }
}

TEST_F(NodeSearch, SameSearchTwiceVisitsTheSameNodes) {
  GoTo(kMiddleGame, "f1e1");
  const std::uint64_t once = NodesOf(Depth(5));
  EXPECT_GT(once, 1000u);
  EXPECT_EQ(NodesOf(Depth(5)), once);
}

}  // namespace

}  // namespace tarvyle
