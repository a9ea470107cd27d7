// The clock, the node counter and the stop flag.

#include "search/clock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <memory>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr int kPoll = 4096;  // nodes from one look at the clock to the next

// Read before any test runs: what a process starts with.
const int kLimitAtStart = limit_time;

// Calls StopSearch so often that the last call polls the clock, and returns what that one returns.
int Poll() {
  for (int i = 1; i < kPoll; ++i) StopSearch();
  return StopSearch();
}

using Clock = SearchTest;

TEST_F(Clock, ShowsMillisecondsAndHundredths) {
  struct Row {
    std::uint32_t milliseconds;
    std::uint32_t hundredths;
  };
  for (const Row& row : {Row{0, 0}, {9, 0}, {10, 1}, {7123, 712}, {4294967295u, 429496729u}}) {
    test_clock.milliseconds = row.milliseconds;
    EXPECT_EQ(tick_cnt(), row.milliseconds);
    EXPECT_EQ(TICK_COUNT(), row.hundredths);
  }
}

TEST_F(Clock, IsTheSystemsRealtimeClockUnlessReplaced) {
  const auto system_milliseconds = [] {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
  };
  const std::uint32_t before = system_milliseconds();
  const std::uint32_t reading = RealMilliseconds();
  const std::uint32_t after = system_milliseconds();
  EXPECT_LE(reading - before, after - before);  // unsigned differences: a wrap does not matter
}

TEST_F(Clock, SeedsFromTheTimeOfDayUnlessReplaced) {
  const auto before = static_cast<unsigned>(std::time(nullptr));
  const unsigned seed = RealSeed();
  EXPECT_LE(seed - before, static_cast<unsigned>(std::time(nullptr)) - before);
}

TEST_F(Clock, SeedChoosesTheRandomSequenceOfTheCLibrary) {
  for (const unsigned seed : {1u, 2u, 77u}) {
    std::srand(seed);
    const int wanted[3] = {std::rand(), std::rand(), std::rand()};
    test_clock.seed = seed;
    SeedRandom();
    for (const int number : wanted) EXPECT_EQ(std::rand(), number);
  }
}

TEST_F(Clock, ResetForgetsNodesAndStopAndTakesTheTime) {
  cnt_nodes = 5;
  is_stop_search = 1;
  curr_time = 1;
  test_clock.milliseconds = 123456;
  TimeReset();
  EXPECT_EQ(cnt_nodes, 0u);
  EXPECT_EQ(is_stop_search, 0);
  EXPECT_EQ(start_time, 12345);
  EXPECT_EQ(curr_time, 12345);
}

TEST_F(Clock, ResetCountsFromWhereTheWorldWantsIt) {
  world.first_count = [] { return std::uint64_t{17}; };
  TimeReset();
  EXPECT_EQ(cnt_nodes, 17u);
  cnt_nodes = 1000;
  world.first_count = [] { return cnt_nodes + 3; };
  TimeReset();
  EXPECT_EQ(cnt_nodes, 1003u) << "the stage before may be counted on";
}

TEST_F(Clock, IsStoppedByHandAtOnce) {
  StopNow();
  EXPECT_EQ(StopSearch(), 1);
  EXPECT_EQ(test_clock.readings, 0);
}

TEST_F(Clock, AllowanceIsGivenBack) {
  SetAllowance(321);
  {
    const AllowanceGuard guard;
    SetAllowance(5);
    SetAllowance(6);
    EXPECT_EQ(limit_time, 6);
  }
  EXPECT_EQ(limit_time, 321);
}

TEST_F(Clock, EachCallCountsOneNodeInSixtyFourBits) {
  StopSearch();
  StopSearch();
  EXPECT_EQ(cnt_nodes, 2u);
  cnt_nodes = 0xFFFFFFFF;
  StopSearch();
  EXPECT_EQ(cnt_nodes, 0x100000000u);
}

TEST_F(Clock, CountsNodesAlsoAfterTheStop) {
  is_stop_search = 1;
  StopSearch();
  EXPECT_EQ(cnt_nodes, 1u);
}

