// Play styles by name.

#include "search/style.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// Read before any test runs: what a process starts with.
const int kDefaultStyle = PLAY_STYLE;

using PlayStyle = SearchTest;

TEST_F(PlayStyle, IsKnowledge3ByDefault) {
  EXPECT_EQ(kDefaultStyle, 2);
  PLAY_STYLE = kDefaultStyle;
  EXPECT_STREQ(print_play_str(), "knowledge3");
}

TEST_F(PlayStyle, IsChosenByItsExactName) {
  const char* const names[3] = {"knowledge1", "knowledge2", "knowledge3"};
  for (int style = 0; style < 3; ++style) {
    EXPECT_STREQ(play_style_str[style], names[style]);
    PLAY_STYLE = (style + 1) % 3;
    EXPECT_TRUE(load_play_style(names[style]));
    EXPECT_EQ(PLAY_STYLE, style);
    EXPECT_STREQ(print_play_str(), names[style]);
  }
}

TEST_F(PlayStyle, StaysWhenTheNameIsUnknown) {
  PLAY_STYLE = kKnowledge2;
  const char* const unknown[] = {nullptr,       "",
                                 "knowledge",   "knowledge4",
                                 "Knowledge1",  "knowledge1 ",
                                 " knowledge1", "knowledge11",
                                 "KNOWLEDGE3"};
  for (const char* name : unknown) {
    EXPECT_FALSE(load_play_style(name)) << (name != nullptr ? name : "null");
    EXPECT_EQ(PLAY_STYLE, 1);
  }
}

}  // namespace

}  // namespace tarvyle
