// The random play-outs of the randomised root search.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "search/randomroot.h"
#include "tests/support/randomsearch_support.h"

namespace tarvyle {

using namespace support;

namespace {

using Playout = SearchTest;

TEST_F(Playout, EndsWhereNoMoveIsLegal) {
  struct Row {
    const char* what;
    const char* root;
    int result;
  };
  constexpr Row kRows[] = {{"mated", "7k/6Q1/6K1/8/8/8/8/8 b", -1},
                           {"stalemated", "7k/5Q2/6K1/8/8/8/8/8 b", 0},
                           {"illegal", "4k3/8/8/8/8/8/4R3/4K3 w", 0}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    GoTo(row.root);
    std::srand(3);
    const int next = std::rand();
    std::srand(3);
    cnt_nodes = 0;
    EXPECT_EQ(RndSearch(), row.result);
    EXPECT_EQ(cnt_nodes, 1u);
    EXPECT_EQ(std::rand(), next) << "nothing is drawn";
  }
}

TEST_F(Playout, OfAnOnlyMoveDrawsNoNumber) {
  GoTo("r6k/6pp/8/8/8/3P1Q2/1P6/KR6 w");  // in check; the only reply takes the rook and mates
  ASSERT_TRUE(LegalMoveList());
  ASSERT_EQ(ListLength(), 1);
  std::srand(3);
  const int next = std::rand();
  std::srand(3);
  cnt_nodes = 0;
  EXPECT_EQ(RndSearch(), 1);
  EXPECT_EQ(cnt_nodes, 2u);
  EXPECT_EQ(std::rand(), next);
}

TEST_F(Playout, StopsWithTheSearch) {
  GoTo("7k/6Q1/6K1/8/8/8/8/8 b");
  is_stop_search = 1;
  EXPECT_EQ(RndSearch(), 0) << "mated, but stopped";
}

TEST_F(Playout, EndsAtPly97) {
  GoTo("7k/6Q1/6K1/8/8/8/8/8 b", Nulls(96));
  EXPECT_EQ(RndSearch(), -1) << "ply 96 still looks";
  Ascend();
  GoTo("7k/6Q1/6K1/8/8/8/8/8 w", Nulls(97));
  EXPECT_EQ(RndSearch(), 0);
  Ascend();
  GoTo(kFortress);
  cnt_nodes = 0;
  EXPECT_EQ(RndSearch(), 0);
  EXPECT_EQ(cnt_nodes, 98u) << "plies 0 to 97";
}

TEST_F(Playout, LeavesTheRecordAsItWas) {
  ASSERT_TRUE(PlayKnightMoves(kMaxGameMoves));
  const GameRecord before = g;
  for (unsigned seed = 0; seed < 50; ++seed) {
    std::srand(seed);
    RndSearch();
    ASSERT_EQ(ply, 0);
  }
  EXPECT_TRUE(IsSameGame(before));
}

TEST_F(Playout, DrawsItsMoveByTheRemainder) {
  // One of White's moves mates, one stalemates; which is drawn decides the result.
  GoTo(kMateInOne);
  ASSERT_TRUE(LegalMoveList());
  const int count = ListLength();
  int mates = -1;
  for (int i = 0; i < count; ++i) {
    if (std::string(MoveToStr(tree[i])) == "a1a8") mates = i;
  }
  ASSERT_GE(mates, 0);
  int hits = 0;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    std::srand(seed);
    if (std::rand() % count != mates) continue;
    ++hits;
    std::srand(seed);
    cnt_nodes = 0;
    EXPECT_EQ(RndSearch(), 1) << "the mated side's result, negated";
    EXPECT_EQ(cnt_nodes, 2u);
  }
  EXPECT_GT(hits, 3);
}

}  // namespace

}  // namespace tarvyle
