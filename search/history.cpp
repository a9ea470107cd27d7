#include "search/history.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "position/record.h"
#include "position/score.h"
#include "search/state.h"

namespace tarvyle {

namespace {

void CompressHistory() {
  std::int64_t sum = 0;
  int used = 0;
  int maximum = 0;
  for (const int counter : history) {
    if (counter <= 0) continue;
    ++used;
    sum += counter;
    maximum = std::max(maximum, counter);
  }
  const std::int64_t average = std::max<std::int64_t>(1, sum / std::max(1, used));
  const int third = maximum / 3;
  for (int& counter : history) {
    if (counter > average) counter = counter > 2 * third ? 2 : 1;
  }
}

}  // namespace

void SaveHist(Move move, int alpha, int beta) {
  const bool cut = alpha >= beta;
  const bool mate = IsMating(alpha);
  const int reward = mate ? (cut ? 5 : 6) : (cut ? 1 : 2);
  int& counter = History(g.side, move);
  counter = std::min(counter + reward, MAX_HIST);
}

void HistLow() {
  for (int& counter : history) counter /= 2;
}

void HistoryInit(bool clear) {
  if (clear) {
    std::memset(history, 0, sizeof history);
  } else {
    CompressHistory();
  }
}

}  // namespace tarvyle
