#include "position/movestack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "position/makemove.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class MoveStackTest : public support::PositionTest {};

static_assert(std::size(tree) == kTreeSize && std::size(sort_val) == kTreeSize);
static_assert(std::size(treeCnt) > kMaxPly, "the end of the last list has no place");

// Moves of the white man on `square` alone, the kings in the corners left out.
int MovesFrom(Square square) {
  EXPECT_TRUE(Generate());
  const auto list = support::CurrentList();
  return static_cast<int>(std::count_if(list.begin(), list.end(),
                                        [square](Move move) { return OriginOf(move) == square; }));
}

// A board with one white man, and black knights where he wants them.
std::string BoardWith(char man, Square square, const std::string& prey) {
  std::string board(64, '1');
  for (std::size_t i = 0; i < prey.size(); ++i) board[i] = prey[i];
  board[static_cast<std::size_t>(square)] = man;
  // The kings where they are in nobody's way.
  for (const char king : {'K', 'k'}) {
    for (const Square corner : {H1, A8, A1}) {
      if (board[static_cast<std::size_t>(corner)] != '1') continue;
      board[static_cast<std::size_t>(corner)] = king;
      break;
    }
  }
  return board + " w";
}

TEST_F(MoveStackTest, NoManHasMoreMovesThanAQueenInTheMiddle) {
  int most = 0;
  for (const char man : std::string("PNBRQ")) {
    for (Square square = A8; square <= H1; ++square) {
      // For pawns, prey on the last row: six moves for one that captures to both sides.
      const std::string prey = man == 'P' && RowOf(square) == 1 ? "nnnnnnnn" : "";
      ASSERT_TRUE(InitGame(BoardWith(man, square, prey).c_str()));
      if (!Generate()) continue;  // the man attacks the black king
      most = std::max(most, MovesFrom(square));
    }
  }
  EXPECT_EQ(most, kMostQueenMoves);
}

TEST_F(MoveStackTest, KingHasMostMovesWhereHeCannotCastle) {
  support::SetUpPosition("7k/8/8/8/3K4/8/8/8 w");
  EXPECT_EQ(MovesFrom(support::At("d4")), kMostKingMoves);
  support::SetUpPosition("1k6/8/8/8/8/8/8/R3K2R w KQ");
  EXPECT_EQ(MovesFrom(support::At("e1")), 5 + 2);
}

struct LongListRow {
  const char* text;
  int moves;
};

// Queens stand in each other's way, so no list comes near the bound. The first is the longest that
// a search for it over placements of fifteen queens has found, the second the longest of a game.
constexpr LongListRow kLongest = {"1Q4Q1/4Q3/Q1Q4Q/Q4Q1Q/p2Q4/KQ4Q1/pp2Q3/kpQ4Q w", 242};

TEST_F(MoveStackTest, LongestListsHaveTheseManyMoves) {
  const LongListRow rows[] = {kLongest, {"R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w", 218}};
  for (const LongListRow& row : rows) {
    support::SetUpPosition(row.text);
    ASSERT_TRUE(Generate());
    EXPECT_EQ(ListLength(), row.moves);
    EXPECT_LE(ListLength(), kMaxListMoves);
  }
}

// As a search does that passes at every ply: White's list is the longest at each other ply.
TEST_F(MoveStackTest, HoldsLongListsAtEveryPly) {
  support::SetUpPosition(kLongest.text);
  for (int made = 0; made < kMaxPly; ++made) {
    ASSERT_EQ(ply, made);
    ASSERT_TRUE(Generate());
    EXPECT_EQ(ListLength(), made % 2 == 0 ? kLongest.moves : ListLength());
    ASSERT_LE(treeCnt[ply + 1], kTreeSize);
    if (made + 1 < kMaxPly) MakeMove(0);
  }
  const int whole = treeCnt[kMaxPly];
  EXPECT_GT(whole, kMaxPly / 2 * kLongest.moves);
  // The lists have not run into each other: the first is as it was made.
  const auto first = support::ListText({tree, tree + treeCnt[1]});
  while (ply > 0) UnMakeMove(0);
  EXPECT_EQ(support::ListedBy(Generate), first);
}

}  // namespace
}  // namespace tarvyle
