// Positions with known keys, move lists and leaf counts.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "position/perft.h"
#include "tests/support/build_kind.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::DataRows;

class ReferenceTest : public support::PositionTest {};

// Checking every step makes deep trees slow; such builds count the smaller ones only.
constexpr std::uint64_t kMostLeaves = support::kSlowBuild ? 30'000 : 1'000'000'000;

std::string Hex(std::uint64_t number) {
  char text[24];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(number));
  return text;
}

TEST_F(ReferenceTest, KeysOfPositionsAreKnown) {
  for (const auto& row : DataRows("positions.tsv")) {
    ASSERT_GE(row.size(), 5u);
    support::SetUpPosition(row[0]);
    EXPECT_EQ(Hex(g.key), row[2]) << row[0];
    EXPECT_EQ(Hex(g.color_key[White]), row[3]) << row[0];
    EXPECT_EQ(Hex(g.color_key[Black]), row[4]) << row[0];
  }
}

// Moves with their words, "a2a3:00001a28 ...".
std::string ListWithWords() {
  std::string text;
  for (const Move move : support::CurrentList()) {
    char word[16];
    std::snprintf(word, sizeof word, ":%08x", move);
    text += (text.empty() ? "" : " ") + std::string(MoveToStr(move)) + word;
  }
  return text;
}

std::string Field(const std::vector<std::string>& row, std::size_t index) {
  return index < row.size() ? row[index] : "";
}

TEST_F(ReferenceTest, MoveListsAreKnownInOrder) {
  for (const auto& row : DataRows("movelists.tsv")) {
    support::SetUpPosition(row[0]);
    Generate();
    EXPECT_EQ(ListWithWords(), Field(row, 1)) << row[0];
    GenerateCaptures();
    EXPECT_EQ(ListWithWords(), Field(row, 2)) << row[0];
    LegalMoveList();
    EXPECT_EQ(support::ListText(support::CurrentList()), Field(row, 3)) << row[0];
  }
}

TEST_F(ReferenceTest, LeafCountsAreKnown) {
  int counted = 0;
  for (const auto& row : DataRows("perft.tsv")) {
    ASSERT_EQ(row.size(), 3u);
    const std::uint64_t expected = std::stoull(row[2]);
    if (expected > kMostLeaves) continue;
    ++counted;
    support::SetUpPosition(row[0]);
    EXPECT_EQ(Perft(std::stoi(row[1])), expected) << row[0] << " depth " << row[1];
  }
  EXPECT_GT(counted, 200);
}

}  // namespace
}  // namespace tarvyle
