#include "eval/tables.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <string>

namespace tarvyle {
namespace {

TEST(EvaluationTables, RankCountsRowsFromTheOwnFirstOne) {
  for (int row = 0; row < 8; ++row) {
    EXPECT_EQ(rank[8 * White + row], 7 - row);
    EXPECT_EQ(rank[8 * Black + row], row);
  }
}

TEST(EvaluationTables, PassedPawnsDoubleTheirWorthOnEachRow) {
  for (const int colour : {White, Black}) {
    for (int row = 0; row < 8; ++row) {
      const int gone = rank[8 * colour + row];
      const int worth = gone == 0 || gone == 7 ? 0 : 1 << gone;
      EXPECT_EQ(PASSED_PAWN_ROW[8 * colour + row], worth);
    }
  }
}

TEST(EvaluationTables, TheFarHalfIsTheOpponentsHalf) {
  for (int row = 0; row < 8; ++row) EXPECT_EQ(opponent_board[row], row < 4 ? White : Black);
}

TEST(EvaluationTables, ValueClassesOrderThePieces) {
  EXPECT_TRUE(std::ranges::equal(comp_value, std::array{0, 1, 3, 3, 5, 10, 20}));
}

TEST(EvaluationTables, TheLongDiagonalsGetTwoAndTheirNeighboursOne) {
  for (Square square = 0; square < kSquares; ++square) {
    const int row = square / 8;
    const int file = square % 8;
    const int nearest = std::min(std::abs(row - file), std::abs(row + file - 7));
    EXPECT_EQ(main_diag[square], nearest == 0 ? 2 : nearest == 1 ? 1 : 0) << square;
  }
}

TEST(EvaluationHelpers, MaxAndMinAreSigned) {
  const int numbers[] = {INT_MIN, -2, -1, 0, 1, 2, INT_MAX};
  for (const int a : numbers) {
    for (const int b : numbers) {
      EXPECT_EQ(max(a, b), std::max(a, b));
      EXPECT_EQ(min(a, b), std::min(a, b));
    }
  }
}

}  // namespace
}  // namespace tarvyle
