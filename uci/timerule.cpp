#include "uci/timerule.h"

#include <algorithm>

namespace tarvyle::uci {

namespace {

constexpr std::int64_t kMovesAhead = 40;  // for which the clock must last at any time

Allowance ForMove(std::int64_t time, std::int64_t overhead) {
  const std::int64_t most = std::max({time - overhead, time / 2, std::int64_t{1}});
  return {most, most};
}

// More time comes after this move: nearly all that is left may go.
Allowance ForLastMove(std::int64_t left) {
  return {left / 2, std::max<std::int64_t>(left * 9 / 10, 1)};
}

// An even share of the clock and most of the increment, less what every move loses on its way. An
// iteration takes a multiple of the one before, so a late one is not begun; one that has begun may
// overdraw, but never to half the clock.
Allowance ByClock(std::int64_t left, std::int64_t moves, std::int64_t increment,
                  std::int64_t overhead) {
  const std::int64_t share = std::max<std::int64_t>(left / moves + increment * 3 / 4 - overhead, 0);
  return {share * 6 / 10, std::max<std::int64_t>(std::min(share * 2, left / 2), 1)};
}

}  // namespace

Allowance AllowanceFor(const Limits& limits, int side, std::int64_t overhead) {
  Allowance allowance{kNoLimit, kNoLimit};
  if (limits.time[side] >= 0) {
    const std::int64_t left = std::max<std::int64_t>(limits.time[side] - overhead, 0);
    const std::int64_t moves = limits.moves_to_go > 0
                                   ? std::min<std::int64_t>(limits.moves_to_go, kMovesAhead)
                                   : kMovesAhead;
    allowance =
        moves == 1 ? ForLastMove(left) : ByClock(left, moves, limits.increment[side], overhead);
  }
  if (limits.move_time >= 0) {
    const Allowance exact = ForMove(limits.move_time, overhead);
    allowance = {std::min(allowance.last_start, exact.last_start),
                 std::min(allowance.most, exact.most)};
  }
  return allowance;
}

}  // namespace tarvyle::uci
