// What a node with a new best move leaves behind, and what the root publishes.

#include "search/result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

#include "pv/line.h"
#include "pv/tree.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// A line of `count` different moves from index `first` on, 0 before it.
std::vector<Move> LineOf(int first, int count) {
  std::vector<Move> line(kLineSize, 0);
  std::iota(line.begin() + first, line.begin() + first + count, Move{5000});
  return line;
}

std::vector<Move> SearchList() { return {search_list, search_list + LineLen(search_list)}; }

using Result = SearchTest;

TEST_F(Result, LineIsTheMoveAndTheChildsLine) {
  struct Row {
    int at_ply;
    int child_moves;  // from the next ply on
    int length;       // of the whole line from its ply on
  };
  // A line takes in moves up to index 95 and ends at index 96 at the latest, but for its own move.
  constexpr Row kRows[] = {{0, 0, 1},   {0, 5, 6},    {5, 3, 4},    {0, 94, 95}, {0, 95, 96},
                           {0, 99, 96}, {50, 45, 46}, {50, 49, 46}, {95, 4, 1},  {96, 3, 1}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "ply " << row.at_ply << ", " << row.child_moves);
    const std::vector<Move> child = LineOf(row.at_ply + 1, row.child_moves);
    std::vector<Move> line(kLineSize, 1);
    ply = row.at_ply;
    SavePvLine(line.data(), child.data(), kE2E4);
    ply = 0;
    for (int i = 0; i < row.at_ply; ++i) EXPECT_EQ(line[static_cast<std::size_t>(i)], 1u);
    const Move* own = line.data() + row.at_ply;
    EXPECT_EQ(own[0], kE2E4);
    for (int i = 1; i < row.length; ++i) EXPECT_EQ(own[i], 5000u + static_cast<Move>(i) - 1);
    EXPECT_EQ(own[row.length], 0u);
    EXPECT_TRUE(std::all_of(own + row.length + 1, static_cast<const Move*>(line.data()) + kLineSize,
                            [](Move move) { return move == 1; }));
  }
}

TEST_F(Result, RootResultIsPublished) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 w");
  const Move line[] = {kE2E4, 0};
  start_time = 100;
  curr_time = 355;
  cnt_nodes = 0x1000000FF;
  const std::string printed = Printed([&] { SaveRootScore(1234, 0, kE2E4, 7, line); });
  EXPECT_EQ(printed, " 7  127  255 4294967551 e2e4 \n");
  EXPECT_EQ(search_mv, kE2E4);
  EXPECT_EQ(search_score, 1234);
  EXPECT_EQ(search_depth, 7);
  EXPECT_EQ(search_start_pos_key, g.key);
  EXPECT_EQ(SearchList(), std::vector<Move>{kE2E4});
}

TEST_F(Result, SecondArgumentHasNoMeaning) {
  const Move line[] = {kE2E4, 0};
  const std::string one = Printed([&] { SaveRootScore(50, 0, kE2E4, 3, line); });
  const std::string other = Printed([&] { SaveRootScore(50, -99, kE2E4, 3, line); });
  EXPECT_EQ(one, other);
}

TEST_F(Result, PredictedLineIsTheGameAndTheLineCutByDepthAndTen) {
  struct Row {
    int game_moves;
    int depth;
    int line_moves;
    int kept;  // moves of the line
  };
  constexpr Row kRows[] = {{0, 4, 3, 3},      {0, 4, 4, 4},  {0, 4, 8, 4}, {0, 12, 20, 10},
                           {0, 10, 20, 10},   {0, 9, 20, 9}, {6, 4, 8, 4}, {6, 90, 96, 10},
                           {400, 12, 20, 10}, {3, 2, 1, 1},  {6, 0, 8, 0}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message()
                 << row.game_moves << " moves, depth " << row.depth << ", line " << row.line_moves);
    ASSERT_TRUE(InitNewGame());
    ASSERT_TRUE(PlayKnightMoves(row.game_moves));
    const std::vector<Move> line = LineOf(0, row.line_moves);
    std::fill(std::begin(search_list), std::end(search_list), 9);
    Printed([&] { SaveRootScore(0, 0, line[0], row.depth, line.data()); });
    std::vector<Move> wanted(g.game_moves, g.game_moves + row.game_moves);
    wanted.insert(wanted.end(), line.begin(), line.begin() + row.kept);
    EXPECT_EQ(SearchList(), wanted);
  }
}

