#include "book/learn.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <climits>
#include <cstdlib>
#include <initializer_list>
#include <string>
#include <vector>

#include "book/learnfile.h"
#include "book/learnmemory.h"
#include "tests/support/book_support.h"
#include "tests/support/build_kind.h"
#include "tests/support/eval_support.h"
#include "tests/support/files.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::Epd;
using support::Play;
using support::SetUpRoot;
using support::StartAfresh;
using support::TableRecords;
using support::TableTexts;

LearnNode* FirstNode() { return SearchNode(g.side, g.key.low, g.key.high); }

class LearnTable : public testing::Test {
 protected:
  void SetUp() override { StartAfresh(); }
};

TEST_F(LearnTable, FindsNothingWhenItIsEmpty) {
  EXPECT_EQ(FirstNode(), nullptr);
  EXPECT_EQ(FindCurrentNode(), nullptr);
  int score = 77;
  EXPECT_FALSE(LearnLook(-100, 1000, -1000, score));
  EXPECT_EQ(score, 77);
}

TEST_F(LearnTable, NewLNodeMakesABookNodeThatIsNotYetLinked) {
  Play("e2e4");
  const LearnNode* node = NewLNode("some text");
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->next, nullptr);
  EXPECT_EQ(node->key_lo, g.key.low);
  EXPECT_EQ(node->key_hi, g.key.high);
  EXPECT_EQ(node->link, 0u);
  EXPECT_EQ(node->score, 0);
  EXPECT_EQ(node->kind, 16);
  EXPECT_EQ(node->length, 9 + 25);
  EXPECT_EQ(node->side, Black);
  EXPECT_EQ(node->depth, 0);
  EXPECT_EQ(node->book, 1);
  EXPECT_EQ(node->check, static_cast<std::uint8_t>(StrHashKey("some text")));
  EXPECT_STREQ(node->text, "some text");
  EXPECT_EQ(FirstNode(), nullptr);
}

TEST_F(LearnTable, NewLNodeRefusesATextLongerThanARecord) {
  const LearnNode* longest = NewLNode(std::string(INT16_MAX - 25, 'x').c_str());
  ASSERT_NE(longest, nullptr);
  EXPECT_EQ(longest->length, INT16_MAX);
  EXPECT_EQ(NewLNode(std::string(INT16_MAX - 24, 'x').c_str()), nullptr);
}

TEST_F(LearnTable, FindsANodeWhateverItsKind) {
  InsertNodeLearn();
  FindCurrentNode()->kind = -99;
  int score = 0;
  EXPECT_TRUE(LearnLook(0, 0, 1, score));
  SaveSearchResult(5, 5);
  EXPECT_EQ(TableTexts().size(), 1u);
  EXPECT_EQ(FindCurrentNode()->kind, -99);
}

TEST_F(LearnTable, LinksNewestFirstIntoTheBucketOfTheLowKeyBits) {
  LearnNode* older = NewLNode("older");
  LearnNode* newer = NewLNode("newer");
  LinkLearnNode(older);
  LinkLearnNode(newer);
  LinkLearnNode(nullptr);
  EXPECT_EQ(learn[g.key.low & 0xFFFF], newer);
  EXPECT_EQ(newer->next, older);
  EXPECT_EQ(older->next, nullptr);
  EXPECT_EQ(FirstNode(), newer) << "the text is not looked at";
}

TEST_F(LearnTable, SearchNodeComparesBothHalvesAndTheSide) {
  LearnNode* node = NewLNode("text");
  LinkLearnNode(node);
  const std::uint32_t lo = node->key_lo;
  const std::uint32_t hi = node->key_hi;
  EXPECT_EQ(SearchNode(White, lo, hi), node);
  EXPECT_EQ(SearchNode(Black, lo, hi), nullptr);
  EXPECT_EQ(SearchNode(White, lo, hi ^ 1), nullptr);
  EXPECT_EQ(SearchNode(White, lo ^ 0x10000, hi), nullptr) << "the same bucket, another key";
  EXPECT_EQ(SearchNode(White, lo ^ 1, hi), nullptr) << "another bucket";
}

TEST_F(LearnTable, SearchNodePassesOverOtherNodesOfTheBucket) {
  LearnNode* wanted = NewLNode("wanted");
  LinkLearnNode(wanted);
  for (int i = 1; i <= 5; ++i) {
    LearnNode* other = NewLNode("other");
    other->key_hi += static_cast<std::uint32_t>(i);
    LinkLearnNode(other);
  }
  EXPECT_EQ(FirstNode(), wanted);
}

