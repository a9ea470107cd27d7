// The history table: rewards, ageing, compression.

#include "search/history.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr Square kE4 = 36;
constexpr Move kKnightToE4 = MoveWord(Knight, 51, kE4);

int Index(int colour, int piece, Square target) { return (colour * 8 + piece) * 64 + target; }

int Sum() {
  int sum = 0;
  for (const int counter : history) sum += counter;
  return sum;
}

using HistoryTable = SearchTest;

TEST_F(HistoryTable, RewardsRaisesMoreThanCutOffsAndMatesMost) {
  struct Row {
    int alpha;
    int beta;
    int reward;
  };
  constexpr Row kRows[] = {{10, 20, 2},         {20, 20, 1},         {21, 20, 1},
                           {999900, 999999, 2}, {999900, 999900, 1}, {999901, 1000000, 6},
                           {999901, 999901, 5}, {999950, 999900, 5}, {-999998, 0, 2}};
  for (const Row& row : kRows) {
    HistoryInit(true);
    SaveHist(kKnightToE4, row.alpha, row.beta);
    EXPECT_EQ(Sum(), row.reward) << row.alpha << " against " << row.beta;
    SaveHist(kKnightToE4, row.alpha, row.beta);
    EXPECT_EQ(Sum(), 2 * row.reward);
  }
}

TEST_F(HistoryTable, CountsBySidePieceAndTarget) {
  struct Row {
    const char* root;
    Move move;
    int index;
  };
  const Row kRows[] = {
      {"4k3/8/8/8/8/8/8/4K3 w", kKnightToE4, Index(White, Knight, kE4)},
      {"4k3/8/8/8/8/8/8/4K3 b", kKnightToE4, Index(Black, Knight, kE4)},
      {"4k3/8/8/8/8/8/8/4K3 w", MoveWord(Pawn, 52, kE4), Index(White, Pawn, kE4)},
      {"4k3/8/8/8/8/8/8/4K3 w", MoveWord(King, A1, H8), Index(White, King, H8)},
      // A promotion counts for the new piece.
      {"4k3/8/8/8/8/8/8/4K3 w", MoveWord(Queen, 8, A8) | kPromotion, Index(White, Queen, A8)}};
  for (const Row& row : kRows) {
    GoTo(row.root);
    HistoryInit(true);
    SaveHist(row.move, 0, 1);
    EXPECT_EQ(history[row.index], 2) << row.root << ' ' << row.index;
    EXPECT_EQ(Sum(), 2);
    EXPECT_EQ(&History(g.side, row.move), &history[row.index]);
  }
}

TEST_F(HistoryTable, CountersStopAt32000) {
  EXPECT_EQ(MAX_HIST, 32000);
  int& counter = history[Index(White, Knight, kE4)];
  struct Row {
    int before;
    int alpha;
    int after;
  };
  constexpr Row kRows[] = {{31997, 0, 31999},     {31998, 0, 32000},      {31999, 0, 32000},
                           {32000, 0, 32000},     {31994, 999901, 32000}, {31999, 999901, 32000},
                           {31993, 999901, 31999}};
  for (const Row& row : kRows) {
    counter = row.before;
    SaveHist(kKnightToE4, row.alpha, 1000000);
    EXPECT_EQ(counter, row.after) << row.before;
  }
}

TEST_F(HistoryTable, LoweringHalvesEveryCounter) {
  for (int i = 0; i < 1024; ++i) history[i] = i;
  HistLow();
  for (int i = 0; i < 1024; ++i) ASSERT_EQ(history[i], i / 2);
}

TEST_F(HistoryTable, ClearingZeroesEveryCounter) {
  std::fill(std::begin(history), std::end(history), 7);
  HistoryInit(true);
  EXPECT_TRUE(std::all_of(std::begin(history), std::end(history), [](int c) { return c == 0; }));
}

TEST_F(HistoryTable, CompressionMakesLeadersSmallAndKeepsTheRest) {
  struct Row {
    std::vector<int> before;
    std::vector<int> after;
  };
  const Row kRows[] = {
      {{0, 0, 0}, {0, 0, 0}},
      {{1, 1, 1}, {1, 1, 1}},                                // at the average, not above
      {{9, 1, 1, 1}, {2, 1, 1, 1}},                          // average 3, two thirds are 6
      {{9, 6, 1, 1, 1, 1}, {2, 1, 1, 1, 1, 1}},              // 6 is above 3, but not above 6
      {{9, 7, 1, 1, 1, 1}, {2, 2, 1, 1, 1, 1}},              // 7 is
      {{8, 5, 4, 1, 1, 1, 1, 1}, {2, 2, 1, 1, 1, 1, 1, 1}},  // a third of 8 is 2, twice that 4
      {{100, 90, 40, 30}, {2, 2, 40, 30}},                   // average 65
      {{10, 5, 0, 0, 0, 0}, {2, 5, 0, 0, 0, 0}},             // zeros do not count: average 7
      {{3, 2}, {2, 2}},                                      // average 2
      {{2, 1}, {2, 1}},                                      // average 1, a third 0
      {{3, 2, 1, 1, 1, 1}, {2, 1, 1, 1, 1, 1}},              // average 1, a third 1
      {{32000, 32000, 32000, 1}, {2, 2, 2, 1}},
  };
  for (const Row& row : kRows) {
    HistoryInit(true);
    std::copy(row.before.begin(), row.before.end(), history + 500);
    HistoryInit(false);
    EXPECT_EQ(std::vector<int>(history + 500, history + 500 + row.after.size()), row.after)
        << testing::PrintToString(row.before);
  }
}

TEST_F(HistoryTable, CompressionOfAFullTableDoesNotOverflow) {
  std::fill(std::begin(history), std::end(history), MAX_HIST);
  history[0] = 1;
  HistoryInit(false);
  EXPECT_EQ(history[0], 1);
  EXPECT_EQ(Sum(), 1 + 2 * 1023);
}

TEST_F(HistoryTable, NoSearchCountsForPieceCodes0And7) {
  GoTo("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -");
  SearchToDepth(4);
  EXPECT_GT(Sum(), 0);
  for (const int colour : {White, Black}) {
    for (const int piece : {0, 7}) {
      for (Square square = 0; square < kSquares; ++square) {
        EXPECT_EQ(history[Index(colour, piece, square)], 0);
      }
    }
  }
}

}  // namespace

}  // namespace tarvyle
