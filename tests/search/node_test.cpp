// The search of nodes off the principal variation.

#include "search/node.h"

#include <algorithm>
#include <cstring>
#include <set>

#include "eval/evaluate.h"
#include "pv/tree.h"
#include "search/history.h"
#include "search/result.h"
#include "tests/support/search_support.h"

namespace tarvyle::tests {

namespace {

// A quiet middle game, White to move.
constexpr const char* kMiddleGame =
    "r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - -";

NodeArguments Depth(int depth) {
  NodeArguments arguments;
  arguments.depth = depth;
  return arguments;
}

NodeArguments ZeroWindow(int beta, int depth) {
  NodeArguments arguments = Depth(depth);
  arguments.alpha = beta - 1;
  arguments.beta = beta;
  return arguments;
}

void Forget() {
  HashClear();
  ResetSearchState();
  s_depth = 50;
  TimeReset();
}

std::uint64_t NodesOf(const NodeArguments& arguments) {
  Forget();
  SearchOffPv(arguments);
  return cnt_nodes;
}

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
  LineFree(reinterpret_cast<Move*>(pvt_pop_first(&pv_table)));
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

// --- null move -----------------------------------------------------------------------------------

// A queen ahead: passing holds any beta far below.
constexpr const char* kQueenAhead = "r3k3/pp6/8/8/8/8/PP6/R2QK3 b";

NodeArguments Passing(int depth = 2, int beta = 0) {
  NodeArguments arguments = ZeroWindow(beta, depth);
  arguments.null_allowed = 1;
  return arguments;
}

TEST_F(NodeSearch, PassingThatHoldsBetaReturnsBeta) {
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

TEST_F(NodeSearch, NullMoveIsTriedOnlyWhereItMayBe) {
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

TEST_F(NodeSearch, NullMoveIsNotTriedInCheckNorAtTheRoot) {
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
  LineFree(reinterpret_cast<Move*>(pvt_pop_first(&pv_table)));
}

TEST_F(NodeSearch, FromDepth4OnPassingMustBePromising) {
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

TEST_F(NodeSearch, NullMoveFlagIsBackToWhatItWas) {
  GoTo(kQueenAhead, "a7a6");
  for (const int outer : {0, 1}) {
    Forget();
    doNull = outer;
    SearchOffPv(Passing());
    EXPECT_EQ(doNull, outer);
  }
}

TEST_F(NodeSearch, NodeDirectlyBelowANullMoveTriesNoneButItsDescendantsMay) {
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

TEST_F(NodeSearch, ThreatOfMateExtendsMoves) {
  // Rd1 and mate, if White passes. The move searched first overlooks it, so that its own search
  // finds a best move and leaves its depth.
  for (const int null_allowed : {0, 1}) {
    Forget();
    GoTo("3r2k1/5ppp/8/8/8/8/RP3PPP/6K1 b", "h7h6");
    NodeArguments arguments = Depth(4);
    arguments.beta = Evaluate(-kInfinity, kInfinity) - 300;
    arguments.null_allowed = null_allowed;
    arguments.first_move = Find("b2b3");
    SearchOffPv(arguments);
    EXPECT_EQ(StoredDepthAfter(arguments.first_move), 3 + null_allowed);
    Ascend();
  }
}

TEST_F(NodeSearch, StoppedNullMoveReturns0) {
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

// The number of nodes, with and without a look at the same node first.
TEST_F(NodeSearch, DeepensInternallyFromDepth4OnForWantOfAMove) {
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

TEST_F(NodeSearch, MoveOfInternalDeepeningIsTriedFirst) {
  // The shallow search leaves its best move in the table at depth / 2; the deep one starts with it.
  GoTo("6k1/5ppp/8/8/8/1p6/P4PPP/3R2K1 b", "b3b2");
  NodeArguments arguments = Depth(4);
  const std::uint64_t deepened = NodesOf(arguments);
  arguments.first_move = Find("d1d8");  // mate: nothing else needs a look
  const std::uint64_t told = NodesOf(arguments);
  EXPECT_LT(told, deepened) << "told the move, no deepening happens";
  EXPECT_LT(deepened, told + 200) << "and the deepening finds the same move";
}

TEST_F(NodeSearch, ContinuationInTheTreeMakesInternalDeepeningNeedless) {
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

// --- extensions and reductions -----------------------------------------------------------------

TEST_F(NodeSearch, ExtensionRows) {
  struct Row {
    const char* what;
    const char* root;
    const char* moves;
    const char* move;  // searched first, so with the full window
    int extension;
  };
  constexpr Row kRows[] = {
      {"quiet", "4k3/8/8/8/8/8/4P3/4K3 b", "e8e7", "e2e4", 0},
      {"capture", "4k3/8/8/3n4/4P3/8/8/4K3 b", "e8e7", "e4d5", 0},
      {"check", "4k3/8/8/8/8/8/8/R3K3 b", "e8e7", "a1a7", 1},
      {"discovered check", "4k3/8/8/8/8/8/4N3/4R1K1 b", "e8e7", "e2c3", 1},
      {"pawn to the seventh row", "8/8/4P1k1/8/8/8/8/4K3 b", "g6g5", "e6e7", 1},
      {"Black's pawn to the seventh row", "4k3/8/8/8/6K1/4p3/8/8 w", "g4g5", "e3e2", 1},
      {"capture to the seventh row", "8/3n4/4P1k1/8/8/8/8/4K3 b", "g6g5", "e6d7", 1},
      {"pawn to the sixth row", "8/8/6k1/4P3/8/8/8/4K3 b", "g6g5", "e5e6", 0},
      {"another piece to the seventh row", "6k1/8/4N3/8/8/8/8/4K3 b", "g8h8", "e6c7", 0},
      {"both: never more than one", "4k3/8/4P3/8/8/8/8/4K3 b", "e8d8", "e6e7", 1},
      {"promotion", "8/P5k1/8/8/8/8/8/4K3 b", "g7g6", "a7a8q", 0},
      {"reply to a check, one of two", "r5k1/8/8/8/8/8/4R1PP/6K1 b", "a8a1", "g1f2", 0},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.what << ": " << row.root);
    Forget();
    GoTo(row.root, row.moves);
    NodeArguments arguments = Depth(3);
    arguments.first_move = Find(row.move);
    ASSERT_NE(arguments.first_move, 0u);
    SearchOffPv(arguments);
    EXPECT_EQ(StoredDepthAfter(arguments.first_move), 2 + row.extension);
    Ascend();
  }
}

TEST_F(NodeSearch, SingleReplyToACheckIsExtended) {
  struct Row {
    const char* root;
    int replies;
    int child_depth;
  };
  constexpr Row kRows[] = {{"r5k1/8/8/8/8/8/4RPPP/6K1 b", 1, 3},
                           {"r5k1/8/8/8/8/8/4R1PP/6K1 b", 2, 2}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.root);
    Forget();
    GoTo(row.root, "a8a1");
    NodeArguments arguments = Depth(3);
    arguments.first_move = Find("e2e1");
    ASSERT_TRUE(Check());
    ASSERT_EQ(ListLength(), row.replies);
    SearchOffPv(arguments);
    EXPECT_EQ(StoredDepthAfter(arguments.first_move), row.child_depth);
    Ascend();
  }
}

// Depths stored for the children of the node, by move.
std::vector<std::pair<Move, int>> ChildDepths() {
  std::vector<std::pair<Move, int>> depths;
  EXPECT_TRUE(LegalMoveList());
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
    depths.emplace_back(tree[i], StoredDepthAfter(tree[i]));
  }
  return depths;
}

TEST_F(NodeSearch, LateMovesAreReducedButUnderKnowledge1) {
  for (const int style : {0, 1, 2}) {
    SCOPED_TRACE(play_style_str[style]);
    Forget();
    PLAY_STYLE = style;
    search_tree_width_null_move_cut = 0;  // cut off by a null move, a child would store nothing
    GoTo(kMiddleGame, "f1e1");
    SearchOffPv(Depth(3));
    int reduced = 0;
    int full = 0;
    for (const auto& [move, depth] : ChildDepths()) {
      reduced += depth == 1 ? 1 : 0;
      full += depth >= 2 ? 1 : 0;
    }
    if (style == 0) {
      EXPECT_EQ(reduced, 0);
      EXPECT_GT(full, 20);
    } else {
      EXPECT_GT(reduced, 20);
      EXPECT_GE(full, 3) << "the first three";
      EXPECT_LT(full, 10);
    }
    Ascend();
  }
}

TEST_F(NodeSearch, LateChecksAndPawnsOnTheSeventhRowAreNotReduced) {
  PLAY_STYLE = 2;
  GoTo("6k1/1p3p2/P5p1/8/8/4Q3/5PPP/6K1 b", "g8h7");
  NodeArguments arguments = Depth(3);
  arguments.first_move = Find("g1f1");
  const std::set<std::string> special = {"a6a7", "e3h3", "e3h6"};
  SearchOffPv(arguments);
  int seen = 0;
  for (const auto& [move, depth] : ChildDepths()) {
    if (special.count(MoveToStr(move)) == 0 || depth == -1) continue;
    EXPECT_EQ(depth, 3) << MoveToStr(move);
    ++seen;
  }
  EXPECT_GE(seen, 2);
}

// What the clock sees of the search when it is read.
bool seen_null = false;
bool seen_reduction = false;

std::uint32_t WatchingClock() {
  seen_null = seen_null || doNull == 1;
  seen_reduction = seen_reduction || doReduction == 1;
  return 0;
}

TEST_F(NodeSearch, FlagsTellWhatIsBeingSearched) {
  struct Row {
    int style;
    int null_move;
    bool null;
    bool reduction;
  };
  for (const Row& row : {Row{2, 1, true, true}, {2, 0, false, true}, {0, 1, true, false}}) {
    Forget();
    PLAY_STYLE = row.style;
    GoTo(kMiddleGame, "f1e1");
    search_tree_width_null_move_cut = row.null_move;
    world.milliseconds = WatchingClock;
    seen_null = seen_reduction = false;
    NodeArguments arguments = Depth(6);
    arguments.null_allowed = 1;
    SearchOffPv(arguments);
    EXPECT_EQ(seen_null, row.null);
    EXPECT_EQ(seen_reduction, row.reduction);
    Ascend();
  }
}

TEST_F(NodeSearch, ReductionFlagIsDownAfterwards) {
  doReduction = 7;
  GoTo(kMiddleGame, "f1e1");
  SearchOffPv(Depth(3));
  EXPECT_EQ(doReduction, 0);
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
  PLAY_STYLE = 0;  // no reduction to depth 0, where the table is not asked
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

}  // namespace tarvyle::tests
