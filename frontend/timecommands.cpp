#include "frontend/timecommands.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "frontend/console.h"
#include "frontend/display.h"
#include "position/record.h"
#include "search/clock.h"

namespace tarvyle {

namespace {

// Bounds of the two commands in 1/100 s. They differ, and from those of the configuration, on
// purpose: a person may ask for faster moves than a clock.
constexpr int kLeastPerMove = 400;
constexpr int kGreatestPerMove = 10000;
constexpr int kLeastByClock = 700;
constexpr int kGreatestByClock = 3000;

constexpr int kMovesPerControl = 40;

// The counter starts at 0 and is raised first, so that the warnings stay silent unless it wraps.
void WarnOfClamp(const char* warning) {
  ++cnt_warning;
  if (cnt_warning == 0) std::fputs(warning, stderr);
}

int Remaining(const char* text) {
  const long number = std::strtol(text, nullptr, 10);
  return static_cast<int>(std::clamp(number, 0L, static_cast<long>(INT_MAX)));
}

}  // namespace

void SetTimePerMove(const char* seconds) {
  const double number = std::strtod(seconds, nullptr);
  if (number == 0.0 || std::isnan(number)) {
    std::fputs("----> error: expected <st second's>\n", stderr);
    return;
  }
  const double hundredths = std::trunc(number * 100);
  if (hundredths < kLeastPerMove) {
    std::fputs("# warning:  time = 4 sec \n", stderr);
    SetAllowance(kLeastPerMove);
  } else if (hundredths > kGreatestPerMove) {
    std::fputs("# warning:  time = 100 sec \n", stderr);
    SetAllowance(kGreatestPerMove);
  } else {
    SetAllowance(static_cast<int>(hundredths));
  }
}

void SetTimeByClock(const char* hundredths) {
  const int moves_left = kMovesPerControl - use_moves(g.game_len) % kMovesPerControl;
  const int per_move = Remaining(hundredths) / moves_left;
  if (per_move > kGreatestByClock) {
    WarnOfClamp("# warning:  time = 30 sec \n");
  } else if (per_move < kLeastByClock) {
    WarnOfClamp("# warning:  time = 7 sec \n");
  }
  SetAllowance(std::clamp(per_move, kLeastByClock, kGreatestByClock));
}

}  // namespace tarvyle
