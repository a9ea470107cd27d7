// "score" prints nothing; what it evaluated is remembered, as every evaluation is.

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "eval/cache.h"
#include "eval/evaluate.h"
#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

using ScoreCommandTest = FrontEndTest;

bool IsRemembered() {
  const std::uint64_t key = EvaluationKey();
  return CacheSlot(key).key == key;
}

TEST_F(ScoreCommandTest, EvaluatesThePosition) {
  ASSERT_TRUE(Play("e2e4"));
  ForgetScores();
  ASSERT_FALSE(IsRemembered());
  Obey("score");
  EXPECT_TRUE(IsRemembered());
}

// A narrow window would be answered with the bare material.
TEST_F(ScoreCommandTest, EvaluatesHoweverLargeTheDifferenceInMaterial) {
  ASSERT_TRUE(InitGame("4k3/8/8/3q4/4P3/8/8/QQQQKQQQ w - -"));
  maxHungValue[Black] = 0;
  Obey("score");
  EXPECT_TRUE(IsRemembered());
  EXPECT_GT(maxHungValue[Black], 0) << "the queen hangs";
}

}  // namespace
}  // namespace tarvyle
