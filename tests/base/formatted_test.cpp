// Texts as std::printf makes them.

#include "base/formatted.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvyle {

namespace {

TEST(FormattedTest, IsWhatPrintfPrints) {
  EXPECT_EQ(Formatted("%5s|%-3d|%02f%%\n", "e2e4", 7, 1.5), " e2e4|7  |1.500000%\n");
  EXPECT_EQ(Formatted("%s", ""), "");
}

TEST(FormattedTest, IsOfAnyLength) {
  const std::string text(100000, 'x');
  EXPECT_TRUE(Formatted("%s%d", text.c_str(), 7) == text + "7");
}

}  // namespace

}  // namespace tarvyle
