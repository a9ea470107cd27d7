#include "eval/cache.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <set>
#include <string>
#include <utility>

#include "eval/scoretable.h"
#include "position/directions.h"
#include "position/record.h"
#include "position/types.h"
#include "tests/support/eval_support.h"

namespace tarvyle {
namespace {

constexpr const char* kPosition = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w KQkq -";

// Keys of the position and of each change of it, none of them the same.
class EvaluationKeyTest : public testing::Test {
 protected:
  void SetUp() override {
    support::SetUpRoot(kPosition);
    keys_.insert(EvaluationKey());
  }

  void ExpectANewKey(const char* what) {
    EXPECT_TRUE(keys_.insert(EvaluationKey()).second) << what;
  }

 private:
  std::set<std::uint64_t> keys_;
};

TEST_F(EvaluationKeyTest, TellsApartWhateverTheEvaluationReads) {
  for (const std::uint32_t right : {1u, 2u, 4u, 8u}) {
    g.castle ^= right;
    ExpectANewKey("castling right");
  }
  ++g.castled[White];
  ExpectANewKey("White has castled");
  ++g.castled[Black];
  ExpectANewKey("both have castled");
  set_dir(Black);
  ExpectANewKey("direction table");
  ForgetScores();
  ExpectANewKey("piece-square tables");
}

TEST_F(EvaluationKeyTest, IsTheSameForBothSidesToMove) {
  const std::uint64_t key = EvaluationKey();
  g.side = Black;
  g.xside = White;
  EXPECT_EQ(EvaluationKey(), key);
}

TEST_F(EvaluationKeyTest, DoesNotCountHowOftenASideHasCastled) {
  g.castled[White] = 1;
  const std::uint64_t key = EvaluationKey();
  g.castled[White] = 2;
  EXPECT_EQ(EvaluationKey(), key);
}

TEST(EvaluationCache, KeepsAScoreUntilThePieceSquareTablesChange) {
  support::SetUpRoot(kPosition);
  const int score = support::EvaluateFully();
  CachedScore& kept = CacheSlot(EvaluationKey());
  ASSERT_EQ(kept.key, EvaluationKey());
  kept.positional += 7;
  EXPECT_EQ(support::EvaluateFully(), score + 7);
  InitEvaluate();
  EXPECT_EQ(support::EvaluateFully(), score);
}

TEST(EvaluationCache, HasOnePlaceForKeysWithTheSameLowBits) {
  EXPECT_EQ(&CacheSlot(5), &CacheSlot(5 + (std::uint64_t{1} << 16)));
  EXPECT_NE(&CacheSlot(5), &CacheSlot(5 + (std::uint64_t{1} << 15)));
}

}  // namespace
}  // namespace tarvyle
