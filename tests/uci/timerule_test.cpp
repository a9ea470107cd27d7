// How long a search may take.

#include "uci/timerule.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <memory>

#include "position/types.h"
#include "uci/golimits.h"

namespace tarvyle::uci {

namespace {

// What a GUI says of the clock of the side to move; -1 and 0 as in Limits.
struct ClockRow {
  const char* what;
  std::int64_t left;
  std::int64_t increment;
  int moves_to_go;
  std::int64_t move_time;
  std::int64_t overhead;
  std::int64_t last_start;
  std::int64_t most;
};

constexpr ClockRow kClockRows[] = {
    {"no clock", -1, 0, 0, -1, 10, kNoLimit, kNoLimit},
    {"an increment without a clock", -1, 1000, 0, -1, 10, kNoLimit, kNoLimit},
    // A fortieth of the clock; six tenths of that to begin an iteration, twice that to end one.
    {"clock", 40000, 0, 0, -1, 0, 600, 2000},
    {"clock and overhead", 40010, 0, 0, -1, 10, 594, 1980},
    {"three quarters of the increment", 40000, 1000, 0, -1, 0, 1050, 3500},
    {"clock, increment and overhead", 60000, 1000, 0, -1, 10, 1343, 4478},
    {"never more than half the clock", 100, 100000, 0, -1, 0, 45001, 50},
    {"the increment is not there yet", 1000, 4000, 0, -1, 0, 1815, 500},
    {"less than the overhead's share", 10000, 0, 0, -1, 300, 0, 1},
    {"overhead larger than what is left", 200, 0, 0, -1, 300, 0, 1},
    {"the last milliseconds", 79, 0, 0, -1, 0, 0, 2},
    {"the last millisecond", 1, 0, 0, -1, 0, 0, 1},
    {"nothing left", 0, 0, 0, -1, 0, 0, 1},
    {"nothing left but an increment", 0, 100, 0, -1, 0, 45, 1},
    // A control with a known number of moves.
    {"ten moves to go", 10010, 0, 10, -1, 10, 594, 1980},
    {"two moves to go", 1000, 0, 2, -1, 0, 300, 500},
    {"39 moves to go", 39000, 0, 39, -1, 0, 600, 2000},
    {"40 moves to go", 40000, 0, 40, -1, 0, 600, 2000},
    {"more than forty moves to go are forty", 40000, 0, 41, -1, 0, 600, 2000},
    {"very many", 40000, 0, 1000000, -1, 0, 600, 2000},
    // Before more time comes nearly all may go.
    {"one move to go", 10000, 0, 1, -1, 0, 5000, 9000},
    {"one move to go, and overhead", 10010, 0, 1, -1, 10, 5000, 9000},
    {"one move to go: the increment is no help", 10000, 5000, 1, -1, 0, 5000, 9000},
    {"one move to go, hardly any time", 10, 0, 1, -1, 10, 0, 1},
    {"one move to go, overhead larger than what is left", 200, 0, 1, -1, 300, 0, 1},
    // A time for the move.
    {"time for the move", -1, 0, 0, 1000, 0, 1000, 1000},
    {"less the overhead", -1, 0, 0, 1000, 10, 990, 990},
    {"but not less than half", -1, 0, 0, 15, 10, 7, 7},
    {"nor when the overhead is larger", -1, 0, 0, 100, 300, 50, 50},
    {"nor less than a millisecond", -1, 0, 0, 1, 10, 1, 1},
    {"no time for the move", -1, 0, 0, 0, 0, 1, 1},
    // Both: whatever is less.
    {"clock and a short time for the move", 40000, 0, 0, 100, 0, 100, 100},
    {"clock and a time for the move in between", 40000, 0, 0, 1500, 0, 600, 1500},
    {"clock and a long time for the move", 40000, 0, 0, 5000, 0, 600, 2000},
};

TEST(TimeRule, GivesEachMoveItsAllowance) {
  for (const ClockRow& row : kClockRows) {
    for (const int side : {White, Black}) {
      Limits limits;
      limits.time[side] = row.left;
      limits.increment[side] = row.increment;
      limits.time[1 - side] = 7;  // the opponent's: no matter
      limits.increment[1 - side] = 99999;
      limits.moves_to_go = row.moves_to_go;
      limits.move_time = row.move_time;
      const Allowance allowance = AllowanceFor(limits, side, row.overhead);
      EXPECT_EQ(allowance.last_start, row.last_start) << row.what << ", side " << side;
      EXPECT_EQ(allowance.most, row.most) << row.what << ", side " << side;
    }
  }
}

// Whatever the numbers are, a move gets a moment, and never the time that it does not have.
TEST(TimeRule, NeverOverdrawsTheClock) {
  for (const std::int64_t left : {2, 3, 10, 99, 1000, 54321, 7200000}) {
    for (const std::int64_t increment : {0, 10, 1000, 60000}) {
      for (const int moves : {0, 1, 2, 5, 40, 100}) {
        for (const std::int64_t overhead : {0, 10, 100, 5000}) {
          Limits limits;
          limits.time[White] = left;
          limits.increment[White] = increment;
          limits.moves_to_go = moves;
          const Allowance allowance = AllowanceFor(limits, White, overhead);
          EXPECT_GE(allowance.last_start, 0);
          EXPECT_GE(allowance.most, 1);
          EXPECT_LT(allowance.most, left) << left << " " << increment << " " << moves;
        }
      }
    }
  }
}

}  // namespace

}  // namespace tarvyle::uci
