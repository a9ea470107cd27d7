#include "eval/attacksets.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "eval/attackmap.h"
#include "eval/kingsafety.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/piecesets.h"
#include "position/text.h"
#include "tests/support/eval_support.h"

namespace tarvyle {
namespace {

using support::VisitRandomPositions;

// The evaluation works on sets; the words are the same knowledge square by square.
TEST(AttackSets, SayTheSameAsTheAttackWords) {
  VisitRandomPositions(51, 4000, [] {
    GenerateAttackes();
    const BoardAttacks attacks = AttacksOnBoard();
    for (const int colour : {White, Black}) {
      const AttackSets& sets = attacks.of[colour];
      for (Square square = 0; square < kSquares; ++square) {
        const std::uint32_t word = p_attack[colour][square];
        ASSERT_EQ(Contains(sets.all, square), word != 0) << chb[square];
        ASSERT_EQ(AttackCountAt(sets, square), AttackCount(word)) << chb[square];
        for (int piece = Pawn; piece <= King; ++piece) {
          ASSERT_EQ(Contains(sets.by[piece], square), (word & piece_cntrl[piece]) != 0)
              << chb[square] << " by " << piece;
        }
      }
    }
  });
}

TEST(AttackSets, SumTheAttacksOverAnySquares) {
  VisitRandomPositions(52, 500, [] {
    GenerateAttackes();
    const SquareSet squares = board_sets.colour[Black] * 0x9E3779B97F4A7C15;
    int sum = 0;
    for (SquareSet rest = squares; rest != 0;) sum += AttackCount(p_attack[White][TakeFirst(rest)]);
    ASSERT_EQ(AttackSum(AttacksOnBoard().of[White], squares), sum);
  });
}

// Nothing of one board's attacks is kept anywhere for the next one's.
TEST(AttackSets, OfTwoBoardsStandSideBySide) {
  support::SetUpRoot("7k/8/8/8/8/8/8/R6K w");
  const BoardAttacks first = AttacksOnBoard();
  support::SetUpRoot("7k/8/8/8/R7/8/8/7K w");
  const BoardAttacks second = AttacksOnBoard();
  EXPECT_EQ(first.of[White].by[Rook], (FileSet(0) | RowSet(7)) ^ SetOf(A1));
  EXPECT_EQ(first.reach[A1], (FileSet(0) | RowSet(7)) ^ SetOf(A1));
  EXPECT_EQ(second.of[White].by[Rook], (FileSet(0) | RowSet(4)) ^ SetOf(StrToSq("a4")));
}

// A remembered evaluation works no attacks out: none may be left over for others to take for its.
TEST(AttackSets, AreThoseOfTheBoardAfterARememberedEvaluation) {
  support::SetUpRoot("rnbqkbnr/pp1ppppp/8/8/1p6/8/8/3K4 w");
  const int score = support::EvaluateFully();
  const int safety = KingSFTY(White);
  Move move = 0;
  ASSERT_TRUE(StrToMove("d1d2", move));
  MakeMove(move);
  support::EvaluateFully();
  UnMakeMove(move);
  EXPECT_EQ(support::EvaluateFully(), score);
  EXPECT_EQ(KingSFTY(White), safety);
}

}  // namespace
}  // namespace tarvyle
