// The shared records of the search: their sizes and starting values.

#include "search/state.h"

#include <gtest/gtest.h>

#include <iterator>
#include <memory>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// Read before any test runs: what a process starts with.
const int kNullMoveAtStart = search_tree_width_null_move_cut;

using StateRecords = SearchTest;

TEST_F(StateRecords, NullMoveIsOnAtTheStart) { EXPECT_EQ(kNullMoveAtStart, 1); }

TEST_F(StateRecords, ArraysHoldEveryPlyThatASearchCanReach) {
  EXPECT_GE(std::size(gl_find_move), 99u);
  EXPECT_GE(std::size(killer), 99u);
  EXPECT_GE(std::size(pv_killer), 99u);
  EXPECT_GE(std::size(cut_forse), 99u);
  EXPECT_GE(std::size(treeCnt), 100u);
  EXPECT_EQ(std::size(pv_line), 100u);
  EXPECT_GE(std::size(search_list), 501u);
}

TEST_F(StateRecords, ReasonsHaveTheirCodes) {
  EXPECT_EQ(kNoCut, 0);
  EXPECT_EQ(kNullMoveCut, 1);
  EXPECT_EQ(kTableCut, 2);
  EXPECT_EQ(kCheckmated, 3);
  EXPECT_EQ(kDrawByRule, 4);
  EXPECT_EQ(kNoMoveLeft, 5);
}

}  // namespace

}  // namespace tarvyle
