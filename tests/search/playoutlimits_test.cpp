// The play-outs of the randomised root search at their limits: a choice of two moves, and values at
// the ends of their range.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string>

#include "search/randomroot.h"
#include "tests/support/randomsearch_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();

// Stands still until the play-outs; their time is over at the tenth reading. At their first poll
// the first move gets a value that two thousand million play-outs would have to lead to.
struct PlayoutClock {
  int value = 0;
  int polls = -1;  // the first reading is no poll
  std::uint32_t now = 0;
};
PlayoutClock playout_clock;

std::uint32_t ReadPlayoutClock() {
  if (StageOf(limit_time) == 2) {
    if (++playout_clock.polls == 1) sort_val[0] = playout_clock.value;
    playout_clock.now += 100;
  }
  return playout_clock.now;
}

using PlayoutLimits = SearchTest;

TEST_F(PlayoutLimits, OfTwoMovesOneIsDrawn) {
  GoTo("7k/R7/p7/8/8/8/8/1R5K b", Nulls(96));  // at the ply after this one a play-out ends
  ASSERT_TRUE(LegalMoveList());
  ASSERT_EQ(ListLength(), 2);
  std::srand(3);
  std::rand();
  const int second = std::rand();
  std::srand(3);
  EXPECT_EQ(RndSearch(), 0);
  EXPECT_EQ(std::rand(), second);
}

TEST_F(PlayoutLimits, ValuesAtTheEndsOfTheirRangeEndTheStage) {
  struct Row {
    int value;
    bool ends;
  };
  constexpr Row kRows[] = {{kLowest + 1, true},   {kLowest + 2, false},  {kLowest + 3, false},
                           {kHighest - 3, false}, {kHighest - 2, false}, {kHighest - 1, true}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.value);
    ASSERT_TRUE(FreshProcess());
    GoTo(kFortress);  // every play-out is a draw and leaves the values as they are
    playout_clock = {row.value};
    world = {ReadPlayoutClock, ReadTestSeed};
    is_rnd_search = 1;
    limit_time = kAllowance;
    Move move = 0;
    const std::string text = Printed([&] { EXPECT_TRUE(SearchMove(move)); });
    EXPECT_NE(text.find(", score " + std::to_string(row.value) + "\n"), std::string::npos) << text;
    if (row.ends) {
      EXPECT_EQ(playout_clock.polls, 1);
    } else {
      EXPECT_GE(playout_clock.polls, 9);
    }
  }
}

}  // namespace

}  // namespace tarvyle
