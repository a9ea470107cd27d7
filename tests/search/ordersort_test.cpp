// The sorting routines that move ordering uses.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <string>
#include <vector>

#include "search/order.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using OrderSort = SearchTest;

// Fills the move stack from index 100 on: values, and moves numbered in order from 1.
void Fill(const std::vector<int>& values) {
  for (int i = 0; i < static_cast<int>(values.size()); ++i) {
    sort_val[100 + i] = values[static_cast<std::size_t>(i)];
    tree[100 + i] = static_cast<Move>(i + 1);
  }
}

std::vector<Move> Moves(std::size_t count) { return {tree + 100, tree + 100 + count}; }
std::vector<int> Values(std::size_t count) { return {sort_val + 100, sort_val + 100 + count}; }

TEST_F(OrderSort, SortIsAscendingByPartitionOnTheMiddleElement) {
  struct Row {
    std::vector<int> values;
    std::vector<Move> moves;  // afterwards; equal elements move as the partition moves them
  };
  const Row kRows[] = {
      {{5}, {1}},
      {{2, 1}, {2, 1}},
      {{1, 2}, {1, 2}},
      {{1, 1}, {2, 1}},
      {{3, 1, 2}, {2, 3, 1}},
      {{7, 7, 7}, {3, 2, 1}},
      {{7, 7, 7, 7}, {3, 4, 1, 2}},
      {{4, -1, 0, 3, 2}, {2, 3, 5, 4, 1}},
      {{2, 1, 2, 1}, {4, 2, 1, 3}},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::PrintToString(row.values));
    Fill(row.values);
    QSort(100, 99 + static_cast<int>(row.values.size()));
    EXPECT_EQ(Moves(row.moves.size()), row.moves);
    std::vector<int> sorted = row.values;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(Values(sorted.size()), sorted);
  }
}

TEST_F(OrderSort, SortKeepsValuesWithTheirMovesAndLeavesNeighboursAlone) {
  std::mt19937 random(2);
  for (int round = 0; round < 200; ++round) {
    std::vector<int> values(random() % 100 + 3);
    for (int& number : values) number = static_cast<int>(random() % 50) - 25;
    Fill(values);
    const int last = 98 + static_cast<int>(values.size());
    QSort(101, last);
    EXPECT_TRUE(std::is_sorted(sort_val + 101, sort_val + last + 1));
    EXPECT_EQ(tree[100], 1u);
    EXPECT_EQ(tree[last + 1], values.size());
    for (int i = 101; i <= last; ++i) ASSERT_EQ(sort_val[i], values[tree[i] - 1]);
  }
}

TEST_F(OrderSort, PickBringsTheFirstOfTheGreatestToTheFront) {
  struct Row {
    std::vector<int> values;
    std::vector<Move> moves;
  };
  const Row kRows[] = {{{1, 5, 3, 5}, {2, 1, 3, 4}},
                       {{5, 5, 5}, {1, 2, 3}},
                       {{1, 2, 3}, {3, 2, 1}},
                       {{-3, -1, -2}, {2, 1, 3}},
                       {{4}, {1}}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::PrintToString(row.values));
    Fill(row.values);
    Pick(100, 99 + static_cast<int>(row.values.size()));
    EXPECT_EQ(Moves(row.moves.size()), row.moves);
    for (int i = 0; i < static_cast<int>(row.values.size()); ++i) {
      EXPECT_EQ(sort_val[100 + i], row.values[tree[100 + i] - 1]);
    }
  }
}

TEST_F(OrderSort, PickMoveSwapsTheLastPlaceOfAMoveToTheFront) {
  struct Row {
    Move wanted;
    bool found;
    std::vector<int> values;  // afterwards
  };
  const Row kRows[] = {{9, true, {14, 11, 12, 13, 10, 15}},    // stands twice
                       {1, true, {10, 11, 12, 13, 14, 15}},    // in front already
                       {6, true, {15, 11, 12, 13, 14, 10}},    // last
                       {7, false, {10, 11, 12, 13, 14, 15}},   // nowhere
                       {8, false, {10, 11, 12, 13, 14, 15}}};  // behind the last
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.wanted);
    Fill({10, 11, 12, 13, 14, 15, 16});
    tree[102] = tree[104] = 9;
    tree[106] = 8;
    EXPECT_EQ(PickMove(row.wanted, 100, 105), row.found);
    EXPECT_EQ(Values(6), row.values);
    if (row.found) {
      EXPECT_EQ(tree[100], row.wanted);
    }
  }
}

TEST_F(OrderSort, PickMoveFindsNothingInAnEmptyRange) {
  Fill({10, 11});
  EXPECT_FALSE(PickMove(1, 100, 99));
}

}  // namespace

}  // namespace tarvyle
