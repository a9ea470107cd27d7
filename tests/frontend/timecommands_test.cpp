#include "frontend/timecommands.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <limits>
#include <string>

#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr const char* kExpected = "----> error: expected <st second's>\n";
constexpr const char* kFourSeconds = "# warning:  time = 4 sec \n";
constexpr const char* kHundredSeconds = "# warning:  time = 100 sec \n";

struct StCase {
  const char* argument;
  int limit;  // 1/100 s; 750 stands before
  const char* err;
};

class StTest : public FrontEndTest, public testing::WithParamInterface<StCase> {};

TEST_P(StTest, SetsTheAllowance) {
  const Said said = Listen([] { SetTimePerMove(GetParam().argument); });
  EXPECT_EQ(limit_time, GetParam().limit);
  EXPECT_EQ(said.err, GetParam().err);
  EXPECT_EQ(said.out, "");
}

INSTANTIATE_TEST_SUITE_P(
    Arguments, StTest,
    testing::Values(StCase{"30", 3000, ""}, StCase{"4", 400, ""}, StCase{"100", 10000, ""},
                    StCase{"7.25", 725, ""}, StCase{"8.129", 812, ""}, StCase{"12abc", 1200, ""},
                    StCase{"1e1", 1000, ""}, StCase{"+9", 900, ""}, StCase{"0x10", 1600, ""},
                    // Just inside and just outside the bounds.
                    StCase{"3.99", 400, kFourSeconds}, StCase{"4.009", 400, ""},
                    StCase{"100.009", 10000, ""}, StCase{"100.01", 10000, kHundredSeconds},
                    // Out of bounds.
                    StCase{"2.5", 400, kFourSeconds}, StCase{"0.001", 400, kFourSeconds},
                    StCase{"-5", 400, kFourSeconds}, StCase{"-1e300", 400, kFourSeconds},
                    StCase{"-inf", 400, kFourSeconds}, StCase{"101", 10000, kHundredSeconds},
                    StCase{"21474837", 10000, kHundredSeconds},
                    StCase{"4294967296", 10000, kHundredSeconds},
                    StCase{"1e9999", 10000, kHundredSeconds}, StCase{"inf", 10000, kHundredSeconds},
                    // Not a time.
                    StCase{"", 750, kExpected}, StCase{"0", 750, kExpected},
                    StCase{"-0.0", 750, kExpected}, StCase{"abc", 750, kExpected},
                    StCase{"nan", 750, kExpected}, StCase{"-nan", 750, kExpected}));

class TimeTest : public FrontEndTest {
 protected:
  // The allowance that "time" gives for these remaining hundredths.
  static int Allowance(const std::string& remaining) {
    limit_time = 750;
    const Said said = Listen([&] { SetTimeByClock(remaining.c_str()); });
    EXPECT_EQ(said.out + said.err, "");
    return limit_time;
  }

  static void PlayHalfMoves(int count) {
    InitNewGame();
    for (int i = 0; i < count; ++i) ASSERT_TRUE(Play(kKnightMoves[i % 4]));
  }
};

TEST_F(TimeTest, SpreadsTheClockOverFortyMoves) {
  EXPECT_EQ(Allowance("40000"), 1000);
  EXPECT_EQ(Allowance("40039"), 1000) << "divided without a rest";
  EXPECT_EQ(Allowance("60000"), 1500);
  EXPECT_EQ(Allowance("60040"), 1501);
  EXPECT_EQ(cnt_warning, 0u);
}

TEST_F(TimeTest, SixtySecondsAtTheStartAreClampedInSilence) {
  EXPECT_EQ(Allowance("6000"), 700);
  EXPECT_EQ(cnt_warning, 1u);
}

TEST_F(TimeTest, ClampsBetweenSevenAndThirtySeconds) {
  EXPECT_EQ(Allowance("28000"), 700);
  EXPECT_EQ(Allowance("120000"), 3000);
  EXPECT_EQ(cnt_warning, 0u) << "the bounds themselves are not clamped";
  EXPECT_EQ(Allowance("27999"), 700);
  EXPECT_EQ(cnt_warning, 1u);
  EXPECT_EQ(Allowance("120040"), 3000);
  EXPECT_EQ(cnt_warning, 2u);
}

TEST_F(TimeTest, CountsTheMovesOfTheGame) {
  PlayHalfMoves(1);
  EXPECT_EQ(Allowance("39000"), 1000) << "39 moves left";
  PlayHalfMoves(2);
  EXPECT_EQ(Allowance("39000"), 1000);
  PlayHalfMoves(3);
  EXPECT_EQ(Allowance("38000"), 1000);
}

TEST_F(TimeTest, GivesTheLastMoveBeforeTheControlAllThatIsLeft) {
  PlayHalfMoves(78);  // 39 full moves
  EXPECT_EQ(Allowance("100000"), 3000);
  EXPECT_EQ(Allowance("2500"), 2500);
}

TEST_F(TimeTest, StartsAnewAfterFortyMoves) {
  PlayHalfMoves(80);
  EXPECT_EQ(Allowance("40000"), 1000);
  PlayHalfMoves(81);
  EXPECT_EQ(Allowance("39000"), 1000);
}

TEST_F(TimeTest, TakesStrangeNumbersForTheLeastOrTheMost) {
  EXPECT_EQ(Allowance(""), 700);
  EXPECT_EQ(Allowance("abc"), 700);
  EXPECT_EQ(Allowance("0"), 700);
  EXPECT_EQ(Allowance("-1"), 700);
  EXPECT_EQ(Allowance("-99999999999999999999"), 700);
  EXPECT_EQ(Allowance(std::to_string(INT_MAX)), 3000);
  EXPECT_EQ(Allowance("4294967296"), 3000);
  EXPECT_EQ(Allowance("99999999999999999999"), 3000);
  EXPECT_EQ(Allowance("40000abc"), 1000);
  EXPECT_EQ(Allowance("40000.9"), 1000);
}

TEST_F(TimeTest, WarnsOnlyWhenItsCounterWraps) {
  constexpr std::uint32_t kLast = std::numeric_limits<std::uint32_t>::max();
  cnt_warning = kLast;
  EXPECT_EQ(Listen([] { SetTimeByClock("999999"); }).err, "# warning:  time = 30 sec \n");
  EXPECT_EQ(cnt_warning, 0u);
  EXPECT_EQ(Listen([] { SetTimeByClock("999999"); }).err, "");
  cnt_warning = kLast;
  EXPECT_EQ(Listen([] { SetTimeByClock("1"); }).err, "# warning:  time = 7 sec \n");
  EXPECT_EQ(limit_time, 700);
}

}  // namespace
}  // namespace tarvyle
