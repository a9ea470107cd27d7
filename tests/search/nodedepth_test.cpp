// Extensions and reductions of nodes off the principal variation.

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using NodeDepth = SearchTest;

TEST_F(NodeDepth, ChecksAndPawnsToTheSeventhRowAreExtendedOnce) {
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

TEST_F(NodeDepth, SingleReplyToACheckIsExtended) {
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

TEST_F(NodeDepth, LateMovesAreReducedButUnderKnowledge1) {
  // Out of reach: every move fails low, none is searched twice, and the reply that cuts it off
  // stores it.
  constexpr const char* kNoChecks =
      "r1bq1rk1/ppp1bppp/2np1n2/4p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - -";
  NodeArguments arguments = Depth(3);
  arguments.alpha = 20000;
  arguments.beta = 20001;
  for (const int style : {0, 1, 2}) {
    SCOPED_TRACE(play_style_str[style]);
    Forget();
    PLAY_STYLE = style;
    search_tree_width_null_move_cut = 0;  // cut off by a null move, a child would store nothing
    GoTo(kNoChecks, "f1e1");
    SearchOffPv(arguments);
    std::map<int, int> moves_by_depth;
    for (const auto& [move, depth] : ChildDepths()) ++moves_by_depth[depth];
    const int moves = ListLength();
    ASSERT_GT(moves, 3);
    const std::map<int, int> all_alike = {{2, moves}};
    const std::map<int, int> late_ones_less = {{1, moves - 3}, {2, 3}};
    EXPECT_EQ(moves_by_depth, style == 0 ? all_alike : late_ones_less);
    Ascend();
  }
}

TEST_F(NodeDepth, ReducedMoveThatRaisesAlphaIsSearchedAgainInFull) {
  // The first three moves are captures that lose the queen.
  for (const int style : {1, 2}) {
    SCOPED_TRACE(play_style_str[style]);
    Forget();
    PLAY_STYLE = style;
    search_tree_width_null_move_cut = 0;
    GoTo("4k3/1p1p1p1p/p1p1p3/8/2Q5/8/6PP/6K1 b", "h7h6");
    SearchOffPv(Depth(3));
    const Move best = gl_find_move[1];
    EXPECT_EQ(best & kCapture, 0u);
    EXPECT_EQ(StoredDepthAfter(best), 2);
    Ascend();
  }
}

TEST_F(NodeDepth, LateChecksAndPawnsOnTheSeventhRowAreNotReduced) {
  PLAY_STYLE = kKnowledge3;
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

std::uint32_t NoteFlags() {
  seen_null = seen_null || doNull == 1;
  seen_reduction = seen_reduction || doReduction == 1;
  return 0;
}

TEST_F(NodeDepth, FlagsTellWhatIsBeingSearched) {
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
    world.milliseconds = NoteFlags;
    seen_null = seen_reduction = false;
    NodeArguments arguments = Depth(6);
    arguments.null_allowed = 1;
    SearchOffPv(arguments);
    EXPECT_EQ(seen_null, row.null);
    EXPECT_EQ(seen_reduction, row.reduction);
    Ascend();
  }
}

TEST_F(NodeDepth, ReductionFlagIsDownAfterwards) {
  doReduction = 7;
  GoTo(kMiddleGame, "f1e1");
  SearchOffPv(Depth(3));
  EXPECT_EQ(doReduction, 0);
}

}  // namespace

}  // namespace tarvyle
