// What both root searches do alike: preparation, root list, book, what is learned.

#include "search/rootentry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "position/directions.h"
#include "pv/line.h"
#include "pv/tree.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using RootEntry = SearchTest;

// Spoils whatever a search starts from.
void SpoilState() {
  std::fill_n(killer, kPlyArray, 7);
  std::fill_n(pv_killer, kPlyArray, 7);
  std::fill_n(pv_line, kLineSize, 7);
  std::fill_n(sort_val, kTreeSize, 7);
  std::fill(std::begin(history), std::end(history), 7);
  search_mv = 7;
  search_score = search_depth = 7;
  root_side = White;
  search_tree_width_null_move_cut = 1;
  cnt_nodes = 99;
  is_stop_search = 1;
  start_time = 0;
  set_dir(White);
  HashInsert(1, 2, 3, 4);
  pvInsertToFront(pv_tree, &pv_tree.root, pvNewNode(pv_tree, 77));
}

// What every search starts from, in a position of Black's queen against White's pawn.
constexpr const char* kRoot = "4k3/8/8/3q4/4P3/8/8/4K3 b";
void ExpectPreparedRoot() {
  const auto zero = [](Move move) { return move == 0; };
  EXPECT_TRUE(std::all_of(killer, killer + kPlyArray, zero));
  EXPECT_TRUE(std::all_of(pv_killer, pv_killer + kPlyArray, zero));
  EXPECT_TRUE(std::all_of(pv_line, pv_line + kLineSize, zero));
  EXPECT_EQ(search_mv, 0u);
  EXPECT_EQ(search_score, 0);
  EXPECT_EQ(search_depth, 0);
  EXPECT_EQ(root_side, Black);
  EXPECT_EQ(root_mtl[White], 1001000);
  EXPECT_EQ(root_mtl[Black], 1010000);
  EXPECT_EQ(search_tree_width_null_move_cut, 0);
  EXPECT_EQ(cnt_nodes, 0u);
  EXPECT_EQ(is_stop_search, 0);
  EXPECT_EQ(start_time, 500);
  EXPECT_EQ(dir, dir_black);
  EXPECT_EQ(StoredEntry(), nullptr) << "the table is empty";
}

TEST_F(RootEntry, EverySearchStartsFromAFreshState) {
  for (const int randomised : {0, 1}) {
    GoTo(kRoot);
    SpoilState();
    test_clock.milliseconds = 5000;
    if (randomised != 0) {
      init_search();
    } else {
      root_hooks.max_depth = 1;  // no iteration
      Move move = 0;
      EXPECT_FALSE(SearchMove(move));
    }
    ExpectPreparedRoot();
  }
}

TEST_F(RootEntry, InitSearchForgetsHistoryTreeAndRootListToo) {
  GoTo(kRoot);
  SpoilState();
  treeCnt[0] = 3;
  treeCnt[1] = 9;
  test_clock.seed = 11;
  init_search();
  EXPECT_TRUE(std::all_of(sort_val, sort_val + kTreeSize, [](int v) { return v == 0; }));
  EXPECT_TRUE(std::all_of(std::begin(history), std::end(history), [](int c) { return c == 0; }));
  EXPECT_EQ(treeCnt[0], 0);
  EXPECT_EQ(treeCnt[1], 0);
  EXPECT_EQ(pv_tree.root, nullptr);
  EXPECT_EQ(pv_tree.used, 0);
  const int drawn = std::rand();
  std::srand(11);
  EXPECT_EQ(std::rand(), drawn) << "the generator is seeded";
}

TEST_F(RootEntry, EvaluationTablesAreThoseOfTheRoot) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 w");
  const int right = score_table[White][King][E1];
  ASSERT_TRUE(InitGame(kStart.data()));
  InitEvaluate();
  ASSERT_NE(score_table[White][King][E1], right);
  ASSERT_TRUE(InitGame("4k3/8/8/8/8/8/4P3/4K3 w"));
  SearchToDepth(2);
  EXPECT_EQ(score_table[White][King][E1], right);
}

TEST_F(RootEntry, NullMoveIsOnWhenBothSidesHaveAQueen) {
  struct Row {
    const char* root;
    int allowed;
  };
  constexpr Row kRows[] = {{"3qk3/8/8/8/8/8/8/3QK3 w", 1},
                           {"4k3/8/8/8/8/8/8/3QK3 w", 0},
                           {"3qk3/8/8/8/8/8/8/4K3 w", 0},
                           {"3rk3/8/8/8/8/8/8/3RK3 w", 0},
                           {"2qqk3/8/8/8/8/8/8/2QQK3 b", 1}};
  for (const Row& row : kRows) {
    for (const int before : {0, 1}) {
      GoTo(row.root);
      search_tree_width_null_move_cut = before;
      root_hooks.max_depth = 1;
      Move move = 0;
      SearchMove(move);
      EXPECT_EQ(search_tree_width_null_move_cut, row.allowed) << row.root;
    }
  }
}

TEST_F(RootEntry, RepetitionHookDoesNothing) {
  GoTo(std::string(kStart) + " moves e2e4");
  const GameRecord before = g;
  std::vector<std::uint32_t> repetitions(std::begin(repetition_set), std::end(repetition_set));
  set_rep();
  EXPECT_EQ(std::memcmp(&g, &before, sizeof g), 0);
  EXPECT_TRUE(std::equal(repetitions.begin(), repetitions.end(), repetition_set));
}

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
      EXPECT_EQ(BookAnswers(count, move), draws_low) << seed;
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

TEST_F(RootEntry, MergingTakesTheOldestLineFirst) {
  const Move lines[3][3] = {{1, 2, 0}, {3, 4, 0}, {1, 5, 0}};
  for (const auto& line : lines) {
    pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  }
  MergeLines();
  EXPECT_EQ(pv_table, nullptr);
  ASSERT_NE(pv_tree.root, nullptr);
  EXPECT_EQ(pv_tree.root->move, 1u) << "the newest in front";
  EXPECT_EQ(pv_tree.root->next->move, 3u);
  EXPECT_EQ(pv_tree.root->child->move, 5u);
  EXPECT_EQ(pv_tree.root->child->next->move, 2u);
}

TEST_F(RootEntry, DroppedLinesDoNotReachTheTree) {
  const Move line[] = {1, 2, 0};
  pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  DropLines();
  EXPECT_EQ(pv_table, nullptr);
  EXPECT_EQ(pv_tree.root, nullptr);
}

}  // namespace

}  // namespace tarvyle
