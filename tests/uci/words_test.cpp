// Words of a line from the GUI.

#include "uci/words.h"

#include <gtest/gtest.h>

#include <memory>
#include <string_view>

namespace tarvyle::uci {

namespace {

TEST(UciWords, AreSeparatedByBlanksTabsAndCarriageReturns) {
  std::string_view rest = " \t go  depth\t3 \r";
  EXPECT_EQ(NextWord(rest), "go");
  EXPECT_EQ(NextWord(rest), "depth");
  EXPECT_EQ(NextWord(rest), "3");
  EXPECT_EQ(NextWord(rest), "");
  EXPECT_EQ(rest, "");
}

TEST(UciWords, MayHoldAnythingElse) {
  std::string_view rest = "a\v\xff=\"b\"\n x";
  EXPECT_EQ(NextWord(rest), "a\v\xff=\"b\"\n");
  EXPECT_EQ(NextWord(rest), "x");
}

}  // namespace

}  // namespace tarvyle::uci
