// The scale of scores.

#include "position/score.h"

#include <gtest/gtest.h>

#include <memory>

namespace tarvyle {

namespace {

struct ScoreRow {
  int score;
  bool mating;
  bool mated;
};

TEST(ScoreScale, TellsMatesFromEvaluationsByTheBound) {
  const ScoreRow rows[] = {
      {1000000, true, false},  {999901, true, false},  {999900, false, false},
      {150000, false, false},  {0, false, false},      {-150000, false, false},
      {-999900, false, false}, {-999901, false, true}, {-999999, false, true},
  };
  for (const ScoreRow& row : rows) {
    EXPECT_EQ(IsMating(row.score), row.mating) << row.score;
    EXPECT_EQ(IsMated(row.score), row.mated) << row.score;
  }
}

TEST(ScoreScale, MatedSideScoresAsIfItsKingWereCapturedAPlyLater) {
  EXPECT_EQ(kCaptureKing, 1000000);
  for (int ply = 0; ply < 97; ++ply) EXPECT_EQ(kMated + ply, -(kCaptureKing - (ply + 1)));
}

}  // namespace

}  // namespace tarvyle
