// What the search offers and does not need itself.

#include "search/extras.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using Extras = SearchTest;

TEST_F(Extras, CountsSlidingPieces) {
  struct Row {
    const char* root;
    int white;
    int black;
  };
  constexpr Row kRows[] = {{kStart.data(), 5, 5},
                           {"4k3/8/8/8/8/8/8/4K3 w", 0, 0},
                           {"rbqnk3/pppp4/8/8/8/8/8/QQ2KNN1 w", 2, 3}};
  for (const Row& row : kRows) {
    ASSERT_TRUE(InitGame(row.root));
    EXPECT_EQ(SweepCnt(White), row.white) << row.root;
    EXPECT_EQ(SweepCnt(Black), row.black) << row.root;
  }
}

TEST_F(Extras, PhaseRecordIsResetButForItsAmount) {
  PhaseInfo phase;
  std::memset(&phase, 0x55, sizeof phase);
  EXPECT_EQ(tree_is_good(phase), 0x55555555);
  PhaseInfoReset(phase, 42);
  for (const int counter : phase.counters) EXPECT_EQ(counter, 0);
  for (const int counter : phase.more_counters) EXPECT_EQ(counter, 0);
  EXPECT_EQ(phase.flags[0], 0);
  EXPECT_EQ(phase.flags[1], 0);
  EXPECT_EQ(phase.amount, 42);
  EXPECT_EQ(tree_is_good(phase), 0);
  phase.flags[0] = 1;
  EXPECT_EQ(tree_is_good(phase), 1);
}

}  // namespace

}  // namespace tarvyle
