#include "frontend/machine.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

class MachineTest : public FrontEndTest {
 protected:
  // Shuffles a knight of each side; every second move, from `first` on, gets the next score.
  static void PlayScores(int first, std::initializer_list<int> scores) {
    int index = 0;
    const auto play = [&](int score) {
      ASSERT_TRUE(Play(kKnightMoves[index % 4], score));
      ++index;
    };
    if (first == 1) play(kUser);
    for (const int score : scores) {
      play(score);
      play(kUser);
    }
  }

  static constexpr int kUser = 1000001;
};

TEST_F(MachineTest, ResignsCountsTheRunOfFalls) {
  PlayScores(0, {-500, -12000, -13000, -14000, -15000, -16000});
  EXPECT_EQ(Resigns(0, -10000), 0);
  EXPECT_EQ(Resigns(2, -10000), 0) << "the score before was not a queen down";
  EXPECT_EQ(Resigns(4, -10000), 1);
  EXPECT_EQ(Resigns(6, -10000), 2);
  EXPECT_EQ(Resigns(8, -10000), 3);
  EXPECT_EQ(Resigns(10, -10000), 4);
}

TEST_F(MachineTest, ResignsLooksAtEverySecondMoveOnly) {
  PlayScores(1, {-12000, -13000, -14000});
  EXPECT_EQ(Resigns(1, -10000), 0) << "there is no move before the first";
  EXPECT_EQ(Resigns(3, -10000), 1);
  EXPECT_EQ(Resigns(5, -10000), 2) << "the run ends at the side's first move";
  EXPECT_EQ(Resigns(4, -10000), 0) << "the user's own scores never fall";
}

TEST_F(MachineTest, ResignsGoesBackToTheFirstMove) {
  PlayScores(0, {-11000, -12000, -13000});
  EXPECT_EQ(Resigns(4, -10000), 2);
}

TEST_F(MachineTest, ResignsNeedsAScoreNotAboveTheLimit) {
  PlayScores(0, {-9999, -20000, -9000, -10000, -10001});
  EXPECT_EQ(Resigns(2, -10000), 0) << "-9999 is above the limit";
  EXPECT_EQ(Resigns(4, -10000), 0) << "no fall";
  EXPECT_EQ(Resigns(6, -10000), 0);
  EXPECT_EQ(Resigns(8, -10000), 1) << "exactly at the limit";
  EXPECT_EQ(Resigns(2, -9999), 1);
  EXPECT_EQ(Resigns(8, -9000), 2);
}

TEST_F(MachineTest, ResignsNeedsARealFall) {
  PlayScores(0, {-12000, -12000, -12001});
  EXPECT_EQ(Resigns(2, -10000), 0);
  EXPECT_EQ(Resigns(4, -10000), 1) << "the run stops where the scores were equal";
}

TEST_F(MachineTest, ResignsOfNoMoveIsNothing) {
  EXPECT_EQ(Resigns(-1, -10000), 0);
  EXPECT_EQ(Resigns(0, -10000), 0);
  EXPECT_EQ(Resigns(1, -10000), 0);
}

// Black, far behind, has played six moves with given scores; its only reply now is a pawn's check.
class ResignationTest : public FrontEndTest {
 protected:
  static Said MoveAfter(std::initializer_list<int> scores) {
    EXPECT_TRUE(InitGame("k7/8/3p4/8/4K3/8/8/1RQ4R w - -"));
    bool away = false;
    for (const int score : scores) {
      EXPECT_TRUE(Play(away ? "b2b1" : "b1b2", 1000001));
      EXPECT_TRUE(Play(away ? "a7a8" : "a8a7", score));
      away = !away;
    }
    EXPECT_TRUE(Play("c1c7", 1000001));
    Said said = Listen([] { EXPECT_TRUE(move_machine()); });
    EXPECT_LT(search_score, -16000) << "the move itself must be a fall";
    return said;
  }

  // What follows the move's own line.
  static std::string Announced(const Said& said) {
    const std::string move = "move d6d5\n";
    const std::size_t at = said.out.find(move);
    EXPECT_NE(at, std::string::npos) << said.out;
    return at == std::string::npos ? said.out : said.out.substr(at + move.size());
  }
};

TEST_F(ResignationTest, ComesWithTheFourthFallAndSilencesTheRest) {
  EXPECT_EQ(Announced(MoveAfter({0, -500, -12000, -13000, -14000, -15000})), "computer resigns\n");
}

TEST_F(ResignationTest, ComesAfterTheMoveInXboardModeToo) {
  is_xboard = 1;
  EXPECT_EQ(MoveAfter({0, -500, -12000, -13000, -14000, -15000}).out,
            "move d6d5\ncomputer resigns\n");
}

TEST_F(ResignationTest, DoesNotComeAtTheThirdFall) {
  EXPECT_EQ(Announced(MoveAfter({0, 0, -500, -12000, -13000, -14000})), "check\n");
}

TEST_F(ResignationTest, DoesNotComeAtTheFifthFall) {
  EXPECT_EQ(Announced(MoveAfter({-500, -12000, -13000, -14000, -15000, -16000})), "check\n");
}

TEST_F(ResignationTest, CountsNoFallFromABetterScoreThanAQueenDown) {
  EXPECT_EQ(Announced(MoveAfter({0, 0, -9999, -12000, -13000, -14000})), "check\n");
  EXPECT_EQ(Announced(MoveAfter({0, 0, -10000, -12000, -13000, -14000})), "computer resigns\n");
}

