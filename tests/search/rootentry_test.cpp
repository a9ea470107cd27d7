// What both root searches do alike: root list, book, what is learned.

#include "search/rootentry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using RootEntry = SearchTest;

TEST_F(RootEntry, OnlyTheMovesAskedForAreListed) {
  GoTo(kStart);
  const Move asked[] = {Find("g1f3"), MoveWord(King, E1, 36), Find("a2a3"), 0};
  root_hooks.only = asked;
  ASSERT_TRUE(ListRootMoves());
  EXPECT_EQ(ListLength(), 2);
  const Move others[] = {MoveWord(King, E1, 36), 0};
  root_hooks.only = others;
  EXPECT_FALSE(ListRootMoves());
}

TEST_F(RootEntry, ScoresOfSomeRootMovesAreNotLearned) {
  GoTo(kStart);
  const Move asked[] = {Find("g1f3"), 0};
  root_hooks.only = asked;
  LearnResult(123, 4);
  EXPECT_EQ(FindCurrentNode(), nullptr);
  root_hooks.only = nullptr;
  LearnResult(123, 4);
  EXPECT_NE(FindCurrentNode(), nullptr);
}

TEST_F(RootEntry, BookAnswersInHalfOfTheCallsWhenAuto) {
  ASSERT_TRUE(HashAllocate(0x10000));  // each search clears the tables
  ASSERT_TRUE(FreshProcess(DataFile("book.bk")));
  property_add("book move", "auto");
  root_hooks.max_depth = 1;
  const std::set<std::string> book = {"e2e4", "d2d4", "c2c4", "g1f3"};
  std::set<std::string> played;
  int answers = 0;
  for (unsigned seed = 1; seed <= 400; ++seed) {
    test_clock.seed = seed;
    std::srand(seed);
    for (int i = 0; i < 20; ++i) std::rand();  // the ordering values
    const bool draws_low = std::rand() % 101 < 51;
    Move move = 0;
    ASSERT_EQ(SearchMove(move), draws_low) << seed;
    if (!draws_low) continue;
    ++answers;
    EXPECT_EQ(search_mv, move);
    EXPECT_EQ(search_score, 0);
    EXPECT_EQ(search_depth, 0);
    EXPECT_EQ(cnt_nodes, 0u);
    EXPECT_EQ(book.count(MoveToStr(move)), 1u) << MoveToStr(move);
    played.insert(MoveToStr(move));
  }
  EXPECT_GT(answers, 150);
  EXPECT_LT(answers, 250);
  EXPECT_EQ(played, book);
  EXPECT_EQ(FindCurrentNode(), nullptr) << "a book move teaches nothing";
}

TEST_F(RootEntry, BookAnswersWithTheFirstMoveOfTheListAsWithTheLast) {
  GoTo(std::string(kStart) + " moves e2e4");
  InsertNodeLearn();
  GoTo(kStart);
  property_add("book move", "auto");
  const Move e2e4 = Find("e2e4");
  const int count = ListLength();
  for (const int place : {0, count / 2, count - 1}) {
    std::swap(tree[place], *std::find(tree, tree + count, e2e4));
    for (unsigned seed = 1; seed <= 20; ++seed) {
      std::srand(seed);
      const bool draws_low = std::rand() % 101 < 51;
      std::srand(seed);
      Move move = 0;
      EXPECT_EQ(TakeBookMove(count, move), draws_low) << seed;
      EXPECT_EQ(move, draws_low ? e2e4 : 0) << place;
    }
  }
}

TEST_F(RootEntry, AnyOtherValueNeverConsultsTheBook) {
  ASSERT_TRUE(HashAllocate(0x10000));
  ASSERT_TRUE(FreshProcess(DataFile("book.bk")));
  root_hooks.max_depth = 1;
  for (const char* text : {"", "Auto", "auto ", " auto", "on", "enable", "automatic"}) {
    property_clear();
    property_add("book move", text);
    for (unsigned seed = 1; seed <= 20; ++seed) {
      test_clock.seed = seed;
      std::srand(seed);
      for (int i = 0; i < 20; ++i) std::rand();
      const int next = std::rand();
      Move move = 0;
      ASSERT_FALSE(SearchMove(move)) << text;
      ASSERT_EQ(std::rand(), next) << "no number is drawn";
    }
  }
  property_clear();
  Move move = 0;
  EXPECT_FALSE(SearchMove(move)) << "no such key";
}

TEST_F(RootEntry, WithoutABookPositionItSearches) {
  property_add("book move", "auto");
  for (unsigned seed = 1; seed <= 5; ++seed) {
    test_clock.seed = seed;
    EXPECT_EQ(SearchToDepth(2).iterations.size(), 1u);
  }
}

}  // namespace

}  // namespace tarvyle
