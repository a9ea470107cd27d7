#include "pv/print.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "position/text.h"
#include "pv/tree.h"
#include "tests/support/line_support.h"
#include "tests/support/written.h"

namespace tarvyle {
namespace {

using support::LineOf;
using support::MoveOf;
using support::NumberedMove;

std::string PrintedTree() {
  return support::Written([](std::FILE* stream) { pvPrint(pv_tree, stream); });
}

// A row of the printed table: the cells in seven characters, "-" for the rest of the ten.
std::string Row(const std::string& moves) {
  std::string row;
  std::istringstream in(moves);
  for (int column = 0; column < 10; ++column) {
    std::string cell;
    if (!(in >> cell)) cell = "-";
    cell.resize(7, ' ');
    row += cell;
  }
  return row + "\n";
}

class PvPrint : public testing::Test {
 protected:
  void SetUp() override {
    pvReset(pv_tree);
    std::memset(pvTable, 0, sizeof pvTable);
  }

  static void Insert(const std::string& moves) { pvInsertLine(pv_tree, LineOf(moves).data()); }
};

struct PrintRow {
  const char* meaning;
  std::vector<const char*> lines;
  std::vector<const char*> rows;
};

TEST_F(PvPrint, ShowsLinesAndTheirAlternatives) {
  const PrintRow rows[] = {
      {"an empty tree", {}, {}},
      {"one move", {"e2e4"}, {"e2e4"}},
      {"a promotion", {"e7e8q"}, {"e7e8q"}},
      {"a, b, c and then a, d", {"a2a3 b7b6 c2c3", "a2a3 d7d6"}, {"a2a3 d7d6", "- b7b6 c2c3"}},
      {"two first moves", {"d2d4 d7d5 c2c4", "e2e4 e7e5"}, {"e2e4 e7e5", "d2d4 d7d5 c2c4"}},
      {"alternatives come below everything laid out so far",
       {"a2a3 b7b6 c2c3", "a2a3 b7b6 d2d3", "a2a3 e7e6", "f2f3"},
       {"f2f3", "a2a3 e7e6", "- b7b6 d2d3", "- - c2c3"}},
      {"of five replies three are shown",
       {"a2a3 a7a6", "a2a3 b7b6", "a2a3 c7c6", "a2a3 d7d6", "a2a3 e7e6"},
       {"a2a3 e7e6", "- d7d6", "- c7c6"}},
      {"of four first moves three are shown",
       {"a2a3", "b2b3", "c2c3", "d2d3"},
       {"d2d3", "c2c3", "b2b3"}},
  };
  for (const PrintRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    pvReset(pv_tree);
    for (const char* line : row.lines) Insert(line);
    std::string expected;
    for (const char* moves : row.rows) expected += Row(moves);
    EXPECT_EQ(PrintedTree(), expected);
    EXPECT_EQ(GetFirstY(), static_cast<int>(row.rows.size()));
  }
}

TEST_F(PvPrint, ShowsTheFirstTenMovesOfALongerLine) {
  std::vector<Move> line;
  for (int i = 0; i < 30; ++i) line.push_back(NumberedMove(i));
  line.push_back(0);
  pvInsertLine(pv_tree, line.data());
  std::string expected;
  for (int i = 0; i < 10; ++i) expected += MoveToStr(NumberedMove(i)) + std::string("   ");
  EXPECT_EQ(PrintedTree(), expected + "\n");
}

TEST_F(PvPrint, GivesNoRowToAlternativesBeyondTheTenthMove) {
  std::string line;
  for (int i = 0; i < 10; ++i) line += "a2a3 ";
  Insert(line + "b2b3");
  Insert(line + "c2c3");
  EXPECT_EQ(GetFirstY(), 0);
  PrintedTree();
  EXPECT_EQ(GetFirstY(), 1);
}

TEST_F(PvPrint, StopsAtTheNinetiethRow) {
  // Three first moves, three replies to each, and so on: far more lines than rows.
  std::string path;
  const std::string moves[3] = {"a2a3 ", "b2b3 ", "c2c3 "};
  for (int number = 0; number < 243; ++number) {
    path.clear();
    for (int digit = 0, rest = number; digit < 5; ++digit, rest /= 3) path += moves[rest % 3];
    Insert(path);
  }
  const std::string text = PrintedTree();
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 90);
  EXPECT_EQ(GetFirstY(), 90);
}

TEST_F(PvPrint, ForgetsWhatTheTableHeldBefore) {
  Insert("a2a3");
  Insert("b2b3");
  PrintedTree();
  pvReset(pv_tree);
  Insert("e2e4");
  EXPECT_EQ(PrintedTree(), Row("e2e4"));
}

TEST_F(PvPrint, GetFirstYFindsTheLastRowThatHoldsAnything) {
  PvNode node{};
  EXPECT_EQ(GetFirstY(), 0);
  for (const int row : {0, 5, 89}) {
    for (const int column : {0, 9}) {
      std::memset(pvTable, 0, sizeof pvTable);
      pvTable[row][column] = &node;
      EXPECT_EQ(GetFirstY(), row + 1);
    }
  }
}

TEST_F(PvPrint, LaysAListOutFromAnyCell) {
  Insert("a2a3 b7b6 c2c3");
  Insert("a2a3 d7d6");
  PvNode* list = pv_tree.root->child;
  pvTreeToTable(list, 8, 3);
  EXPECT_EQ(pvTable[3][8], list);
  EXPECT_EQ(pvTable[4][8], list->next);
  EXPECT_EQ(pvTable[4][9], list->next->child);
  EXPECT_EQ(GetFirstY(), 5);
}

TEST_F(PvPrint, LaysNothingOutBeyondTheTable) {
  Insert("a2a3 b7b6");
  Insert("c2c3");
  pvTreeToTable(pv_tree.root, 10, 0);
  EXPECT_EQ(GetFirstY(), 0);
  pvTreeToTable(pv_tree.root, 0, 89);
  EXPECT_EQ(pvTable[89][0], pv_tree.root);
  EXPECT_EQ(GetFirstY(), 90);
  std::memset(pvTable, 0, sizeof pvTable);
  pvTreeToTable(pv_tree.root, 0, 90);
  EXPECT_EQ(pvTable[0][0], pv_tree.root->next) << "its sibling goes to the first free row";
  pvTreeToTable(nullptr, 0, 0);
}

TEST(PrintMoveText, HasAPlusBehindACheck) {
  char text[kMoveTextSize];
  EXPECT_EQ(PrintMove(text, MoveOf("e2e4"), false), text);
  EXPECT_STREQ(text, "e2e4");
  EXPECT_STREQ(PrintMove(text, MoveOf("e2e4"), true), "e2e4+");
  EXPECT_STREQ(PrintMove(text, MoveOf("e7e8q"), true), "e7e8q+");
  EXPECT_STREQ(PrintMove(text, MoveOf("e7e8q"), false), "e7e8q");
}

}  // namespace
}  // namespace tarvyle
