// The evaluation and the attack maps against the plain ones, in as many positions as there is time
// for.

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>

#include "eval/attackmap.h"
#include "position/text.h"
#include "position/types.h"
#include "tests/support/any_position.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_attacks.h"
#include "tests/support/plain_evaluation.h"

namespace tarvyle {
namespace {

void CompareAttacks() {
  GenerateAttackes();
  for (const int colour : {White, Black}) {
    for (Square square = 0; square < kSquares; ++square) {
      ASSERT_EQ(p_attack[colour][square], support::PlainAttackWord(colour, square))
          << "colour " << colour << " on " << chb[square];
    }
  }
}

TEST(ManyPositions, AreEvaluatedAsThePlainEvaluationDoes) {
  support::VisitTrees(61, support::Scaled(40000, 1000000), [] {
    ASSERT_EQ(support::EvaluateFully(), support::PlainEvaluate(-support::kFar, support::kFar));
  });
}

TEST(ManyPositions, HaveTheAttacksThatALookOutwardsFinds) {
  support::VisitTrees(62, support::Scaled(60000, 1000000), CompareAttacks);
}

}  // namespace
}  // namespace tarvyle
