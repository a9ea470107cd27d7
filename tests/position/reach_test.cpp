#include "position/reach.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <random>

#include "position/sets.h"
#include "position/types.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class ReachTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { support::StartEngineOnce(); }
};

// What a piece reaches by walking step by step, with the direction numbers of White's table.
SquareSet Walked(int piece, Square from, SquareSet occupied) {
  SquareSet reached = 0;
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    for (int wide = ToWide(from) + dir_white[d]; !OffBoard(wide); wide += dir_white[d]) {
      const Square square = FromWide(wide);
      reached |= SetOf(square);
      if (!IsSlider(piece) || Contains(occupied, square)) break;
    }
  }
  return reached;
}

TEST_F(ReachTest, IsWhatWalkingFindsWhateverStandsOnTheBoard) {
  std::mt19937_64 random(1);
  for (int round = 0; round < 500; ++round) {
    const SquareSet crowded = random() & random();
    const SquareSet sparse = crowded & random() & random();
    for (const SquareSet occupied : {crowded, sparse, SquareSet{0}, ~SquareSet{0}}) {
      for (Square from = 0; from < kSquares; ++from) {
        for (int piece = Knight; piece <= King; ++piece) {
          ASSERT_EQ(ReachSet(piece, from, occupied), Walked(piece, from, occupied))
              << "piece " << piece << " on " << chb[from] << ", occupied " << occupied;
        }
      }
    }
  }
}

TEST_F(ReachTest, OfAPawnIsWhatItAttacks) {
  for (const int colour : {White, Black}) {
    for (Square square = 0; square < kSquares; ++square) {
      EXPECT_EQ(pawn_set[colour][square], PawnTargets(colour, SetOf(square)));
    }
  }
}

TEST_F(ReachTest, SquaresBetweenTwoAreThoseOfTheirLineThatBothSee) {
  for (Square a = 0; a < kSquares; ++a) {
    for (Square b = 0; b < kSquares; ++b) {
      SquareSet between = 0;
      for (const int piece : {Bishop, Rook}) {
        if (!Contains(Walked(piece, a, 0), b)) continue;
        between = Walked(piece, a, SetOf(b)) & Walked(piece, b, SetOf(a));
      }
      ASSERT_EQ(between_set[a][b], between) << chb[a] << chb[b];
    }
  }
}

TEST_F(ReachTest, DirectionIsTheOneThatLeadsFromSquareToSquare) {
  for (const int table : {White, Black}) {
    const int* steps = table == White ? dir_white : dir_black;
    for (Square from = 0; from < kSquares; ++from) {
      for (Square to = 0; to < kSquares; ++to) {
        const int d = direction_index[table][from][to];
        const bool reached = Contains(Walked(Queen, from, 0) | Walked(Knight, from, 0), to);
        ASSERT_EQ(d != kNoDirection, reached) << chb[from] << chb[to];
        if (!reached) continue;
        int wide = ToWide(from) + steps[d];
        while (d < d_start[Knight] && FromWide(wide) != to && !OffBoard(wide)) wide += steps[d];
        ASSERT_EQ(wide, ToWide(to)) << chb[from] << chb[to];
      }
    }
  }
}

}  // namespace
}  // namespace tarvyle
