#include "position/sets.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "position/types.h"

namespace tarvyle {
namespace {

TEST(Sets, HoldOneBitASquareFromA8) {
  EXPECT_EQ(SetOf(A8), 1u);
  EXPECT_EQ(SetOf(H1), SquareSet{1} << 63);
  for (Square square = 0; square < kSquares; ++square) {
    for (Square other = 0; other < kSquares; ++other) {
      EXPECT_EQ(Contains(SetOf(square), other), square == other);
    }
  }
}

TEST(Sets, GiveTheirSquaresFromTheFirstOn) {
  SquareSet set = SetOf(H1) | SetOf(E8) | SetOf(A1);
  EXPECT_EQ(CountOf(set), 3);
  EXPECT_EQ(FirstOf(set), E8);
  std::vector<Square> taken;
  while (set != 0) taken.push_back(TakeFirst(set));
  EXPECT_EQ(taken, (std::vector<Square>{E8, A1, H1}));
}

TEST(Sets, HaveSeveralFromTheSecondSquareOn) {
  EXPECT_FALSE(HasSeveral(0));
  EXPECT_FALSE(HasSeveral(SetOf(A8)));
  EXPECT_FALSE(HasSeveral(SetOf(H1)));
  EXPECT_TRUE(HasSeveral(SetOf(A8) | SetOf(H1)));
  EXPECT_TRUE(HasSeveral(~SquareSet{0}));
}

TEST(Sets, OfFilesAndRowsHoldTheirSquares) {
  for (Square square = 0; square < kSquares; ++square) {
    for (int line = 0; line < 8; ++line) {
      EXPECT_EQ(Contains(FileSet(line), square), FileOf(square) == line);
      EXPECT_EQ(Contains(RowSet(line), square), RowOf(square) == line);
    }
  }
}

// The square that lies so many rows and files from another, as a set; none off the board.
SquareSet Beside(Square square, int rows, int files) {
  const int row = RowOf(square) + rows;
  const int file = FileOf(square) + files;
  return row < 0 || row > 7 || file < 0 || file > 7 ? 0 : SetOf(row * 8 + file);
}

TEST(Sets, OfPawnsGoTowardsTheirPromotionRowAndNeverRoundTheEdge) {
  for (const int colour : {White, Black}) {
    const int forward = colour == White ? -1 : 1;
    for (Square square = 0; square < kSquares; ++square) {
      const SquareSet pawn = SetOf(square);
      EXPECT_EQ(Ahead(colour, pawn), Beside(square, forward, 0)) << square;
      EXPECT_EQ(PawnTargetsLeft(colour, pawn), Beside(square, forward, -1)) << square;
      EXPECT_EQ(PawnTargetsRight(colour, pawn), Beside(square, forward, 1)) << square;
      EXPECT_EQ(PawnTargets(colour, pawn), Beside(square, forward, -1) | Beside(square, forward, 1))
          << square;
    }
  }
}

TEST(Sets, OfManyPawnsAreThoseOfEach) {
  const SquareSet pawns = 0x00A500423C810000;
  for (const int colour : {White, Black}) {
    SquareSet targets = 0;
    for (SquareSet rest = pawns; rest != 0;) {
      targets |= PawnTargets(colour, SetOf(TakeFirst(rest)));
    }
    EXPECT_EQ(PawnTargets(colour, pawns), targets);
  }
}

}  // namespace
}  // namespace tarvyle
