#include "uci/scorewords.h"

#include <algorithm>

#include "position/score.h"

namespace tarvyle::uci {

namespace {

constexpr int kPerCentipawn = 10;

// A side that is mated at ply p scores kMated + p there.
int PliesToMate(int distance, int line_length) { return std::max({distance, line_length, 1}); }

}  // namespace

int MatesIn(int score, int line_length) {
  return score < kMateWindow
             ? 0
             : (PliesToMate(score >= -kMated ? 0 : -kMated - score, line_length) + 1) / 2;
}

std::string UciScore(int score, int line_length) {
  if (const int moves = MatesIn(score, line_length); moves > 0) {
    return "mate " + std::to_string(moves);
  }
  if (score <= -kMateWindow) {
    const int plies = PliesToMate(score <= kMated ? 0 : score - kMated, line_length);
    return "mate -" + std::to_string((plies + 1) / 2);
  }
  return "cp " + std::to_string(score / kPerCentipawn);
}

}  // namespace tarvyle::uci
