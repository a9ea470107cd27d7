#include "base/property.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/files.h"

namespace tarvyle {
namespace {

using Pairs = std::vector<std::pair<std::string, std::string>>;

class PropertyTest : public testing::Test {
 protected:
  void SetUp() override { property_clear(); }

  void TearDown() override { property_clear(); }

  // Loads a configuration file of this content.
  bool Load(const std::string& content) {
    return property_load(folder_.Write("configuration", content).c_str());
  }

  // All entries, newest first.
  static Pairs Entries() {
    Pairs entries;
    for (const Property* entry = dict; entry != nullptr; entry = entry->next) {
      entries.emplace_back(entry->name, entry->value);
    }
    return entries;
  }

  const support::TemporaryFolder folder_;
};

TEST_F(PropertyTest, EntriesStandNewestFirst) {
  property_add("one", "1");
  property_add("two", "2");
  EXPECT_EQ(Entries(), (Pairs{{"two", "2"}, {"one", "1"}}));
}

TEST_F(PropertyTest, AddedTextsAreCopied) {
  char name[] = "name";
  char value[] = "value";
  property_add(name, value);
  name[0] = value[0] = 'x';
  EXPECT_EQ(Entries(), (Pairs{{"name", "value"}}));
}

TEST_F(PropertyTest, MissingKeyReadsAsTheEmptyText) {
  EXPECT_STREQ(property_get("hash size"), "");
  property_add("size", "1");
  EXPECT_STREQ(property_get("hash size"), "");
}

TEST_F(PropertyTest, LongerNameThatContainsTheNeedleAnswers) {
  property_add("hash size in entries", "38");
  EXPECT_STREQ(property_get("hash size"), "38");
}

TEST_F(PropertyTest, NewestNameThatContainsTheNeedleAnswers) {
  property_add("hash size", "38");
  property_add("old hash size", "40");
  EXPECT_STREQ(property_get("hash size"), "40");
}

TEST_F(PropertyTest, NeedleIsComparedLetterByLetter) {
  property_add("Hash Size", "38");
  EXPECT_STREQ(property_get("hash size"), "");
}

TEST_F(PropertyTest, ClearingForgetsEverything) {
  property_add("name", "value");
  property_clear();
  EXPECT_EQ(dict, nullptr);
}

TEST_F(PropertyTest, MissingFileIsRefused) {
  EXPECT_FALSE(property_load(folder_.Path("missing").c_str()));
  EXPECT_EQ(dict, nullptr);
}

TEST_F(PropertyTest, FileOfAnyContentLoads) {
  for (const char* content : {"", "\n\n", "no pair at all", "====\"\"\"\n"}) {
    EXPECT_TRUE(Load(content)) << content;
    EXPECT_EQ(Entries(), Pairs{}) << content;
  }
}

TEST_F(PropertyTest, FileOfCommentsOnlyLoadsAndEveryKeyReadsAsEmpty) {
  EXPECT_TRUE(Load("# a comment\n#hash size=\"38\"\n"));
  EXPECT_STREQ(property_get("hash size"), "");
}

TEST_F(PropertyTest, LaterLineOfTheSameKeyWins) {
  ASSERT_TRUE(Load("book move=\"auto\"\nbook move=\"off\"\n"));
  EXPECT_STREQ(property_get("book move"), "off");
}

TEST_F(PropertyTest, LaterFileWins) {
  ASSERT_TRUE(Load("book move=\"auto\"\n"));
  ASSERT_TRUE(Load("book move=\"off\"\n"));
  EXPECT_STREQ(property_get("book move"), "off");
  EXPECT_EQ(Entries().size(), 2u);
}

TEST_F(PropertyTest, UnquotedValueKeepsItsLineEnd) {
  ASSERT_TRUE(Load("random search?!=enable\n"));
  EXPECT_STREQ(property_get("random search?!"), "enable\n");
  ASSERT_TRUE(Load("random search?!=\"enable\"\n"));
  EXPECT_STREQ(property_get("random search?!"), "enable");
}

struct LineRow {
  const char* line;
  Pairs entries;
};

TEST_F(PropertyTest, LinesAreSplitAtRunsOfDelimiters) {
  const LineRow rows[] = {
      {"name=\"value\"\n", {{"name", "value"}}},
      {"name=\"value\"", {{"name", "value"}}},
      {"name=value", {{"name", "value"}}},
      {"\"name\"=\"value\"\n", {{"name", "value"}}},
      {"==name==value==\n", {{"name", "value"}}},
      {"name\"value\n", {{"name", "value\n"}}},
      {"name=\"value\" behind=\"more\"\n", {{"name", "value"}}},
      {"name = \"value\"\n", {{"name ", " "}}},
      {"  name=\" value \"\n", {{"  name", " value "}}},
      {"name=\"value\"\r\n", {{"name", "value"}}},
      {"name=value\r\n", {{"name", "value\r\n"}}},
      {"name=\"\"\n", {{"name", "\n"}}},
      {"name=\"\"", {}},
      {"name\n", {}},
      {"\n", {}},
      {"#name=\"value\"\n", {}},
      {" #name=\"value\"\n", {{" #name", "value"}}},
      {"=#name=\"value\"\n", {{"#name", "value"}}},
  };
  for (const LineRow& row : rows) {
    property_clear();
    ASSERT_TRUE(Load(row.line)) << row.line;
    EXPECT_EQ(Entries(), row.entries) << row.line;
  }
}

constexpr std::size_t kLineLength = 255;  // longer lines are cut there

TEST_F(PropertyTest, RestOfAnOverlongLineIsALineOfItsOwn) {
  const std::string name = "name=";
  const std::string value(kLineLength - name.size(), 'v');
  ASSERT_TRUE(Load(name + value + "rest=\"other\"\n"));
  EXPECT_EQ(Entries(), (Pairs{{"rest", "other"}, {"name", value}}));
}

TEST_F(PropertyTest, RestOfAnOverlongLineCanBeAComment) {
  ASSERT_TRUE(Load(std::string(kLineLength, 'n') + "#rest=\"other\"\n"));
  EXPECT_EQ(Entries(), Pairs{});
}

TEST_F(PropertyTest, RestOfAnOverlongCommentIsNotAComment) {
  ASSERT_TRUE(Load(std::string(kLineLength, '#') + "rest=\"other\"\n"));
  EXPECT_EQ(Entries(), (Pairs{{"rest", "other"}}));
}

TEST_F(PropertyTest, ShippedConfigurationAnswersEveryKey) {
  ASSERT_TRUE(property_load(SHIPPED_DATA_DIR "/tarvyle.cfg"));
  EXPECT_STREQ(property_get("hash size"), "38");
  EXPECT_STREQ(property_get("time search default seconds"), "10");
  EXPECT_STREQ(property_get("play style"), "knowledge3");
  EXPECT_STRNE(property_get("random search?!"), "");
  EXPECT_STRNE(property_get("random search?!"), "enable");
  EXPECT_STREQ(property_get("book move"), "auto");
  EXPECT_STRNE(property_get("learn file write"), "");
  EXPECT_STRNE(property_get("learn file write"), "disable");
  EXPECT_EQ(Entries().size(), 6u);
}

}  // namespace
}  // namespace tarvyle
