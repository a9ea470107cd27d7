// Back to what a process has right after its start.

#include "search/lifetimes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <numeric>
#include <string>

#include "position/directions.h"
#include "pv/line.h"
#include "pv/tree.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using Reset = SearchTest;

TEST_F(Reset, ForgetsASearch) {
  GoTo("r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - - moves f1e1");
  SearchToDepth(5);
  doNull = doReduction = 1;
  search_tree_width_null_move_cut = 0;
  const Move line[] = {1, 0};
  pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  ForgetSearches();
  const auto zero = [](Move move) { return move == 0; };
  EXPECT_TRUE(std::all_of(std::begin(gl_find_move), std::end(gl_find_move), zero));
  EXPECT_TRUE(std::all_of(std::begin(killer), std::end(killer), zero));
  EXPECT_TRUE(std::all_of(std::begin(pv_killer), std::end(pv_killer), zero));
  EXPECT_TRUE(std::all_of(std::begin(search_list), std::end(search_list), zero));
  EXPECT_TRUE(std::all_of(std::begin(pv_line), std::end(pv_line), zero));
  EXPECT_EQ(std::count(std::begin(cut_forse), std::end(cut_forse), 0),
            static_cast<int>(std::size(cut_forse)));
  EXPECT_EQ(std::count(std::begin(history), std::end(history), 0), 1024);
  EXPECT_EQ(pv_table, nullptr);
  EXPECT_EQ(pv_tree.root, nullptr);
  EXPECT_EQ(doNull, 0);
  EXPECT_EQ(doReduction, 0);
  EXPECT_EQ(search_tree_width_null_move_cut, 1);
  EXPECT_EQ(s_depth, 0);
  EXPECT_EQ(root_side, White);
  EXPECT_EQ(root_mtl[White], 0);
  EXPECT_EQ(root_mtl[Black], 0);
  EXPECT_EQ(search_mv, 0u);
  EXPECT_EQ(search_score, 0);
  EXPECT_EQ(search_depth, 0);
  EXPECT_EQ(search_start_pos_key, 0u);
}

TEST_F(Reset, OfTheEngineForgetsGameAndKnowledgeToo) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 b - - moves e8e7", "e2e4");
  InsertNodeLearn();
  killer[1] = 7;
  treeCnt[0] = 3;
  ForgetAll();
  EXPECT_EQ(killer[1], 0u);
  EXPECT_EQ(treeCnt[0], 0);
  EXPECT_EQ(treeCnt[1], 0);
  EXPECT_EQ(ply, 0);
  EXPECT_EQ(dir, dir_white);
  EXPECT_EQ(std::accumulate(std::begin(repetition_set), std::end(repetition_set), 0u), 1u)
      << "the start position";
  EXPECT_EQ(std::count(std::begin(learn), std::end(learn), nullptr), kLearnBuckets);
  const GameRecord reset = g;
  ASSERT_TRUE(InitNewGame());
  EXPECT_EQ(std::memcmp(&reset, &g, sizeof g), 0);
}

TEST_F(Reset, LeavesStyleAndSettingsAlone) {
  PLAY_STYLE = 1;
  limit_time = 1234;
  ForgetSearches();
  EXPECT_EQ(PLAY_STYLE, 1);
  EXPECT_EQ(limit_time, 1234);
}

}  // namespace

}  // namespace tarvyle
