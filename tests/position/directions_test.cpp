#include "position/directions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>

#include "position/types.h"

namespace tarvyle {
namespace {

const int* const dir_at_start = dir;

TEST(Directions, StandInTheirOrder) {
  const int white[] = {-16, -1, 16, 1, -17, -15, 17, 15, -33, 33, -31, 31, -18, 18, -14, 14};
  const int black[] = {1, 16, -1, -16, 15, 17, -15, -17, 14, -14, 18, -18, 31, -31, 33, -33};
  EXPECT_TRUE(std::equal(std::begin(white), std::end(white), dir_white));
  EXPECT_TRUE(std::equal(std::begin(black), std::end(black), dir_black));
}

TEST(Directions, InUseAreWhitesWhenTheProgramStarts) { EXPECT_EQ(dir_at_start, dir_white); }

TEST(Directions, AreTheSameForBothColoursInAnotherOrder) {
  constexpr int kKinds[][2] = {{0, 4}, {4, 8}, {8, 16}};
  for (const auto& [first, end] : kKinds) {
    EXPECT_EQ(std::set<int>(dir_white + first, dir_white + end),
              std::set<int>(dir_black + first, dir_black + end));
  }
}

struct DirectionRow {
  int piece;
  int start;
  int stop;
};

TEST(Directions, OfEachPieceAreARange) {
  const DirectionRow rows[] = {
      {NoPiece, -1000, 1000}, {Pawn, -1000, 1000}, {Knight, 8, 15}, {Bishop, 4, 7},
      {Rook, 0, 3},           {Queen, 0, 7},       {King, 0, 7}};
  for (const DirectionRow& row : rows) {
    EXPECT_EQ(d_start[row.piece], row.start);
    EXPECT_EQ(d_stop[row.piece], row.stop);
  }
}

TEST(Directions, AreChosenByColour) {
  set_dir(Black);
  EXPECT_EQ(dir, dir_black);
  set_dir(White);
  EXPECT_EQ(dir, dir_white);
  set_dir(-7);
  EXPECT_EQ(dir, dir_black);
}

}  // namespace
}  // namespace tarvyle
