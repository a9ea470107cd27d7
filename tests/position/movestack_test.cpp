#include "position/movestack.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class MoveStackTest : public support::PositionTest {};

TEST_F(MoveStackTest, HoldsTheLongestListForEveryPly) {
  EXPECT_GE(std::size(tree), static_cast<std::size_t>(kMaxPly * kMaxListMoves));
  EXPECT_EQ(std::size(sort_val), std::size(tree));
  EXPECT_GE(std::size(treeCnt), 100u);
}

// A position with as many queens as the set-up accepts, on random squares.
std::string ManyQueens(std::mt19937& random) {
  std::string board(64, '1');
  std::string pieces = "Kk" + std::string(15, 'Q') + std::string(15, 'q');
  std::vector<int> squares(64);
  std::iota(squares.begin(), squares.end(), 0);
  for (std::size_t i = 0; i < pieces.size(); ++i) {
    std::swap(squares[i], squares[i + random() % (squares.size() - i)]);
    board[static_cast<std::size_t>(squares[i])] = pieces[i];
  }
  return board + (random() % 2 == 0 ? " w" : " b");
}

TEST_F(MoveStackTest, FifteenQueensASideFitIntoTheLongestList) {
  std::mt19937 random(1);
  int legal = 0;
  for (int round = 0; round < 3000; ++round) {
    support::SetUpPosition(ManyQueens(random));
    if (!Generate()) continue;
    ++legal;
    EXPECT_LE(ListLength(), kMaxListMoves);
  }
  EXPECT_GT(legal, 0);
}

TEST_F(MoveStackTest, RichestPositionOfARealGameHas218Moves) {
  support::SetUpPosition("R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w");
  ASSERT_TRUE(Generate());
  EXPECT_EQ(ListLength(), 218);
}

}  // namespace
}  // namespace tarvyle
