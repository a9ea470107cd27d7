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

#include "book/bookfile.h"
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
  // Places in the move list of two candidates that stand by each other.
  static constexpr int kFirst = 2;
  static constexpr int kSecond = 3;

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

// --- what candidates draw from -------------------------------------------------------------------

constexpr int kIgnored = 0;
constexpr int kRefused = -1;  // with a message

struct PairRow {
  const char* meaning;
  int values[2];  // of the two candidates
  int ranges[2];  // that each draws from, worked out by hand, or one of the above
};

// A base of 21 more than the least reduced value, to which a positive value adds itself, up to 70,
// and one below 0 adds 70. A value below 0 is reduced upwards by whole pawns until it is above 499,
// one above 500 downwards.
const PairRow kPairRows[] = {
    {"plain book nodes", {0, 0}, {21, 21}},
    {"a good value draws from more", {0, 30}, {21, 51}},
    {"the better of two", {30, 40}, {30 + 51, 40 + 51}},
    {"up to 70", {0, 70}, {21, 91}},
    {"and not further", {71, 0}, {91, 21}},
    {"500 is still kept whole", {500, 0}, {91, 21}},
    {"the least value sets the base, whatever its place", {40, 30}, {40 + 51, 30 + 51}},
    {"a value below 0 weighs 70", {0, -1}, {21, 91}},
    {"so does one of half a pawn", {-500, 0}, {91, 21}},
    {"two of these: -1 is reduced to 999", {-1, -1}, {70 + 1020, 70 + 1020}},
    {"-500 is reduced to 500", {-500, -1}, {70 + 521, 70 + 521}},
    {"-501 to 1499: 499 is not enough", {-501, -501}, {70 + 1520, 70 + 1520}},
    {"-999900 to 1100, and it is no mate yet", {-999900, -999900}, {70 + 1121, 70 + 1121}},
    {"whole pawns count nothing", {0, 5000}, {21, 21}},
    {"what is over them does", {0, 5030}, {21, 51}},
    {"half a pawn over stays", {1500, 1500}, {70 + 521, 70 + 521}},
    {"501 over is 499 under: ignored", {501, 0}, {kIgnored, 21}},
    {"an ignored one does not set the base", {50, 501}, {50 + 71, kIgnored}},
    {"29 under a pawn is usable and sets a base of -8", {971, 40}, {kRefused, 40 - 8}},
    {"30 under is ignored", {970, 40}, {kIgnored, 40 + 61}},
    {"a base of 0 leaves nothing to a plain node", {979, 0}, {kRefused, kRefused}},
    {"a base of 1 leaves one draw", {0, 980}, {1, kRefused}},
    {"14 under a pawn: a base of 7, too little for itself", {986, 40}, {kRefused, 40 + 7}},
    {"10 under: a base of 11, just enough", {990, 990}, {1, 1}},
    {"a mate weighs 70 and leaves the base", {0, 999950}, {21, 91}},
    {"the least mate", {999901, 0}, {91, 21}},
    {"just none: 100 under a pawn", {999900, 0}, {kIgnored, 21}},
    {"being mated is ignored", {-999901, 0}, {kIgnored, 21}},
    {"the least score of all, whose negative is itself", {INT_MIN, 0}, {kIgnored, 21}},
    {"both ignored", {501, -1000000}, {kIgnored, kIgnored}},
};

// How often a message was said.
int TimesSaid(const std::string& text, const std::string& message) {
  int times = 0;
  for (std::size_t at = text.find(message); at != std::string::npos; at = text.find(message, at)) {
    ++times;
    at += message.size();
  }
  return times;
}

