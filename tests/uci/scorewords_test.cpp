// Scores in the protocol's words.

#include "uci/scorewords.h"

#include <gtest/gtest.h>

#include "position/score.h"

namespace tarvyle::uci {

namespace {

struct ScoreRow {
  int score;
  int line_length;
  const char* text;
  int mates_in;
};

// A mate in n plies scores 999999 - n; being mated, the negative.
constexpr ScoreRow kScoreRows[] = {
    {0, 5, "cp 0", 0},
    {9, 5, "cp 0", 0},
    {-9, 5, "cp 0", 0},
    {10, 5, "cp 1", 0},
    {1239, 5, "cp 123", 0},
    {-1239, 5, "cp -123", 0},
    {999899, 3, "cp 99989", 0},
    {-999899, 3, "cp -99989", 0},
    // Mates.
    {999998, 1, "mate 1", 1},
    {999997, 2, "mate 1", 1},
    {999996, 3, "mate 2", 2},
    {999994, 5, "mate 3", 3},
    {999901, 1, "mate 49", 49},
    {-999997, 2, "mate -1", 0},
    {-999995, 4, "mate -2", 0},
    {-999901, 2, "mate -49", 0},
    {-999900, 2, "mate -50", 0},
    // At the root the mate is there already, and a line has a move at least.
    {999999, 0, "mate 1", 1},
    {1000000, 0, "mate 1", 1},
    {-999999, 0, "mate -1", 0},
    {-1000000, 0, "mate -1", 0},
    // A mate is never nearer than the line that leads to it is long.
    {999998, 5, "mate 3", 3},
    {999998, 6, "mate 3", 3},
    {999998, 7, "mate 4", 4},
    {-999997, 5, "mate -3", 0},
    {-999997, 8, "mate -4", 0},
    {-1000000, 4, "mate -2", 0},
    // The edge of the window says only that there is a mate.
    {kMateWindow, 3, "mate 50", 50},
};

TEST(UciScore, CountsHundredthsOfAPawnAndMovesToAMate) {
  for (const ScoreRow& row : kScoreRows) {
    EXPECT_EQ(UciScore(row.score, row.line_length), row.text) << row.score;
    EXPECT_EQ(MatesIn(row.score, row.line_length), row.mates_in) << row.score;
  }
}

}  // namespace

}  // namespace tarvyle::uci