TEST_F(LearnTable, TellsPositionsOfOneKeyApartByTheirTexts) {
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -");
  SaveSearchResult(100, 5);
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R w - -");
  EXPECT_NE(FirstNode(), nullptr) << "the key knows nothing of rights";
  EXPECT_EQ(FindCurrentNode(), nullptr);
  SaveSearchResult(200, 6);
  EXPECT_EQ(FindCurrentNode()->score, 200);
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -");
  EXPECT_EQ(FindCurrentNode()->score, 100) << "behind the newer node of the bucket";
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R b KQkq -");
  EXPECT_EQ(FindCurrentNode(), nullptr);
}

TEST_F(LearnTable, InsertNodeLearnEntersAPositionOnce) {
  InsertNodeLearn();
  LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->kind, 16);
  EXPECT_EQ(node->book, 1);
  EXPECT_EQ(node->text, Epd());
  node->score = 5;
  InsertNodeLearn();
  EXPECT_EQ(TableTexts().size(), 1u);
  EXPECT_EQ(FindCurrentNode()->score, 5);
}

TEST_F(LearnTable, InsertNodeLearnEntersAnotherTextOfTheSameKeyInFront) {
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -");
  InsertNodeLearn();
  LearnNode* older = FindCurrentNode();
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R w Kq -");
  InsertNodeLearn();
  EXPECT_EQ(TableTexts().size(), 2u);
  EXPECT_EQ(FindCurrentNode()->next, older);
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -");
  InsertNodeLearn();
  EXPECT_EQ(TableTexts().size(), 2u) << "it is found behind the other";
}

TEST_F(LearnTable, SaveSearchResultMakesANodeOfItsOwnKind) {
  SaveSearchResult(-321, 12);
  const LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->score, -321);
  EXPECT_EQ(node->depth, 12);
  EXPECT_EQ(node->kind, 0);
  EXPECT_EQ(node->book, 0);
  EXPECT_EQ(node->side, White);
  EXPECT_EQ(node->length, static_cast<int>(Epd().size()) + 25);
  EXPECT_EQ(node->check, static_cast<std::uint8_t>(StrHashKey(node->text)));
  EXPECT_EQ(node->text, Epd());
}

TEST_F(LearnTable, SaveSearchResultOverwritesEvenAGreaterDepth) {
  SaveSearchResult(-321, 12);
  SaveSearchResult(40, 3);
  EXPECT_EQ(TableTexts().size(), 1u);
  EXPECT_EQ(FindCurrentNode()->score, 40);
  EXPECT_EQ(FindCurrentNode()->depth, 3);
}

TEST_F(LearnTable, SaveSearchResultLeavesBookFlagAndKindAlone) {
  InsertNodeLearn();
  SaveSearchResult(999, 7);
  EXPECT_EQ(TableTexts().size(), 1u);
  EXPECT_EQ(FindCurrentNode()->book, 1);
  EXPECT_EQ(FindCurrentNode()->kind, 16);
  EXPECT_EQ(FindCurrentNode()->score, 999);
}

struct LookRow {
  const char* meaning;
  std::uint8_t book;
  int node_depth;
  int depth;
  int alpha;
  int beta;
  bool found;
  int score;
};

TEST_F(LearnTable, LearnLookAnswersByDepthOrByTheBand) {
  constexpr int kStored = 123;
  const LookRow rows[] = {
      {"deep enough", 0, 6, 6, 0, 1, true, kStored},
      {"deeper", 0, 7, 6, 0, 1, true, kStored},
      {"not deep enough", 0, 5, 6, 0, 1, false, 0},
      {"not deep enough, the band is for book nodes", 0, 5, 6, 100, 101, false, 0},
      {"no depth, and no book node", 0, 0, 1, 100, 101, false, 0},
      {"depth 0 for depth 0", 0, 0, 0, 100, 101, true, kStored},
      {"a depth below 0", 1, 0, -3, 100, 101, true, kStored},
      {"a stored depth below 0", 0, -1, 0, 100, 101, false, 0},
      {"the book's depth 0 for depth 0", 1, 0, 0, 100, 101, true, kStored},
      {"book, window above the band", 1, 0, 1, 16, 17, true, 16},
      {"book, by any flag that is set", 2, 0, 1, 16, 17, true, 16},
      {"book, by the greatest flag", 255, 0, 1, 16, 17, true, 16},
      {"book, alpha on the band's edge", 1, 0, 1, 15, 900, false, 0},
      {"book, window below the band", 1, 0, 1, -17, -16, true, -16},
      {"book, beta on the band's edge", 1, 0, 1, -900, -15, false, 0},
      {"book, window across the band", 1, 0, 1, -1000000, 1000000, false, 0},
      {"book, far above", 1, 0, 40, 999999, 1000000, true, 999999},
      {"book, far below", 1, 0, 40, -1000000, -999999, true, -999999},
      {"book, both hold: alpha first", 1, 0, 1, 20, -20, true, 20},
      {"a searched book node has no band", 1, 1, 2, 100, 101, false, 0},
      {"but its score", 1, 2, 2, 100, 101, true, kStored},
  };
  SaveSearchResult(kStored, 0);
  LearnNode* node = FindCurrentNode();
  for (const LookRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    node->book = row.book;
    node->depth = static_cast<std::int8_t>(row.node_depth);
    int score = -77;
    EXPECT_EQ(LearnLook(row.depth, row.alpha, row.beta, score), row.found);
    EXPECT_EQ(score, row.found ? row.score : -77);
  }
}

