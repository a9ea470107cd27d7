#include "book/book.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "book/epd.h"
#include "book/learn.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/text.h"
#include "tests/support/book_support.h"
#include "tests/support/captured.h"

namespace tarvyle {
namespace {

using support::Listen;
using support::Said;
using support::StartAfresh;

constexpr const char* kRangeMessage = "# ----> error: MoveFromLib() \n";

class BookMoves : public testing::Test {
 protected:
  void SetUp() override {
    StartAfresh();
    ASSERT_TRUE(LegalMoveList());
    last_ = treeCnt[1] - 1;
  }

  // Enters the position after the move at `index` of the list with a score that makes `v` its value
  // for the side that plays it.
  static LearnNode* Enter(int index, int v, std::uint8_t book = 1) {
    MakeMove(tree[index]);
    char text[kEpdSize];
    MakeEpd(text);
    LearnNode* node = NewLNode(text);
    node->score = static_cast<std::int32_t>(0u - static_cast<unsigned>(v));
    node->book = book;
    LinkLearnNode(node);
    UnMakeMove(tree[index]);
    return node;
  }

  int last_ = 0;
};

TEST_F(BookMoves, AreNoneWithoutABookPosition) {
  Enter(3, 0, 0);
  LearnNode* nodes[kMaxListMoves];
  Move moves[kMaxListMoves];
  int count = -1;
  EXPECT_FALSE(ListLibMoves(0, last_, nodes, moves, count));
  EXPECT_EQ(count, 0);
  Move choice = 1;
  const Said printed = Listen([&] { choice = MoveFromLib(0, last_); });
  EXPECT_EQ(choice, 0u);
  EXPECT_EQ(printed.out + printed.err, "");
}

TEST_F(BookMoves, AreListedInTheOrderOfTheMoves) {
  LearnNode* seventh = Enter(7, 0);
  LearnNode* second = Enter(2, 0);
  Enter(4, 0, 0);
  LearnNode* nodes[kMaxListMoves];
  Move moves[kMaxListMoves];
  int count = 0;
  const GameRecord before = g;
  const std::vector<Move> list(tree, tree + treeCnt[1]);
  ASSERT_TRUE(ListLibMoves(0, last_, nodes, moves, count));
  ASSERT_EQ(count, 2);
  EXPECT_EQ(nodes[0], second);
  EXPECT_EQ(moves[0], tree[2]);
  EXPECT_EQ(nodes[1], seventh);
  EXPECT_EQ(moves[1], tree[7]);
  EXPECT_EQ(std::memcmp(&before, &g, sizeof g), 0);
  EXPECT_EQ(ply, 0);
  EXPECT_EQ(list, std::vector<Move>(tree, tree + treeCnt[1]));
}

TEST_F(BookMoves, AreLookedForBetweenTheGivenPositionsOnly) {
  for (const int index : {2, 5, 9}) Enter(index, 0);
  LearnNode* nodes[kMaxListMoves];
  Move moves[kMaxListMoves];
  int count = 0;
  ASSERT_TRUE(ListLibMoves(2, 8, nodes, moves, count));
  EXPECT_EQ(count, 2);
  ASSERT_TRUE(ListLibMoves(5, 5, nodes, moves, count));
  EXPECT_EQ(moves[0], tree[5]);
  EXPECT_FALSE(ListLibMoves(6, 8, nodes, moves, count));
  EXPECT_FALSE(ListLibMoves(2, 1, nodes, moves, count));
  EXPECT_EQ(MoveFromLib(6, 8), 0u);
  EXPECT_EQ(MoveFromLib(9, 9), tree[9]);
}

TEST_F(BookMoves, NeedTheSideAndTheTextOfTheNode) {
  LearnNode* node = Enter(3, 0);
  node->side = White;
  EXPECT_EQ(MoveFromLib(0, last_), 0u);
  node->side = Black;
  node->text[0] = 'x';
  EXPECT_EQ(MoveFromLib(0, last_), 0u);
  node->text[0] = 'r';
  EXPECT_EQ(MoveFromLib(0, last_), tree[3]);
  node->key_hi ^= 1;
  EXPECT_EQ(MoveFromLib(0, last_), 0u);
}

constexpr int kIgnored = 0;
constexpr int kRefused = -1;  // with a message

struct RangeRow {
  const char* meaning;
  std::vector<int> values;  // of the candidates
  std::vector<int> ranges;  // that each draws from, or one of the above
};

// The choice that these ranges lead to, drawing with the C library's generator as it stands.
int ChosenIndex(const std::vector<int>& ranges) {
  int chosen = -1;
  int best = -1000000;
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    if (ranges[i] <= 0) continue;
    const int draw = std::rand() % ranges[i];
    if (draw > best) {
      best = draw;
      chosen = static_cast<int>(i);
    }
  }
  return chosen;
}

TEST_F(BookMoves, AreDrawnFromRangesByTheirValues) {
  const RangeRow rows[] = {
      {"plain book nodes", {0, 0, 0}, {21, 21, 21}},
      {"one alone", {0}, {21}},
      {"good values draw from more, up to 70", {0, 30, 70, 71, 500}, {21, 51, 91, 91, 91}},
      {"the least value sets the base", {30, 40}, {30 + 51, 40 + 51}},
      {"a value below 0 weighs 70", {0, -1, -100, -500}, {21, 91, 91, 91}},
      {"and its reduced value sets the base: 999", {-1}, {70 + 999 + 21}},
      {"reduced to 500", {-500}, {70 + 500 + 21}},
      {"-501 becomes 1499: 499 is not enough", {-501}, {70 + 1499 + 21}},
      {"whole pawns are left out", {0, 1000, 5030}, {21, 21, 51}},
      {"500 over stays", {1500}, {70 + 500 + 21}},
      {"501 over is 499 under: ignored", {501, 0}, {kIgnored, 21}},
      {"29 under a pawn still counts", {971, 40}, {kRefused, 40 - 29 + 21}},
      {"30 under is ignored", {970, 40}, {kIgnored, 40 + 40 + 21}},
      {"a base of 0 leaves nothing to a plain node", {979, 0}, {kRefused, kRefused}},
      {"a base of 1 leaves one draw", {980, 0}, {kRefused, 1}},
      {"all refused", {971, 0, 980}, {kRefused, kRefused, kRefused}},
      {"mates are kept as they are", {999950}, {70 + 999950 + 21}},
      {"and weigh 70", {0, 999950}, {21, 91}},
      {"the greatest minimum is a million",
       {INT_MAX, 1000500, INT_MAX - 1},
       {70 + 1000021, 70 + 1000021, 70 + 1000021}},
      {"just no mate", {999900, 0}, {kIgnored, 21}},
      {"the least mate", {999901, 0}, {91, 21}},
      {"being mated is ignored", {-999901, 0}, {kIgnored, 21}},
      {"everything ignored", {-999901, 501, -1000000}, {kIgnored, kIgnored, kIgnored}},
      {"just not mated", {-999900}, {70 + 1100 + 21}},
      {"the least score of all, whose negative is itself", {INT_MIN, 0}, {kIgnored, 21}},
      {"ignored ones do not set the base", {501, 50, -1000000}, {kIgnored, 50 + 71, kIgnored}},
  };
  for (const RangeRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    StartAfresh();
    ASSERT_TRUE(LegalMoveList());
    for (std::size_t i = 0; i < row.values.size(); ++i) {
      Enter(2 * static_cast<int>(i), row.values[i]);
    }
    std::string messages;
    for (const int range : row.ranges) messages += range == kRefused ? kRangeMessage : "";
    for (unsigned seed = 1; seed <= 60; ++seed) {
      std::srand(seed);
      const int chosen = ChosenIndex(row.ranges);
      const int next_draw = std::rand();
      std::srand(seed);
      Move choice = 0;
      const Said printed = Listen([&] { choice = MoveFromLib(0, treeCnt[1] - 1); });
      ASSERT_EQ(choice, chosen < 0 ? 0 : tree[2 * chosen]) << "seed " << seed;
      ASSERT_EQ(std::rand(), next_draw) << "one draw for each candidate that may be chosen";
      ASSERT_EQ(printed.err, messages);
      ASSERT_EQ(printed.out, "");
    }
  }
}

TEST_F(BookMoves, OfEqualDrawsTheEarlierOneIsKept) {
  Enter(1, 980);  // makes the base 1, so that the others can draw nothing but 0
  Enter(4, 0);
  Enter(6, 0);
  Enter(8, 0);
  const Said printed = Listen([&] {
    for (int i = 0; i < 50; ++i) EXPECT_EQ(MoveFromLib(0, last_), tree[4]);
  });
  EXPECT_EQ(printed.err.substr(0, printed.err.find('\n') + 1), kRangeMessage);
}

TEST_F(BookMoves, OfEqualValueAreChosenAboutEquallyOften) {
  for (const int index : {0, 5, 10, 15}) Enter(index, 0);
  std::map<Move, int> chosen;
  std::srand(1);
  for (int i = 0; i < 4000; ++i) ++chosen[MoveFromLib(0, last_)];
  EXPECT_EQ(chosen.size(), 4u);
  for (const auto& [move, times] : chosen) EXPECT_NEAR(times, 1000, 200) << MoveToStr(move);
}

TEST_F(BookMoves, GetTheirRandomValuesFromAWiderRange) {
  Enter(3, 0);
  Enter(8, 0, 0);
  for (unsigned seed = 1; seed <= 50; ++seed) {
    std::srand(seed);
    std::vector<int> expected;
    for (int i = 0; i <= last_; ++i) expected.push_back(std::rand() % (i == 3 ? 50 : 20));
    std::srand(seed);
    RndMovesWithLib(0, last_);
    ASSERT_EQ(std::vector<int>(sort_val, sort_val + last_ + 1), expected) << "seed " << seed;
  }
}

TEST_F(BookMoves, OutsideTheGivenPositionsKeepTheirValues) {
  std::fill_n(sort_val, last_ + 2, 12345);
  const GameRecord before = g;
  RndMovesWithLib(4, 6);
  for (int i = 0; i <= last_ + 1; ++i) {
    const bool inside = i >= 4 && i <= 6;
    EXPECT_EQ(sort_val[i] < 20, inside) << i;
    EXPECT_EQ(sort_val[i] == 12345, !inside) << i;
  }
  EXPECT_EQ(std::memcmp(&before, &g, sizeof g), 0);
}

TEST_F(BookMoves, LeadToThePositionsOfTheBookFile) {
  Said printed = Listen([] { ASSERT_TRUE(ReadLibFile(TESTS_DATA_DIR "/book.bk")); });
  EXPECT_EQ(printed.out, "");
  ASSERT_TRUE(LegalMoveList());
  LearnNode* nodes[kMaxListMoves];
  Move moves[kMaxListMoves];
  int count = 0;
  ASSERT_TRUE(ListLibMoves(0, treeCnt[1] - 1, nodes, moves, count));
  std::string texts;
  for (int i = 0; i < count; ++i) texts += std::string(MoveToStr(moves[i])) + " ";
  EXPECT_EQ(count, 4) << texts;
  for (const char* text : {"e2e4", "d2d4", "c2c4", "g1f3"}) {
    EXPECT_NE(texts.find(text), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace tarvyle
