#include "eval/attacksets.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <memory>

#include "eval/attackmap.h"
#include "position/piecesets.h"
#include "position/text.h"
#include "tests/support/eval_support.h"

namespace tarvyle {
namespace {

using support::VisitRandomPositions;

// The evaluation works on sets; the words are the same knowledge square by square.
TEST(AttackSets, SayTheSameAsTheAttackWords) {
  VisitRandomPositions(51, 4000, [] {
    GenerateAttackes();  // builds both
    for (const int colour : {White, Black}) {
      const AttackSets& sets = attack_sets[colour];
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
    ASSERT_EQ(AttackSum(attack_sets[White], squares), sum);
  });
}

}  // namespace
}  // namespace tarvyle
