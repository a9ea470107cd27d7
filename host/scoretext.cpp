#include "host/scoretext.h"

#include <cstdio>
#include <cstdlib>

#include "position/score.h"

namespace tarvyle {

namespace {

constexpr int kEpdMate = 32767;
constexpr int kMateAtOnce = -kMated;  // a mate in n plies scores n less

}  // namespace

bool IsMateScore(int score) { return IsMating(score) || IsMated(score); }

int EpdScore(int score) {
  if (IsMating(score)) return kEpdMate - (kMateAtOnce - score);
  if (IsMated(score)) return -kEpdMate + (kMateAtOnce + score);
  return score / 10;
}

std::string ScoreText(int score) {
  char text[32];
  if (IsMating(score)) {
    std::snprintf(text, sizeof text, "#%d", (kMateAtOnce - score + 1) / 2);
  } else if (IsMated(score)) {
    std::snprintf(text, sizeof text, "-#%d", (kMateAtOnce + score + 1) / 2);
  } else {
    // Not "-0.00".
    std::snprintf(text, sizeof text, "%+.2f", std::abs(score) < 5 ? 0.0 : score / kPawn);
  }
  return text;
}

}  // namespace tarvyle
