#include "book/learnfilter.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "book/learn.h"
#include "tests/support/book_support.h"

namespace tarvyle {
namespace {

struct Keys {
  std::uint32_t low;
  std::uint32_t high;
};

class LearnFilter : public testing::Test {
 protected:
  void SetUp() override { support::StartAfresh(); }
  void TearDown() override { LearnReset(); }

  Keys Draw() {
    return {static_cast<std::uint32_t>(random_()), static_cast<std::uint32_t>(random_())};
  }

  // Enters so many positions of random keys.
  std::vector<Keys> Enter(int count) {
    std::vector<Keys> entered;
    while (count-- > 0) {
      LearnNode* node = NewLNode("text");
      entered.push_back(Draw());
      node->key_lo = entered.back().low;
      node->key_hi = entered.back().high;
      LinkLearnNode(node);
    }
    return entered;
  }

  // Of ten thousand other keys, those that may be learned.
  int FalseAlarms() {
    int alarms = 0;
    for (int i = 0; i < 10000; ++i) {
      const Keys other = Draw();
      alarms += MayBeLearned(other.low, other.high) ? 1 : 0;
    }
    return alarms;
  }

  std::mt19937 random_{5};
};

TEST_F(LearnFilter, SaysNoToEverythingWhileTheTableIsEmpty) { EXPECT_EQ(FalseAlarms(), 0); }

TEST_F(LearnFilter, NeverSaysNoToAPositionOfTheTableHoweverItGrows) {
  std::vector<Keys> all;
  for (const int more : {1, 100, 4000, 10000, 100000}) {
    for (const Keys& keys : Enter(more)) all.push_back(keys);
    for (const Keys& keys : all) ASSERT_TRUE(MayBeLearned(keys.low, keys.high)) << all.size();
  }
}

TEST_F(LearnFilter, SeldomSaysMaybeToOthersHoweverLargeTheTable) {
  for (const int more : {1000, 10000, 100000}) {
    Enter(more);
    EXPECT_LT(FalseAlarms(), 200) << "of 10000";
  }
}

// Four bits a key: with two, a full filter says maybe to three times as many.
TEST_F(LearnFilter, SaysMaybeToFewOthersEvenWhenItIsFull) {
  Enter(4095);
  EXPECT_FALSE(LearnFilterIsFull());
  EXPECT_LT(FalseAlarms(), 65) << "of 10000";
  Enter(1);
  EXPECT_TRUE(LearnFilterIsFull());
}

TEST_F(LearnFilter, ForgetsWithTheTable) {
  Enter(5000);
  LearnClear();
  EXPECT_EQ(FalseAlarms(), 0);
  Enter(1);
  EXPECT_LT(FalseAlarms(), 10);
}

}  // namespace
}  // namespace tarvyle
