#include "position/perft.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

#include "position/types.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class PerftTest : public support::PositionTest {};

// The share of each root move by its text.
std::map<std::string, std::uint64_t> shares;

void Note(Move move, std::uint64_t leaves) { shares[MoveToStr(move)] = leaves; }

struct CountRow {
  const char* position;
  int depth;
  std::uint64_t leaves;
};

TEST_F(PerftTest, CountsTheLeavesOfADepth) {
  const CountRow rows[] = {
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", 0, 1},
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", 1, 20},
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", 2, 400},
      {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -", 3, 8902},
      {"7k/5Q2/6K1/8/8/8/8/8 b - -", 0, 1},
      {"7k/5Q2/6K1/8/8/8/8/8 b - -", 1, 0},
      {"7k/5Q2/6K1/8/8/8/8/8 b - -", 2, 0},
  };
  for (const CountRow& row : rows) {
    support::SetUpPosition(row.position);
    EXPECT_EQ(Perft(row.depth), row.leaves) << row.position << " depth " << row.depth;
  }
}

TEST_F(PerftTest, TellsTheShareOfEachRootMove) {
  support::SetUpPosition("k7/7R/K7/8/8/8/8/8 b - -");
  shares.clear();
  EXPECT_EQ(DividedPerft(1, Note), 1u);
  EXPECT_EQ(shares, (std::map<std::string, std::uint64_t>{{"a8b8", 1}}));
  ASSERT_TRUE(InitNewGame());
  shares.clear();
  EXPECT_EQ(DividedPerft(3, Note), 8902u);
  EXPECT_EQ(shares.size(), 20u);
  EXPECT_EQ(shares["e2e4"], 600u);
  EXPECT_EQ(shares["g1f3"], 440u);
}

TEST_F(PerftTest, LeavesGameAndPositionAsTheyWere) {
  support::Play("e2e4 e7e5 g1f3");
  UndoGameMove();
  const GameRecord before = g;
  DividedPerft(2, Note);
  EXPECT_EQ(ply, 0);
  EXPECT_TRUE(support::SamePosition(g, before));
  EXPECT_EQ(g.game_len, before.game_len);
  EXPECT_EQ(g.game_max, before.game_max);
}

int questions = 0;

bool StopAtTheThirdQuestion() { return ++questions == 3; }

TEST_F(PerftTest, EndsWhenTheAnswerToItsQuestionIsYes) {
  questions = 0;
  EXPECT_LT(Perft(4, StopAtTheThirdQuestion), 197281u);
  EXPECT_EQ(questions, 3);
  EXPECT_EQ(ply, 0);
}

TEST_F(PerftTest, DoesNotTellAShareThatWasStopped) {
  questions = 0;
  shares.clear();
  const std::uint64_t sum = DividedPerft(4, Note, StopAtTheThirdQuestion);
  EXPECT_EQ(questions, 3);
  EXPECT_EQ(ply, 0);
  std::uint64_t told = 0;
  for (const auto& [move, leaves] : shares) told += leaves;
  EXPECT_EQ(sum, told);
  EXPECT_EQ(shares["a2a3"], 8457u);
  EXPECT_LT(shares.size(), 20u);
}

TEST_F(PerftTest, GoesOnWhileTheAnswerIsNo) {
  EXPECT_EQ(Perft(4, [] { return false; }), 197281u);
}

}  // namespace
}  // namespace tarvyle
