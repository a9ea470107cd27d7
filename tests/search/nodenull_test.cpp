// The null move and internal deepening of nodes off the principal variation.

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "eval/evaluate.h"
#include "position/movegen.h"
#include "pv/tree.h"
#include "search/order.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using NullMove = SearchTest;
using InternalDeepening = SearchTest;

// A queen ahead: passing holds any beta far below.
constexpr const char* kQueenAhead = "r3k3/pp6/8/8/8/8/PP6/R2QK3 b";

NodeArguments Passing(int depth = 2, int beta = 0) {
  NodeArguments arguments = ZeroWindow(beta, depth);
  arguments.null_allowed = 1;
  return arguments;
}

TEST_F(NullMove, PassingThatHoldsBetaReturnsBeta) {
  GoTo(kQueenAhead, "a7a6");
  for (const int depth : {1, 2, 3, 4, 6}) {
    Forget();
    EXPECT_EQ(SearchOffPv(Passing(depth)), 0) << depth;
    EXPECT_EQ(cut_forse[1], kNullMoveCut);
    EXPECT_EQ(doNull, 0);
    EXPECT_EQ(StoredEntry(), nullptr);
    EXPECT_EQ(gl_find_move[1], 0u);
  }
}

TEST_F(NullMove, NullMoveIsTriedOnlyWhereItMayBe) {
  struct Row {
    const char* what;
    void (*forbid)(NodeArguments&);
  };
  const Row kRows[] = {
      {"not allowed", [](NodeArguments& a) { a.null_allowed = 0; }},
      {"a probe's child", [](NodeArguments& a) { a.is_probe_child = 1; }},
      {"switched off", [](NodeArguments&) { search_tree_width_null_move_cut = 0; }},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    Forget();
    GoTo(kQueenAhead, "a7a6");
    NodeArguments arguments = Passing();
    row.forbid(arguments);
    SearchOffPv(arguments);
    EXPECT_EQ(cut_forse[1], kNoCut);
    EXPECT_NE(gl_find_move[1], 0u) << "a move has been looked for";
    Ascend();
  }
}

TEST_F(NullMove, NullMoveIsNotTriedInCheckNorAtTheRoot) {
  GoTo("4k3/pp6/8/8/8/8/PP1r4/R2QK3 b", "d2e2");
  ASSERT_TRUE(Check());
  SearchOffPv(Passing(2, -20000));
  EXPECT_NE(cut_forse[1], kNullMoveCut);
  Ascend();
  Forget();
  GoTo("r3k3/pp6/8/8/8/8/PP6/R2QK3 w");
  ASSERT_TRUE(LegalMoveList());
  Printed([] { SearchOffPv(Passing()); });
  EXPECT_NE(cut_forse[0], kNullMoveCut);
  DropLines();
}

TEST_F(NullMove, FromDepth4OnPassingMustBePromising) {
  // Passing fails here; what shows is whether it cost nodes. Allowed or not makes a difference for
  // this node only, its descendants may pass in any case.
  GoTo(kMiddleGame, "f1e1");
  const int evaluation = Evaluate(-kInfinity, kInfinity);
  struct Row {
    int depth;
    int beta;
    bool tried;
  };
  const Row kRows[] = {{2, evaluation + 3000, true},  {3, evaluation + 3000, true},
                       {4, evaluation + 3000, false}, {4, evaluation + 501, false},
                       {4, evaluation + 500, true},   {4, evaluation + 300, true},
                       {5, evaluation + 501, false}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "depth " << row.depth << ", beta " << row.beta - evaluation);
    NodeArguments arguments = ZeroWindow(row.beta, row.depth);
    const std::uint64_t without = NodesOf(arguments);
    arguments.null_allowed = 1;
    const std::uint64_t with = NodesOf(arguments);
    EXPECT_EQ(with != without, row.tried) << with << " and " << without;
  }
}

