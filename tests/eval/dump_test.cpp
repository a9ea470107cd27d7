#include "eval/dump.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <initializer_list>
#include <numeric>
#include <string>

#include "eval/scoretable.h"
#include "tests/support/captured.h"
#include "tests/support/eval_support.h"
#include "tests/support/files.h"
#include "tests/support/written.h"

namespace tarvyle {
namespace {

namespace fs = std::filesystem;

using support::Written;

TEST(PrintArray, WritesAHeaderAndEightRowsOfEightValues) {
  int table[64];
  std::iota(table, table + 64, 0);
  int result = 0;
  const std::string text =
      Written([&](std::FILE* stream) { result = PrintArray(stream, table, 2, 0); });
  EXPECT_EQ(text,
            "white knight\n"
            "  0,  1,  2,  3,  4,  5,  6,  7,\n"
            "  8,  9, 10, 11, 12, 13, 14, 15,\n"
            " 16, 17, 18, 19, 20, 21, 22, 23,\n"
            " 24, 25, 26, 27, 28, 29, 30, 31,\n"
            " 32, 33, 34, 35, 36, 37, 38, 39,\n"
            " 40, 41, 42, 43, 44, 45, 46, 47,\n"
            " 48, 49, 50, 51, 52, 53, 54, 55,\n"
            " 56, 57, 58, 59, 60, 61, 62, 63,\n");
  EXPECT_EQ(result, '\n') << "the result of the last character written";
}

TEST(PrintArray, WidensTheColumnForLongValues) {
  int table[64] = {-36, 100, -100, 1000};
  const std::string text = Written([&](std::FILE* stream) { PrintArray(stream, table, 6, 1); });
  EXPECT_EQ(text.substr(0, text.find("\n  0")), "black king\n-36,100,-100,1000,  0,  0,  0,  0,");
}

TEST(PrintArray, NamesColourAndPiece) {
  const char* const names[7] = {"nopiece", "pawn", "knight", "bishop", "rook", "queen", "king"};
  const int table[64] = {};
  for (const int colour : {0, 1}) {
    for (int piece = 0; piece < 7; ++piece) {
      const std::string text =
          Written([&](std::FILE* stream) { PrintArray(stream, table, piece, colour); });
      EXPECT_EQ(text.substr(0, text.find('\n')),
                std::string(colour == 0 ? "white " : "black ") + names[piece]);
    }
  }
}

TEST(PrintArray, ReturnsTheErrorOfTheLastWrite) {
  std::FILE* full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr);
  std::setvbuf(full, nullptr, _IONBF, 0);
  const int table[64] = {};
  EXPECT_EQ(PrintArray(full, table, 1, 0), EOF);
  std::fclose(full);
}

// A working directory of its own for each test.
class PrintScoreTable : public testing::Test {
 protected:
  void SetUp() override {
    before_ = fs::current_path();
    fs::current_path(folder_.Name());
    support::SetUpRoot("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
  }

  void TearDown() override { fs::current_path(before_); }

 private:
  support::TemporaryFolder folder_;
  fs::path before_;
};

TEST_F(PrintScoreTable, WritesAllTwelveTablesToTheFile) {
  support::WriteFile("sctable.txt", std::string(10000, 'x'));
  EXPECT_EQ(support::Printed([] { EXPECT_EQ(print_score_tbl(), 0); }), "");
  const std::string expected = Written([](std::FILE* stream) {
    for (const int colour : {0, 1}) {
      for (int piece = 1; piece <= 6; ++piece) {
        PrintArray(stream, score_table[colour][piece], piece, colour);
      }
    }
  });
  EXPECT_EQ(support::ReadFile("sctable.txt"), expected) << "what stood there before is gone";
  EXPECT_EQ(std::count(expected.begin(), expected.end(), '\n'), 12 * 9);
  EXPECT_EQ(expected.find("nopiece"), std::string::npos);
  EXPECT_EQ(Written(PrintScoreTables), expected);
}

TEST_F(PrintScoreTable, SaysSoWhenTheFileCannotBeOpened) {
  fs::create_directory("sctable.txt");
  const support::Said said = support::Listen([] { EXPECT_EQ(print_score_tbl(), 0); });
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, "# error open file sctable.txt \n");
  EXPECT_TRUE(fs::is_empty("sctable.txt"));
}

}  // namespace
}  // namespace tarvyle