TEST_F(ResignationTest, NeverComesAfterAScoreAboveTheLimit) {
  EXPECT_EQ(Announced(MoveAfter({-9994, -9995, -9996, -9997, -9998, -9999})), "check\n");
}

TEST_F(MachineTest, ShowsBoardAndMoveInTheConsole) {
  InitGame("7k/8/8/8/8/8/1r6/K7 w - -");
  const Said said = Listen([] { EXPECT_TRUE(move_machine()); });
  EXPECT_EQ(said.out,
            "8  -   -   -   - k \n"
            "7    -   -   -   - \n"
            "6  -   -   -   -   \n"
            "5    -   -   -   - \n"
            "4  -   -   -   -   \n"
            "3    -   -   -   - \n"
            "2  - K -   -   -   \n"
            "1    -   -   -   - \n"
            "\n"
            "   a b c d e f g h \n"
            "moves: 1\n"
            "side:  black\n"
            "move a1b2\n");
  EXPECT_EQ(said.err, "");
}

TEST_F(MachineTest, ShowsOnlyTheMoveInXboardMode) {
  is_xboard = 1;
  InitGame("7k/8/8/8/8/8/1r6/K7 w - -");
  EXPECT_EQ(Listen(move_machine).out, "move a1b2\n");
}

TEST_F(MachineTest, AnnouncesThePositionInPlaceOfTheBoard) {
  is_glintview = 1;
  InitGame("7k/8/8/8/8/8/1r6/K7 w - -");
  EXPECT_EQ(Listen(move_machine).out, "position 7k/8/8/8/8/8/1K6/8 b\nmove a1b2\n");
}

TEST_F(MachineTest, RecordsTheSearchScoreWithTheMove) {
  InitGame("6k1/5ppp/8/8/8/8/8/R3K3 w Q -");
  Listen(move_machine);
  ASSERT_EQ(g.game_len, 1);
  EXPECT_EQ(g.game_score[0], search_score);
  EXPECT_GT(g.game_score[0], 999900);
}

TEST_F(MachineTest, SaysTheEndAfterAMatingMove) {
  is_xboard = 1;
  InitGame("6k1/5ppp/8/8/8/8/8/R3K3 w Q -");
  EXPECT_EQ(Listen([] { EXPECT_TRUE(move_machine()); }).out, "move a1a8\nthe end\n");
}

TEST_F(MachineTest, SaysTheEndAndNotCheckForAMateInTheConsole) {
  InitGame("6k1/5ppp/8/8/8/8/8/R3K3 w Q -");
  const std::string out = Listen(move_machine).out;
  EXPECT_TRUE(out.ends_with("side:  black\nmove a1a8\nthe end\n")) << out;
}

TEST_F(MachineTest, SaysTheEndAfterAStalematingMove) {
  is_xboard = 1;
  InitGame("7k/5P2/6qK/8/8/8/8/8 w - -");  // the king must take the queen
  EXPECT_EQ(Listen([] { EXPECT_TRUE(move_machine()); }).out, "move h6g6\nthe end\n");
}

TEST_F(MachineTest, SaysCheckUnlessAGuiListens) {
  const char* const kOnlyCheck = "k7/2Q5/3p4/8/4K3/8/8/1R6 b - -";
  InitGame(kOnlyCheck);
  const std::string out = Listen(move_machine).out;
  EXPECT_TRUE(out.ends_with("side:  white\nmove d6d5\ncheck\n")) << out;
  is_glintview = 1;
  const std::string shown = "position k7/2Q5/8/3p4/4K3/8/8/1R6 w\n";
  InitGame(kOnlyCheck);
  EXPECT_EQ(Listen(move_machine).out, shown + "move d6d5\ncheck\n") << "a display is no GUI";
  is_glintview = 0;
  is_xboard = 1;
  InitGame(kOnlyCheck);
  EXPECT_EQ(Listen(move_machine).out, "move d6d5\n");
}

TEST_F(MachineTest, SaysTheEndWithoutAMoveWhenMatedOrStalemated) {
  for (const char* fen : {"R5k1/5ppp/8/8/8/8/8/4K3 b - -", "7k/5Q2/6K1/8/8/8/8/8 b - -"}) {
    InitGame(fen);
    EXPECT_EQ(Listen([] { EXPECT_FALSE(move_machine()); }).out, "the end\n") << fen;
    EXPECT_EQ(g.game_len, 0);
  }
}

TEST_F(MachineTest, SaysTheEndWhenTheGameRecordIsFull) {
  for (int i = 0; i < kMaxGameMoves; ++i) ASSERT_TRUE(Play(kKnightMoves[i % 4]));
  EXPECT_EQ(Listen([] { EXPECT_FALSE(move_machine()); }).out, "the end\n");
  EXPECT_EQ(g.game_len, kMaxGameMoves);
}

// So many captures that the first root move is not resolved when the clock is first looked at.
TEST_F(MachineTest, SaysTheEndWhenTheClockStopsBeforeAnyMove) {
  static std::uint32_t now;
  now = 0;
  world.milliseconds = [] { return now += 3600u * 1000u; };
  ASSERT_TRUE(InitGame("qqqqqqqk/qqqqqqqq/8/8/8/8/QQQQQQQQ/QQQQQQQK w - -"));
  EXPECT_EQ(Listen([] { EXPECT_FALSE(move_machine()); }).out, "the end\n");
  EXPECT_EQ(g.game_len, 0);
}

}  // namespace
}  // namespace tarvyle