TEST_F(Clock, IsReadOnceEvery4096Nodes) {
  for (int i = 1; i <= 3 * kPoll; ++i) {
    StopSearch();
    ASSERT_EQ(test_clock.readings, i / kPoll) << "node " << i;
  }
}

TEST_F(Clock, PollRemembersTheReading) {
  test_clock.milliseconds = 3210;
  Poll();
  EXPECT_EQ(curr_time, 321);
  EXPECT_EQ(start_time, 0);
}

TEST_F(Clock, SearchShorterThan4096NodesNeverReadsItAndNeverStops) {
  limit_time = 1;
  test_clock.milliseconds = 1000000;
  for (int i = 1; i < kPoll; ++i) ASSERT_EQ(StopSearch(), 0);
  EXPECT_EQ(test_clock.readings, 0);
}

TEST_F(Clock, StopsAt95PercentOfTheAllowance) {
  struct Row {
    int limit;    // 1/100 s
    int elapsed;  // 1/100 s
    int stops;
  };
  constexpr Row kRows[] = {{750, 711, 0}, {750, 712, 1}, {750, 713, 1},    {700, 664, 0},
                           {700, 665, 1}, {400, 379, 0}, {400, 380, 1},    {10000, 9499, 0},
                           {2, 0, 0},     {2, 1, 1},     {10000, 9500, 1}, {1, 0, 1}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "limit " << row.limit << ", elapsed " << row.elapsed);
    limit_time = row.limit;
    test_clock.milliseconds = 50000;
    TimeReset();
    test_clock.milliseconds += static_cast<std::uint32_t>(row.elapsed) * 10;
    EXPECT_EQ(Poll(), row.stops);
    EXPECT_EQ(is_stop_search, row.stops);
  }
}

TEST_F(Clock, With750ItStopsAtTheFirstPollAtOrAfter712) {
  limit_time = 750;
  test_clock.step = 1000;  // a second passes between two polls
  TimeReset();
  for (int second = 1; second <= 7; ++second) ASSERT_EQ(Poll(), 0) << second;
  EXPECT_EQ(Poll(), 1);
}

TEST_F(Clock, IsNotReadAgainAfterTheStop) {
  limit_time = 100;
  test_clock.milliseconds = 950;
  ASSERT_EQ(Poll(), 1);
  const int readings = test_clock.readings;
  test_clock.milliseconds = 0;
  EXPECT_EQ(Poll(), 1);
  EXPECT_EQ(Poll(), 1);
  EXPECT_EQ(test_clock.readings, readings);
  EXPECT_EQ(curr_time, 95);
}

TEST_F(Clock, OnlyAResetTakesTheStopBack) {
  is_stop_search = 1;
  Poll();
  EXPECT_EQ(is_stop_search, 1);
  TimeReset();
  EXPECT_EQ(StopSearch(), 0);
}

TEST_F(Clock, ThatWrapsStartsAgainAtTheFirstPollAfterwards) {
  limit_time = 750;
  test_clock.milliseconds = 4294967290u;
  TimeReset();
  test_clock.milliseconds = 70;  // the millisecond count has wrapped
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(start_time, 7);
  EXPECT_EQ(curr_time, 7);
  test_clock.milliseconds = 70 + 7119;
  EXPECT_EQ(Poll(), 0);
  test_clock.milliseconds = 70 + 7120;
  EXPECT_EQ(Poll(), 1);
}

TEST_F(Clock, ThatIsSetBackStartsAgain) {
  limit_time = 750;
  test_clock.milliseconds = 100000;
  TimeReset();
  test_clock.milliseconds = 99990;
  EXPECT_EQ(Poll(), 0);
  EXPECT_EQ(start_time, 9999);
}

TEST_F(Clock, AllowanceIsSevenAndAHalfSecondsByDefault) { EXPECT_EQ(kLimitAtStart, 750); }

}  // namespace

}  // namespace tarvyle