TEST_F(LearnTable, LearnLookNeedsTheText) {
  SaveSearchResult(1, 9);
  FindCurrentNode()->text[0] = 'x';
  int score = 0;
  EXPECT_FALSE(LearnLook(1, 0, 1, score));
}

TEST_F(LearnTable, LearnClearForgetsTheHeadsAndKeepsTheNodes) {
  InsertNodeLearn();
  const LearnNode* node = FindCurrentNode();
  const std::string text = node->text;
  LearnClear();
  EXPECT_TRUE(TableRecords().empty());
  EXPECT_EQ(node->text, text);
}

struct ScoreRow {
  int score;
  int positional;
};

TEST(PositionalRemainder, LeavesThousandsOut) {
  const ScoreRow rows[] = {
      {0, 0},
      {1, 1},
      {499, 499},
      {500, 500},
      {501, -499},
      {1000, 0},
      {1499, 499},
      {1500, 500},
      {1501, -499},
      {3250, 250},
      {-1, 999},
      {-499, 501},
      {-500, 500},
      {-501, 1499},
      {-1000, 1000},
      {-1499, 501},
      {-1500, 500},
      {-1501, 1499},
      {999900, -100},
      {999901, 999901},
      {1000000, 1000000},
      {-999900, 1100},
      {-999901, -999901},
      {-1000000, -1000000},
      {INT_MAX, INT_MAX},
      {INT_MIN, INT_MIN},
  };
  for (const ScoreRow& row : rows) {
    EXPECT_EQ(extract_strateg_score(row.score), row.positional) << row.score;
  }
}

TEST(PositionalRemainder, HasTheThousandsRestAndStaysInItsBand) {
  for (int score = -999900; score <= 999900; score += 7) {
    const int rest = extract_strateg_score(score);
    ASSERT_EQ((score - rest) % 1000, 0) << score;
    ASSERT_GE(rest, score > 0 ? -499 : score < 0 ? 500 : 0) << score;
    ASSERT_LE(rest, score > 0 ? 500 : score < 0 ? 1499 : 0) << score;
  }
}

// Fills the memory that learn nodes come from, in a process of its own: nothing more is stored, and
// nothing else changes.
void StoreWithoutMemory(const std::string& file) {
  InsertNodeLearn();
  bool right = SaveLearnTable(file.c_str());
  const rlimit none = {1, 1};
  setrlimit(RLIMIT_AS, &none);
  const auto use_up = [] {
    for (const std::size_t bytes : {1 << 12, 1}) {
      while (LearnAllocate(bytes) != nullptr) {
      }
    }
  };
  use_up();
  SaveSearchResult(55, 5);
  right = right && FindCurrentNode()->score == 55;
  Play("e2e4");
  use_up();  // playing has freed what it took
  SaveSearchResult(66, 6);
  InsertNodeLearn();
  LinkLearnNode(NewLNode("text"));
  right = right && FindCurrentNode() == nullptr && FirstNode() == nullptr;
  right = right && !LoadLearnTable(file.c_str());
  std::_Exit(right ? 0 : 1);
}

TEST(LearnTableDeathTest, APositionThatFindsNoMemoryIsNotStored) {
  if (support::kAddressSanitizer) GTEST_SKIP() << "it ends a process that runs out of memory";
  StartAfresh();
  const support::TemporaryFolder folder;
  EXPECT_EXIT(StoreWithoutMemory(folder.Path("learn")), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tarvyle
