// The shared records of the search: their sizes and starting values.

#include "search/state.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <memory>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using StateRecords = SearchTest;

// A record of zeros.
template <typename Record>
Record Zeros() {
  Record record;
  std::memset(static_cast<void*>(&record), 0, sizeof record);
  return record;
}

TEST_F(StateRecords, BeginWithZerosButForTheNullMove) {
  EXPECT_EQ(SearchMemory{}, Zeros<SearchMemory>());
  EXPECT_EQ(SearchClock{}, Zeros<SearchClock>());
  EXPECT_EQ(IterationState{}, Zeros<IterationState>());
  SearchState search;
  EXPECT_EQ(search.search_tree_width_null_move_cut, 1);
  search.search_tree_width_null_move_cut = 0;
  EXPECT_EQ(search, Zeros<SearchState>());
}

TEST_F(StateRecords, SettingsBeginAsWithoutAConfiguration) {
  const SearchSettings settings;
  EXPECT_EQ(settings.limit_time, 750);
  EXPECT_EQ(settings.PLAY_STYLE, 2);
  EXPECT_EQ(settings.is_rnd_search, 0);
}

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
