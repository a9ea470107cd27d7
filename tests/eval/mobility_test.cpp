#include "eval/mobility.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "eval/attackmap.h"
#include "eval/attacksets.h"
#include "eval/side.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/text.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_evaluation.h"

namespace tarvyle {
namespace {

using support::SetUpRoot;

RayScan Scan(Square square) {
  const int colour = g.color[square];
  RayScan scan{-1, -1};
  Mobile_Pin_XRay(square, g.board[square], colour, scan, p_attack[1 - colour], p_attack[colour]);
  return scan;
}

struct ScanRow {
  const char* meaning;
  const char* fen;
  const char* square;
  int empty;
  int bonus;
};

TEST(RayScan, CountsEmptySquaresAndFindsPinsAndXRays) {
  const ScanRow rows[] = {
      {"an open board", "k7/8/8/8/8/8/8/B6K w", "a1", 7, 0},
      {"a queen in the middle of a board with two kings", "8/8/8/8/3Q4/8/8/k6K w", "d4", 26, 0},
      {"walled in", "k7/8/8/8/8/PP6/RP5K/BN6 w", "a1", 0, 0},
      {"a knight pinned to the king, attacked once", "8/7k/8/8/4n3/8/8/1B5K w", "b1", 3, 7},
      {"a knight pinned to the king, attacked twice", "8/7k/8/8/R3n3/8/8/1B5K w", "b1", 3, 8},
      {"bishop: a rook behind is worth more", "8/7r/8/8/4n3/8/8/1B3k1K w", "b1", 3, 6},
      {"bishop: a defended knight behind is not", "7k/7n/8/8/4n3/8/8/1B5K w", "b1", 3, 0},
      {"bishop: an undefended knight behind is", "5k2/8/6n1/8/4n3/8/8/1B5K w", "b1", 3, 6},
      {"bishop: an undefended pawn behind is", "k7/8/6p1/8/4n3/8/8/1B5K w", "b1", 3, 6},
      {"x-ray through an own knight to a queen", "k7/7q/8/8/4N3/8/8/1B5K w", "b1", 3, 5},
      {"x-ray through an own knight to the king", "8/7k/8/8/4N3/8/8/1B5K w", "b1", 3, 8},
      {"x-ray to a defended knight", "7k/7n/8/8/4N3/8/8/1B5K w", "b1", 3, 0},
      {"nothing behind an own pawn", "8/7k/8/8/4P3/8/8/1B5K w", "b1", 3, 0},
      {"nothing behind an enemy pawn", "8/7k/8/8/4p3/8/8/1B5K w", "b1", 3, 0},
      {"nothing behind a king", "8/7q/8/8/4k3/8/8/1B5K w", "b1", 3, 0},
      {"an own piece behind is none", "k7/7R/8/8/4n3/8/8/1B5K w", "b1", 3, 0},
      {"rook: a defended rook behind is not worth more", "rk6/8/8/n7/8/8/8/R6K w", "a1", 9, 0},
      {"rook: a defended queen behind is", "qk6/8/8/n7/8/8/8/R6K w", "a1", 9, 6},
      {"rook: an undefended rook behind", "r7/2k5/8/n7/8/8/8/R6K w", "a1", 9, 6},
      {"queen: a defended queen behind is not", "qk6/8/8/n7/8/8/7K/Q7 w", "a1", 17, 0},
      {"queen: an undefended one is", "q7/2k5/8/n7/8/8/7K/Q7 w", "a1", 17, 6},
      {"queen: the king is", "k7/8/8/n7/8/8/7K/Q7 w", "a1", 17, 7},
      {"a black bishop", "1b5k/8/8/4N3/8/8/7K/8 b", "b8", 3, 7},
  };
  for (const ScanRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    SetUpRoot(row.fen);
    GenerateAttackes();
    const RayScan scan = Scan(StrToSq(row.square));
    EXPECT_EQ(scan.empty, row.empty);
    EXPECT_EQ(scan.bonus, row.bonus);
  }
}

TEST(RayScan, UsesTheAttackWordsThatItIsGiven) {
  SetUpRoot("rk6/8/8/n7/8/8/8/R6K w");
  const std::uint32_t nothing[kSquares] = {};
  std::uint32_t defended[kSquares] = {};
  defended[A8] = 1;  // a bare x-ray count defends as well
  RayScan scan{};
  Mobile_Pin_XRay(A1, Rook, White, scan, nothing, nothing);
  EXPECT_EQ(scan.bonus, 6);
  Mobile_Pin_XRay(A1, Rook, White, scan, defended, nothing);
  EXPECT_EQ(scan.bonus, 0);
}

TEST(RayScan, EqualsThePlainOneForEverySliderOfRandomPositions) {
  support::VisitRandomPositions(48, 2000, [] {
    GenerateAttackes();
    for (Square square = 0; square < kSquares; ++square) {
      if (!IsSlider(g.board[square])) continue;
      const RayScan scan = Scan(square);
      const support::PlainRays plain =
          support::PlainRayScan(square, g.board[square], g.color[square]);
      ASSERT_EQ(scan.empty, plain.empty) << chb[square];
      ASSERT_EQ(scan.bonus, plain.bonus) << chb[square];
    }
  });
}

TEST(LineBonus, IsWhatTheRayScanFindsBehindTheFirstPieceOfEachLine) {
  support::VisitRandomPositions(53, 4000, [] {
    GenerateAttackes();
    const BoardAttacks attacks = AttacksOnBoard();
    for (const int colour : {White, Black}) {
      const Side side = SideOf(colour, attacks);
      for (const int piece : {Bishop, Rook, Queen}) {
        for (SquareSet rest = board_sets.of[colour][piece]; rest != 0;) {
          const Square square = TakeFirst(rest);
          const RayScan scan = Scan(square);
          ASSERT_EQ(LineBonus(side, piece, square), scan.bonus) << chb[square];
          ASSERT_EQ(CountOf(side.reach[square] & ~Occupied()), scan.empty) << chb[square];
        }
      }
    }
  });
}

}  // namespace
}  // namespace tarvyle
