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

// Each reading is one poll; at the tenth the time is over.
struct PlayoutClock {
  int polls = -1;  // the first reading is no poll
  std::uint32_t now = 0;
};
PlayoutClock playout_clock;

std::uint32_t ReadPlayoutClock() {
  ++playout_clock.polls;
  return playout_clock.now += 100;
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
    ASSERT_TRUE(LegalMoveList());
    Candidate candidates[] = {{tree[0], row.value}, {tree[1], 5}};
    playout_clock = {};
    world = {ReadPlayoutClock, ReadTestSeed};
    limit_time = 100;
    TimeReset();
    AddPlayouts(candidates);
    EXPECT_EQ(candidates[0].value, row.value);
    EXPECT_EQ(candidates[1].value, 5);
    EXPECT_EQ(cnt_nodes < 4096, row.ends);
    EXPECT_EQ(playout_clock.polls > 8, !row.ends);
    EXPECT_EQ(is_stop_search != 0, !row.ends);
  }
}

TEST_F(PlayoutLimits, ValueOfAnyCandidateEndsTheStage) {
  GoTo(kFortress);
  ASSERT_TRUE(LegalMoveList());
  Candidate candidates[] = {{tree[0], 5}, {tree[1], kLowest + 1}, {tree[2], 5}};
  world = {ReadPlayoutClock, ReadTestSeed};
  limit_time = 100;
  TimeReset();
  AddPlayouts(candidates);
  EXPECT_LT(cnt_nodes, 4096u);
  EXPECT_EQ(is_stop_search, 0);
}

}  // namespace

}  // namespace tarvyle