// A range shows where the other draw is lowest: against a draw of 0 the later candidate loses
// exactly when its range divides its random number, and against a draw of 1 the earlier one does.
TEST_F(BookMoves, AreDrawnFromRangesByTheirValues) {
  for (const PairRow& row : kPairRows) {
    SCOPED_TRACE(row.meaning);
    StartAfresh();
    ASSERT_TRUE(LegalMoveList());
    Enter(kFirst, row.values[0]);
    Enter(kSecond, row.values[1]);
    const auto draws = [&row](int i) { return row.ranges[i] > 0; };
    const int drawn = (draws(0) ? 1 : 0) + (draws(1) ? 1 : 0);
    const int refused = (row.ranges[0] == kRefused ? 1 : 0) + (row.ranges[1] == kRefused ? 1 : 0);
    const int rounds = drawn == 2 ? 40 * std::max(row.ranges[0], row.ranges[1]) : 100;

    std::srand(7);
    std::vector<int> numbers;  // what the generator will give, all draws of all rounds
    for (int i = 0; i < drawn * rounds; ++i) numbers.push_back(std::rand());
    const int next_number = std::rand();

    std::srand(7);
    std::vector<Move> choices;
    const Said printed = Listen([&] {
      for (int i = 0; i < rounds; ++i) choices.push_back(MoveFromLib(kFirst, kSecond));
    });
    EXPECT_EQ(std::rand(), next_number) << "one number for each candidate that draws";
    EXPECT_EQ(printed.out, "");
    EXPECT_EQ(TimesSaid(printed.err, kRangeMessage), refused * rounds);
    EXPECT_EQ(printed.err.size(),
              static_cast<std::size_t>(refused * rounds) * std::string(kRangeMessage).size());
    if (drawn < 2) {
      const Move only = draws(0) ? tree[kFirst] : draws(1) ? tree[kSecond] : 0;
      EXPECT_EQ(std::count(choices.begin(), choices.end(), only), rounds);
      continue;
    }
    int shown[2] = {};
    for (std::size_t i = 0; i < choices.size(); ++i) {
      const int first = numbers[2 * i];
      const int second = numbers[2 * i + 1];
      const bool later = choices[i] == tree[kSecond];
      ASSERT_TRUE(later || choices[i] == tree[kFirst]);
      if (first % row.ranges[0] == 0) {
        ++shown[1];
        ASSERT_EQ(later, second % row.ranges[1] != 0) << "the later one's range";
      }
      if (second % row.ranges[1] == 0) {
        ASSERT_FALSE(later) << "ties go to the earlier one";
      }
      if (second % row.ranges[1] == 1) {
        ++shown[0];
        ASSERT_EQ(later, first % row.ranges[0] == 0) << "the earlier one's range";
      }
    }
    EXPECT_GE(shown[1], 15);
    EXPECT_GE(shown[0], row.ranges[1] > 1 ? 15 : 0);
  }
}

struct MateRow {
  int value;
  int range;  // 70, the value, 21
};

// A mate's value is kept as it is, however great: it becomes the base when there is nothing less,
// but never with more than a million.
TEST_F(BookMoves, ThatAllMateAreDrawnFromRangesOfAMillion) {
  for (const MateRow& row : {MateRow{999901, 999992},
                             {999950, 1000041},
                             {1000000, 1000091},
                             {1000500, 1000091},
                             {INT_MAX - 1, 1000091},
                             {INT_MAX, 1000091}}) {
    SCOPED_TRACE(row.value);
    StartAfresh();
    ASSERT_TRUE(LegalMoveList());
    Enter(kFirst, row.value);
    Enter(kSecond, INT_MAX);
    constexpr int kRounds = 500;
    std::srand(1);
    int numbers[kRounds][2];
    for (auto& pair : numbers) {
      for (int& number : pair) number = std::rand();
    }
    std::srand(1);
    for (const auto& pair : numbers) {
      const bool later = pair[1] % row.range > pair[0] % row.range;
      ASSERT_EQ(MoveFromLib(kFirst, kSecond), tree[later ? kSecond : kFirst]);
    }
  }
}

struct ShareRow {
  const char* meaning;
  std::vector<int> values;
  std::vector<double> shares;  // by hand: ways in which each wins, of all ways to draw
};

TEST_F(BookMoves, AreChosenAsOftenAsTheirRangesSay) {
  const ShareRow rows[] = {
      // The first keeps ties: 1 + 4 + ... + 21 * 21 ways; the last loses them: 0 + 1 + ... + 20
      // * 20.
      {"three plain ones", {0, 0, 0}, {3311 / 9261.0, 3080 / 9261.0, 2870 / 9261.0}},
      {"two plain ones", {0, 0}, {231 / 441.0, 210 / 441.0}},
      {"a plain one, then a good one", {0, 30}, {231 / 1071.0, 840 / 1071.0}},
      {"a good one, then a plain one", {30, 0}, {861 / 1071.0, 210 / 1071.0}},
      {"a plain one, then one below 0", {0, -1}, {231 / 1911.0, 1680 / 1911.0}},
  };
  constexpr int kRounds = 30000;
  for (const ShareRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    StartAfresh();
    ASSERT_TRUE(LegalMoveList());
    std::map<Move, std::size_t> place;
    for (std::size_t i = 0; i < row.values.size(); ++i) {
      Enter(static_cast<int>(i), row.values[i]);
      place[tree[i]] = i;
    }
    std::vector<int> times(row.values.size());
    std::srand(1);
    for (int i = 0; i < kRounds; ++i) {
      ++times[place.at(MoveFromLib(0, static_cast<int>(row.values.size()) - 1))];
    }
    // Five standard deviations are no more than 433.
    for (std::size_t i = 0; i < times.size(); ++i) {
      EXPECT_NEAR(times[i], row.shares[i] * kRounds, 433) << i;
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