TEST_F(Result, NewBestMoveAtANode) {
  struct Row {
    const char* what;
    int score;
    int beta;
    bool keeps_line;
  };
  for (const Row& row : {Row{"inside the window", 10, 11, true},
                         {"at beta", 11, 11, false},
                         {"above beta", 12, 11, false}}) {
    SCOPED_TRACE(row.what);
    GoTo(kStart, "e2e4");
    killer[1] = pv_killer[1] = gl_find_move[1] = 1;
    node_line[1] = 1;
    const Move move = Find("e7e5");
    const std::vector<Move> child = LineOf(2, 1);
    SaveNewBest(move, row.score, row.beta, 3, node_line, child.data());
    EXPECT_EQ(gl_find_move[1], move);
    EXPECT_EQ(killer[1], move);
    EXPECT_EQ(pv_killer[1], row.keeps_line ? move : 1);
    EXPECT_EQ(node_line[1], row.keeps_line ? move : 1);
    if (row.keeps_line) {
      EXPECT_EQ(node_line[2], 5000u);
      EXPECT_EQ(node_line[3], 0u);
    }
    EXPECT_EQ(search_mv, 0u) << "only the root publishes";
    EXPECT_EQ(pv_table, nullptr);
    Ascend();
  }
}

TEST_F(Result, MoveToTheSquareOfTheMoveBeforeIsNoKiller) {
  GoTo("4k3/8/2p5/3P4/4P3/8/8/4K3 b", "c6d5");
  killer[1] = 1;
  const Move recapture = Find("e4d5");
  SaveNewBest(recapture, 0, 10, 3, node_line, LineOf(2, 0).data());
  EXPECT_EQ(killer[1], 1u);
  EXPECT_EQ(pv_killer[1], recapture);
}

TEST_F(Result, WithoutAMoveBeforeAMoveToA8IsNoKiller) {
  GoTo("4k3/8/8/8/8/8/8/R3K3 w");
  status_sink = [](const SearchStatus&) {};
  for (const char* text : {"a1a8", "a1a7"}) {
    killer[0] = 1;
    const Move move = Find(text);
    SaveNewBest(move, 0, 10, 3, pv_line, LineOf(1, 0).data());
    EXPECT_EQ(killer[0], std::string(text) == "a1a8" ? 1 : move);
  }
}

TEST_F(Result, RootKeepsItsLineEvenAboveBetaAndQueuesACopyOfEach) {
  GoTo(kStart);
  status_sink = [](const SearchStatus&) {};
  const Move first = Find("e2e4");
  const Move second = Find("d2d4");
  SaveNewBest(first, 20, 10, 3, pv_line, LineOf(1, 2).data());
  EXPECT_EQ(pv_line[0], first);
  EXPECT_EQ(pv_killer[0], 0u);
  SaveNewBest(second, 5, 10, 4, pv_line, LineOf(1, 0).data());
  EXPECT_EQ(search_mv, second);
  EXPECT_EQ(search_depth, 4);
  EXPECT_EQ(search_score, 5);

  Move* oldest = reinterpret_cast<Move*>(pvt_pop_first(&pv_table));
  EXPECT_EQ(std::vector<Move>(oldest, oldest + 4), (std::vector<Move>{first, 5000, 5001, 0}));
  Move* newest = reinterpret_cast<Move*>(pvt_pop_first(&pv_table));
  EXPECT_EQ(std::vector<Move>(newest, newest + 2), (std::vector<Move>{second, 0}));
  EXPECT_EQ(pv_table, nullptr);
  LineFree(oldest);
  LineFree(newest);
}

TEST_F(Result, MergingTakesTheOldestLineFirst) {
  const Move lines[3][3] = {{1, 2, 0}, {3, 4, 0}, {1, 5, 0}};
  for (const auto& line : lines) {
    pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  }
  MergeLines();
  EXPECT_EQ(pv_table, nullptr);
  ASSERT_NE(pv_tree.root, nullptr);
  EXPECT_EQ(pv_tree.root->move, 1u) << "the newest in front";
  EXPECT_EQ(pv_tree.root->next->move, 3u);
  EXPECT_EQ(pv_tree.root->child->move, 5u);
  EXPECT_EQ(pv_tree.root->child->next->move, 2u);
}

TEST_F(Result, DroppedLinesDoNotReachTheTree) {
  const Move line[] = {1, 2, 0};
  pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  DropLines();
  EXPECT_EQ(pv_table, nullptr);
  EXPECT_EQ(pv_tree.root, nullptr);
}

}  // namespace

}  // namespace tarvyle
