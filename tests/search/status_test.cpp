// Thinking lines, letter by letter, and the dump of the root list.

#include "search/status.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <vector>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr Move kE7E5 = MoveWord(Pawn, 12, 28);

std::string StatusOf(int depth, int score, int elapsed, std::uint64_t nodes,
                     std::vector<Move> line) {
  line.push_back(0);
  return Printed([&] {
    PrintSearchStatus(depth, score, elapsed, static_cast<std::uint32_t>(nodes),
                      static_cast<std::uint32_t>(nodes >> 32), line.data());
  });
}

using Status = SearchTest;

TEST_F(Status, LineShowsDepthScoreTimeNodesAndMoves) {
  struct Row {
    int depth;
    int score;
    int elapsed;
    std::uint64_t nodes;
    std::vector<Move> line;
    const char* text;
  };
  const Row kRows[] = {
      {5, 30, 12, 4711, {kE2E4, kE7E5}, " 5    3   12       4711 e2e4 e7e5 \n"},
      {12, -1234, 1234, 1234567890, {kE2E4}, "12 -127 1234 1234567890 e2e4 \n"},
      {90, 999998, 10000, 12345678901, {kE2E4}, "90 100007 10000 12345678901 e2e4 \n"},
      {2, 0, 0, 0, {}, " 2    0    0          0 \n"},  // the four columns and a blank
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(StatusOf(row.depth, row.score, row.elapsed, row.nodes, row.line), row.text);
  }
}

TEST_F(Status, ScoreIsShownAsTenthsPlusTheLastDigit) {
  struct Row {
    int score;
    int shown;
  };
  constexpr Row kRows[] = {
      {0, 0},      {5, 5},       {9, 9},           {10, 1},           {15, 6},
      {1234, 127}, {-5, -5},     {-15, -6},        {-1234, -127},     {1000, 100},
      {999, 108},  {-999, -108}, {999998, 100007}, {-999999, -100008}};
  for (const Row& row : kRows) {
    EXPECT_EQ(ShownScore(row.score), row.shown) << row.score;
    char column[8];
    std::snprintf(column, sizeof column, " %4d ", row.shown);
    EXPECT_NE(StatusOf(2, row.score, 0, 0, {}).find(column), std::string::npos) << row.score;
  }
}

TEST_F(Status, LineOf20MovesShows14) {
  std::vector<Move> line;
  std::string wanted;
  for (int i = 0; i < 20; ++i) {
    line.push_back(MoveWord(Rook, i, i + 20));
    if (i < 14) wanted += std::string(chb[i]) + chb[i + 20] + " ";
  }
  EXPECT_EQ(StatusOf(3, 0, 0, 0, line), " 3    0    0          0 " + wanted + "\n");
  line.resize(14);
  EXPECT_EQ(StatusOf(3, 0, 0, 0, line), " 3    0    0          0 " + wanted + "\n");
}

TEST_F(Status, LineEndsAtTheFirstZero) {
  EXPECT_EQ(StatusOf(3, 0, 0, 0, {kE2E4, 0, kE7E5}), " 3    0    0          0 e2e4 \n");
}

TEST_F(Status, NodesAbove32BitsAreShownInFull) {
  struct Row {
    std::uint64_t nodes;
    const char* text;
  };
  constexpr Row kRows[] = {{4294967295u, "4294967295"},
                           {4294967296u, "4294967296"},
                           {9999999999u, "9999999999"},
                           {18446744073709551615u, "18446744073709551615"}};
  for (const Row& row : kRows) {
    EXPECT_EQ(StatusOf(3, 0, 0, row.nodes, {}), std::string(" 3    0    0 ") + row.text + " \n");
  }
}

TEST_F(Status, PromotionsShowTheLowerCaseLetterOfThePiece) {
  struct Row {
    Move move;
    const char* text;
  };
  const Row kRows[] = {{MoveWord(Queen, 8, A8) | kPromotion, "a7a8q "},
                       {MoveWord(Knight, 8, 1) | kPromotion | kCapture, "a7b8n "},
                       {MoveWord(Bishop, 48, A1) | kPromotion, "a2a1b "},
                       {MoveWord(Rook, 48, A1) | kPromotion, "a2a1r "},
                       {MoveWord(Queen, 8, A8), "a7a8 "},  // no promotion
                       {kShortCastlingMove[White], "e1g1 "},
                       {kLongCastlingMove[Black], "e8c8 "}};
  for (const Row& row : kRows) {
    EXPECT_EQ(StatusOf(3, 0, 0, 0, {row.move}),
              std::string(" 3    0    0          0 ") + row.text + "\n");
  }
}

TEST_F(Status, IsSilentInTheRandomisedSearch) {
  is_rnd_search = 1;
  EXPECT_EQ(StatusOf(5, 30, 12, 4711, {kE2E4}), "");
  status_sink = [](const SearchStatus&) { FAIL() << "not for tools either"; };
  EXPECT_EQ(StatusOf(5, 30, 12, 4711, {kE2E4}), "");
}

TEST_F(Status, GoesToTheSinkInsteadWhenThereIsOne) {
  static SearchStatus received;
  status_sink = [](const SearchStatus& status) { received = status; };
  EXPECT_EQ(StatusOf(5, 30, 12, 0x500000007, {kE2E4}), "");
  EXPECT_EQ(received.depth, 5);
  EXPECT_EQ(received.score, 30);
  EXPECT_EQ(received.elapsed, 12);
  EXPECT_EQ(received.nodes, 0x500000007u);
}

TEST_F(Status, DumpShowsIndexMoveAndValueOfEachRootMove) {
  GoTo("7k/P7/8/8/8/8/8/K7 w");
  ASSERT_TRUE(LegalMoveList());
  for (int i = 0; i < treeCnt[1]; ++i) sort_val[i] = 100 * i - 150;
  std::string wanted;
  for (int i = 0; i < treeCnt[1]; ++i) {
    wanted += "(" + std::to_string(i) + ") " + MoveToStr(tree[i]) + " <" +
              std::to_string(100 * i - 150) + ">; ";
  }
  EXPECT_EQ(Printed(debug_print_moves_and_score), wanted + "\n");
  EXPECT_NE(wanted.find("(0) "), std::string::npos);
  EXPECT_NE(wanted.find(" <-150>; "), std::string::npos);
  EXPECT_NE(wanted.find("a7a8q"), std::string::npos);
}

TEST_F(Status, DumpOfAnEmptyListIsAnEmptyLine) {
  treeCnt[1] = 0;
  EXPECT_EQ(Printed(debug_print_moves_and_score), "\n");
}

}  // namespace

}  // namespace tarvyle
