#include "eval/distance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace tarvyle {
namespace {

TEST(Distance, IsThatOfAKingAndTaxiThatOfAStreetGrid) {
  for (Square a = 0; a < kSquares; ++a) {
    for (Square b = 0; b < kSquares; ++b) {
      const int rows = std::abs(a / 8 - b / 8);
      const int files = std::abs(a % 8 - b % 8);
      EXPECT_EQ(Distance(a, b), std::max(rows, files));
      EXPECT_EQ(Taxi(a, b), rows + files);
    }
  }
}

}  // namespace
}  // namespace tarvyle
