// Search scores as people and other programs expect them.

#include "host/scoretext.h"

#include <gtest/gtest.h>

namespace tarvyle {

namespace {

struct TextRow {
  int score;
  const char* text;
  int epd;
  bool is_mate;
};

constexpr TextRow kTextRows[] = {
    {0, "+0.00", 0, false},
    {350, "+0.35", 35, false},
    {-350, "-0.35", -35, false},
    {12345, "+12.35", 1234, false},  // that of EPD is cut, not rounded
    {-12345, "-12.35", -1234, false},
    // What rounds to nothing has no sign of its own.
    {4, "+0.00", 0, false},
    {-4, "+0.00", 0, false},
    {-1, "+0.00", 0, false},
    {6, "+0.01", 0, false},
    {-6, "-0.01", 0, false},
    {-5, "-0.01", 0, false},
    {10, "+0.01", 1, false},
    {-10, "-0.01", -1, false},
    // A mate in n plies scores 999999 - n.
    {999998, "#1", 32766, true},
    {999997, "#1", 32765, true},
    {999996, "#2", 32764, true},
    {999990, "#5", 32758, true},
    {999901, "#49", 32669, true},
    {999900, "+999.90", 99990, false},  // the bound of the window is no mate
    {-999999, "-#0", -32767, true},
    {-999998, "-#1", -32766, true},
    {-999997, "-#1", -32765, true},
    {-999995, "-#2", -32763, true},
    {-999901, "-#49", -32669, true},
    {-999900, "-999.90", -99990, false},
};

TEST(ScoreText, IsReadByPeopleAndPrograms) {
  for (const TextRow& row : kTextRows) {
    EXPECT_EQ(ScoreText(row.score), row.text) << row.score;
    EXPECT_EQ(EpdScore(row.score), row.epd) << row.score;
    EXPECT_EQ(IsMateScore(row.score), row.is_mate) << row.score;
  }
}

}  // namespace

}  // namespace tarvyle