TEST_F(NullMove, NullMoveFlagIsBackToWhatItWas) {
  GoTo(kQueenAhead, "a7a6");
  for (const int outer : {0, 1}) {
    Forget();
    doNull = outer;
    SearchOffPv(Passing());
    EXPECT_EQ(doNull, outer);
  }
}

TEST_F(NullMove, NodeDirectlyBelowANullMoveTriesNoneButItsDescendantsMay) {
  // The null move's child searched by itself, as a probe's child without a null move of its own.
  constexpr int kDepth = 6;
  for (const bool descendants_may : {true, false}) {
    const auto forbid = [&] { search_tree_width_null_move_cut = descendants_may ? 1 : 0; };
    GoTo(kQueenAhead, "a7a6 0");
    Forget();
    forbid();
    doNull = 1;
    NodeArguments child = ZeroWindow(1, kDepth - 3);
    child.is_probe_child = 1;
    SearchOffPv(child);
    const std::uint64_t child_nodes = cnt_nodes;
    Ascend();
    GoTo(kQueenAhead, "a7a6");
    Forget();
    SearchOffPv(Passing(kDepth));
    EXPECT_EQ(cnt_nodes == 1 + child_nodes, descendants_may);
    Ascend();
  }
}

// Rd1 and mate, if White passes.
constexpr const char* kBackRank = "3r2k1/5ppp/8/8/8/8/RP3PPP/6K1 b";

TEST_F(NullMove, ThreatOfMateExtendsMoves) {
  // The move searched first overlooks it, so that its own search finds a best move and leaves its
  // depth.
  for (const int null_allowed : {0, 1}) {
    Forget();
    GoTo(kBackRank, "h7h6");
    NodeArguments arguments = Depth(4);
    arguments.beta = Evaluate(-kInfinity, kInfinity) - 300;
    arguments.null_allowed = null_allowed;
    arguments.first_move = Find("b2b3");
    SearchOffPv(arguments);
    EXPECT_EQ(StoredDepthAfter(arguments.first_move), 3 + null_allowed);
    Ascend();
  }
}

TEST_F(NullMove, ThreatIsAMateThatBetaCouldNotExcuse) {
  // What the null move finds is forged; a threat shows as in the test above.
  struct Row {
    const char* what;
    int mate;  // score of the side that moves after the null move
    int beta;  // 0: a common one
    int extension;
  };
  constexpr Row kRows[] = {
      {"a nearer mate", 999902, 0, 1},
      {"the farthest that counts", 999901, 0, 1},
      {"one beyond", 999900, 0, 0},
      {"the least beta", 999901, -999899, 1},
      {"a beta that is a mate itself", 999901, -999900, 0},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    Forget();
    GoTo(kBackRank, "h7h6");
    ASSERT_TRUE(Descend("0"));
    HashInsert(row.mate, kInfinity, 9, Find("d8d1"));
    UnMakeMove(0);
    NodeArguments arguments = Depth(4);
    arguments.beta = row.beta != 0 ? row.beta : Evaluate(-kInfinity, kInfinity) - 300;
    arguments.null_allowed = 1;
    arguments.first_move = Find("b2b3");
    SearchOffPv(arguments);
    EXPECT_EQ(StoredDepthAfter(arguments.first_move), 3 + row.extension);
    Ascend();
  }
}

TEST_F(NullMove, StoppedNullMoveReturns0) {
  GoTo(kMiddleGame, "f1e1");
  limit_time = 0;
  cnt_nodes = 4095 - 1;  // the child of the null move polls the clock
  EXPECT_EQ(SearchOffPv(Passing(3, 0)), 0);
  EXPECT_EQ(is_stop_search, 1);
  EXPECT_EQ(cnt_nodes, 4096u);
  EXPECT_EQ(doNull, 0);
  EXPECT_EQ(ply, 1);
}

// --- internal deepening --------------------------------------------------------------------------

// The move that a node with nothing remembered searches first.
Move FirstByItself() {
  Forget();
  EXPECT_TRUE(Generate());
  MovePicker picker{};
  Move move = 0;
  EXPECT_TRUE(NextMove(picker, move));
  return move;
}

TEST_F(InternalDeepening, HappensFromDepth4OnForWantOfAMove) {
  PLAY_STYLE = kKnowledge1;  // without reductions
  GoTo(kMiddleGame, "f1e1");
  const Move first = FirstByItself();
  for (const int depth : {2, 3, 4, 5}) {
    NodeArguments arguments = ZeroWindow(20000, depth);
    const std::uint64_t untold = NodesOf(arguments);
    arguments.first_move = first;  // changes nothing but that there is a move
    EXPECT_EQ(NodesOf(arguments) != untold, depth >= 4) << depth;
  }
}

TEST_F(InternalDeepening, LeavesTheBestMoveFoundBeforeAtANodeThatFailsLow) {
  GoTo(kMiddleGame, "f1e1");
  // A node whose moves all fail low keeps what gl_find_move held, though the shallower search
  // clears it.
  for (const int depth : {2, 4}) {
    Forget();
    gl_find_move[1] = 77;
    SearchOffPv(ZeroWindow(20000, depth));
    EXPECT_EQ(gl_find_move[1], 77u) << depth;
  }
}

TEST_F(InternalDeepening, MoveOfInternalDeepeningIsTriedFirst) {
  // The shallow search leaves its best move in the table at depth / 2; the deep one starts with it.
  GoTo("6k1/5ppp/8/8/8/1p6/P4PPP/3R2K1 b", "b3b2");
  NodeArguments arguments = Depth(4);
  const std::uint64_t deepened = NodesOf(arguments);
  arguments.first_move = Find("d1d8");  // mate: nothing else needs a look
  const std::uint64_t told = NodesOf(arguments);
  EXPECT_LT(told, deepened) << "told the move, no deepening happens";
  EXPECT_LT(deepened, told + 200) << "and the deepening finds the same move";
}

TEST_F(InternalDeepening, DeepensAgainWithinItself) {
  // At depth 8 the shallower search, of depth 4, is the same as one that is made by hand before.
  GoTo("4k3/pp6/8/8/8/8/1P4PP/4K3 b", "e8e7");
  NodeArguments arguments = Depth(8);
  const std::uint64_t by_itself = NodesOf(arguments);
  NodeArguments shallower = Depth(4);
  shallower.is_probe_child = 1;
  std::uint64_t by_hand = NodesOf(shallower);
  arguments.first_move = gl_find_move[1];
  ASSERT_NE(arguments.first_move, 0u);
  cnt_nodes = 0;
  SearchOffPv(arguments);
  by_hand += cnt_nodes;
  EXPECT_EQ(by_itself, by_hand);
}

TEST_F(InternalDeepening, ContinuationInTheTreeMakesInternalDeepeningNeedless) {
  GoTo(kMiddleGame, "f1e1");
  NodeArguments arguments = Depth(4);
  arguments.on_pv = 1;
  const Move reply = Find("a7a6");
  const Move line[] = {g.game_moves[0], reply, 0};
  const auto nodes = [&](bool stored, int null) {
    Forget();
    if (stored) pvInsertLine(pv_tree, line);
    doNull = null;
    SearchOffPv(arguments);
    return cnt_nodes;
  };
  NodeArguments told = Depth(4);
  told.first_move = reply;
  told.on_pv = 1;
  // With the continuation stored, the node is searched as if the move had been named.
  EXPECT_EQ(nodes(true, 0), NodesOf(told));
  EXPECT_NE(nodes(false, 0), nodes(true, 0));
  // In a null-move search the tree is not asked.
  EXPECT_EQ(nodes(true, 1), nodes(false, 1));
}

}  // namespace

}  // namespace tarvyle
