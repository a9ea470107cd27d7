// Searches within their limits, as the GUI sees them.

#include "uci/think.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/think_support.h"
#include "uci/input.h"

namespace tarvyle::uci {

using namespace support;

namespace {

// --- depth ---------------------------------------------------------------------------------------

TEST_F(Thinks, ToADepth) {
  const Lines said = Go("depth 5", kMiddle);
  const Lines lines = ThinkingLines(said);
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(said.size(), lines.size() + 2) << "only the effort besides";
  long long depth = 2;
  long long nodes = 0;
  for (const std::string& line : lines) {
    EXPECT_GE(NumberAfter(line, "depth"), depth) << line;
    EXPECT_LE(NumberAfter(line, "depth"), depth + 1) << line;
    EXPECT_GE(NumberAfter(line, "nodes"), nodes) << line;
    depth = NumberAfter(line, "depth");
    nodes = NumberAfter(line, "nodes");
  }
  EXPECT_EQ(depth, 5);
  EXPECT_EQ(TextBetween(lines.back(), "pv").substr(0, BestMoveIn(said).size()), BestMoveIn(said));
}

TEST_F(Thinks, AsTheEngineDoes) {
  const Lines said = Go("depth 5", kMiddle);
  FreshProcess();
  ASSERT_TRUE(SetUpRoot(std::string(kMiddle).substr(4)));
  const SearchReport report = SearchToDepth(5, 1);
  EXPECT_EQ(BestMoveIn(said), report.best_move);
  EXPECT_EQ(LastNumber(said, "nodes"), static_cast<long long>(report.nodes));
  EXPECT_EQ(LastScore(said), "cp " + std::to_string(report.score / 10));
  // Each line is told once.
  const Lines lines = ThinkingLines(said);
  ASSERT_EQ(lines.size(), report.lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string told = TextBetween(lines[i], "pv");
    EXPECT_EQ(NumberAfter(" depth " + report.lines[i], "depth"), NumberAfter(lines[i], "depth"));
    EXPECT_NE(report.lines[i].find(told.substr(0, 20)), std::string::npos) << lines[i];
  }
}

TEST_F(Thinks, NoDeeperThanItIsTold) {
  const Lines said = Go("depth 1", kMiddle);
  EXPECT_EQ(LastNumber(said, "depth"), 1);
  EXPECT_LT(LastNumber(said, "nodes"), LastNumber(Go("depth 2", kMiddle), "nodes"));
  EXPECT_EQ(BestMoveIn(said).size(), 4u);
  Set("Random Search value true");
  EXPECT_EQ(LastNumber(Go("depth 1", kMiddle), "depth"), 1);
  Set("Random Search value false");
  EXPECT_EQ(LastNumber(Go("depth 2", kMiddle), "depth"), 2);
  EXPECT_EQ(LastNumber(Go("depth 3", kMiddle), "depth"), 3);
}

TEST_F(Thinks, OfTheSameWithTheSameSeed) {
  const Lines first = WithoutTimes(Go("depth 5", kMiddle));
  FreshProcess();
  EXPECT_EQ(WithoutTimes(Go("depth 5", kMiddle)), first);
  FreshProcess();
  Set("Seed value 2");
  EXPECT_NE(WithoutTimes(Go("depth 5", kMiddle)), first);
}

// --- nodes ---------------------------------------------------------------------------------------

TEST_F(Thinks, UpToExactlySoManyNodes) {
  const Lines whole = WithoutTimes(Go("depth 6", kMiddle));
  for (const int nodes : {2000, 4095, 4096, 4097, 10000}) {
    FreshProcess();
    const Lines said = Go("nodes " + std::to_string(nodes), kMiddle);
    EXPECT_EQ(LastNumber(said, "nodes"), nodes);
    const Lines lines = WithoutTimes(said);
    ASSERT_LT(lines.size(), whole.size());
    EXPECT_TRUE(std::equal(lines.begin(), lines.end(), whole.begin())) << nodes;
  }
}

TEST_F(Thinks, AtFirstSightWhenThereIsNoTimeForAnyMove) {
  const Lines said = Go("nodes 1", "startpos");
  EXPECT_EQ(said.size(), 2u);
  EXPECT_EQ(said[0], kUntouched);
  EXPECT_EQ(BestMoveIn(said).size(), 4u);
  EXPECT_EQ(Go("nodes 1 searchmoves h2h3", "startpos"), (Lines{kUntouched, "bestmove h2h3"}));
  EXPECT_EQ(BestMoveIn(Go("nodes 1", kMateAtOnce)), "a1a8");
  EXPECT_EQ(BestMoveIn(Go("nodes 1 searchmoves a1a7 a1a6 h1g1", kMateAtOnce)).size(), 4u);
}

// --- time ----------------------------------------------------------------------------------------

// The node limit is there for a search that forgets its time.
TEST_F(Thinks, ForTheTimeOfTheMove) {
  const Lines said = Go("movetime 100 nodes 100000000", kMiddle);
  EXPECT_GE(LastNumber(said, "time"), 100);
  EXPECT_LT(LastNumber(said, "time"), 1100);
  EXPECT_LT(LastNumber(said, "nodes"), 100000000);
  EXPECT_EQ(BestMoveIn(said).size(), 4u);
}

TEST_F(Thinks, LessTheOverheadOfAMove) {
  Set("Move Overhead value 900");
  const Lines said = Go("movetime 1000 nodes 100000000", kMiddle);
  EXPECT_GE(LastNumber(said, "time"), 500) << "half of it at least";
  EXPECT_LT(LastNumber(said, "time"), 1000);
}

TEST_F(Thinks, NotToTheEndOfAnIterationThatTakesLonger) {
  EXPECT_EQ(Go("movetime 20 nodes 5000000", kEndlessCaptures).front(), kUntouched);
  EXPECT_LT(cnt_nodes, 5000000u);
}

// A share of 250 ms: no iteration begins after 150, none goes on after 500.
TEST_F(Thinks, ForAShareOfTheClock) {
  const Lines said = Go("wtime 10000 btime 1 nodes 100000000", kMiddle);
  EXPECT_GE(LastNumber(said, "time"), 150);
  EXPECT_LT(LastNumber(said, "time"), 1500);
}

// A share of a millisecond: the first iteration is too short for a look at the clock, and no other
// begins.
TEST_F(Thinks, WithoutAnIterationThatWouldBeginTooLate) {
  EXPECT_EQ(LastNumber(Go("wtime 40 btime 1", kMiddle), "depth"), 2);
  // Not even within the millisecond.
  EXPECT_EQ(LastNumber(Go("wtime 40 btime 1", "fen 7k/8/8/8/8/8/P7/K7 w - - 0 1"), "depth"), 2);
}

TEST_F(Thinks, OfASingleReplyForOneIteration) {
  const Lines said = Go("wtime 4000 btime 4000", kSingleReply);
  EXPECT_EQ(LastNumber(said, "depth"), 2);
  EXPECT_EQ(BestMoveIn(said), "h1g1");
  EXPECT_EQ(LastNumber(Go("btime 4000", kSingleReplyOfBlack), "depth"), 2);
  EXPECT_EQ(LastNumber(Go("wtime 0 winc 4000", kSingleReply), "depth"), 2);
}

TEST_F(Thinks, OfASingleReplyAsLongAsItIsTold) {
  EXPECT_EQ(LastNumber(Go("btime 4000 depth 6", kSingleReply), "depth"), 6) << "not its clock";
  EXPECT_EQ(LastNumber(Go("wtime 4000 depth 6", kSingleReplyOfBlack), "depth"), 6);
  EXPECT_EQ(LastNumber(Go("depth 6", kSingleReply), "depth"), 6);
  EXPECT_EQ(LastNumber(Go("depth 6 movetime 60000", kSingleReply), "depth"), 6);
}

TEST_F(Thinks, OfSeveralRepliesLongerByTheClock) {
  EXPECT_GT(LastNumber(Go("wtime 4000 btime 4000", kMiddle), "depth"), 2);
}

// --- mates ---------------------------------------------------------------------------------------

TEST_F(Thinks, OfMates) {
  const Lines said = Go("depth 6", kMateAtOnce);
  EXPECT_EQ(LastScore(said), "mate 1");
  EXPECT_EQ(BestMoveIn(said), "a1a8");
  EXPECT_EQ(LastScore(Go("depth 6", kMatedNext)), "mate -1");
}

// The search that finds out that there is a mate does not know how long it is: stopped at any node,
// the engine never says so but in the result.
TEST_F(Thinks, OfMatesWithoutTheirBounds) {
  const long long all = LastNumber(Go("depth 6", kMateInTwo), "nodes");
  ASSERT_GT(all, 0);
  int unknown = 0;
  for (long long nodes = 1; nodes <= all; nodes += 1 + nodes / 50) {
    FreshProcess();
    const Lines said = Go("nodes " + std::to_string(nodes), kMateInTwo);
    const Lines lines = ThinkingLines(said);
    for (const std::string& line : lines) {
      EXPECT_EQ(line.find("bound"), std::string::npos) << line;
      if (TextBetween(line, "score", "nodes") != "mate 50") continue;
      EXPECT_EQ(line, lines.back());
      ++unknown;
    }
    if (lines.empty()) continue;
    EXPECT_EQ(TextBetween(lines.back(), "pv").substr(0, 4), BestMoveIn(said)) << nodes;
  }
  EXPECT_GT(unknown, 0) << "the case is there";
}

TEST_F(Thinks, UntilAMateIsShortEnough) {
  const Lines whole = WithoutTimes(Go("depth 8", kMateInTwo));
  for (const int moves : {9, 2, 1}) {
    FreshProcess();
    const Lines said = Go("mate " + std::to_string(moves) + " depth 8", kMateInTwo);
    const Lines lines = WithoutTimes(said);
    const std::string score = LastScore(said);
    ASSERT_TRUE(score.starts_with("mate ")) << score;
    if (moves == 1) {
      EXPECT_EQ(score, "mate 2");
      EXPECT_EQ(lines, whole) << "there is none: the search ends where it always does";
    } else {
      EXPECT_LE(NumberAfter(" " + score, "mate"), moves);
      EXPECT_LT(lines.size(), whole.size());
    }
  }
}

// --- signs of life -------------------------------------------------------------------------------

TEST_F(Thinks, AloudEachSecond) {
  const Lines said = Go("movetime 2300", kMiddle);
  const Lines signs = Beginning(said, "info depth");
  std::vector<long long> times;
  for (const std::string& line : signs) {
    if (NumberAfter(line, "currmovenumber") < 0) continue;
    times.push_back(NumberAfter(line, "time"));
    EXPECT_GE(NumberAfter(line, "depth"), 2) << line;
    EXPECT_GE(NumberAfter(line, "currmovenumber"), 1) << line;
    EXPECT_LE(NumberAfter(line, "currmovenumber"), 60) << line;
    EXPECT_EQ(TextBetween(line, "currmove", "currmovenumber").size(), 4u) << line;
    for (const char* word : {"nodes", "nps", "hashfull"}) EXPECT_GE(NumberAfter(line, word), 0);
  }
  ASSERT_EQ(times.size(), 2u);
  EXPECT_GE(times[0], 1000);
  EXPECT_GE(times[1], times[0] + 1000);
  EXPECT_TRUE(Beginning(Go("movetime 300", kMiddle), "info depth 2 currmove").empty());
}

TEST_F(Thinks, AloudEachSecondOfTheMovesOfItsList) {
  const Lines said = Go("movetime 1200 searchmoves a2a3 h2h3", kMiddle);
  for (const std::string& line : Beginning(said, "info depth")) {
    if (NumberAfter(line, "currmovenumber") < 0) continue;
    const std::string move = TextBetween(line, "currmove", "currmovenumber");
    EXPECT_TRUE(move == "a2a3" || move == "h2h3") << line;
    EXPECT_LE(NumberAfter(line, "currmovenumber"), 2) << line;
  }
}

// --- until it is told ----------------------------------------------------------------------------

TEST_F(Thinks, InfinitelyUntilStop) {
  for (const char* limits : {"infinite", "ponder", "depth 3 infinite", ""}) {
    for (const char* position : {kMateAtOnce, kMatedRoot, kStalemated}) {
      interruption = {};
      const LateGui gui([this] { Send("isready\nstop\n"); });
      const Lines said = Go(limits, position);
      EXPECT_TRUE(gui.WasFirst()) << limits << " " << position;
      ASSERT_GE(said.size(), 2u);
      EXPECT_EQ(said[said.size() - 2], "readyok");
      EXPECT_EQ(BestMoveIn(said), position == kMateAtOnce ? "a1a8" : "0000");
    }
  }
}

TEST_F(Thinks, InfinitelyOfWhatTakesForEver) {
  const LateGui gui([this] { Send("stop\n"); });
  const Lines said = Go("infinite", kMiddle);
  EXPECT_TRUE(gui.WasFirst());
  EXPECT_EQ(BestMoveIn(said).size(), 4u);
  EXPECT_FALSE(interruption.quit);
}

TEST_F(Thinks, UntilQuitOrUntilTheGuiIsGone) {
  Send("quit\n");
  EXPECT_EQ(BestMoveIn(Go("infinite", kMiddle)).size(), 4u);
  EXPECT_TRUE(interruption.quit);
  HangUp();
  EXPECT_EQ(BestMoveIn(Go("infinite", kMiddle)).size(), 4u);
  EXPECT_FALSE(interruption.quit);
}

TEST_F(Thinks, NoLongerThanItsLimitWithoutStop) {
  EXPECT_EQ(BestMoveIn(Go("depth 3", kMateAtOnce)), "a1a8");
  EXPECT_FALSE(interruption.stop);
  EXPECT_EQ(Go("depth 3", kMatedRoot), (Lines{"info depth 0 score mate 0", "bestmove 0000"}));
  EXPECT_EQ(Go("btime 5", kStalemated), (Lines{"info depth 0 score cp 0", "bestmove 0000"}));
}

TEST_F(Thinks, AnewAfterAnInterruption) {
  interruption = {true, true};
  EXPECT_EQ(LastNumber(Go("depth 4", kMiddle), "depth"), 4);
  EXPECT_FALSE(interruption.stop);
}

// --- some of the moves ---------------------------------------------------------------------------

TEST_F(Thinks, OfSomeMovesAlone) {
  const Lines said = Go("depth 4 searchmoves a2a3 h2h3", "startpos");
  for (const std::string& line : ThinkingLines(said)) {
    const std::string first = TextBetween(line, "pv").substr(0, 4);
    EXPECT_TRUE(first == "a2a3" || first == "h2h3") << line;
  }
  EXPECT_EQ(BestMoveIn(Go("depth 3 searchmoves h2h3")), "h2h3");
  EXPECT_NE(BestMoveIn(Go("depth 4")), "h2h3") << "all of them again";
}

TEST_F(Thinks, OfASingleMoveAmongSeveralAsLongAsTheClockAllows) {
  const Lines said = Go("wtime 4000 btime 4000 searchmoves a2a3", "startpos");
  EXPECT_GT(LastNumber(said, "depth"), 2) << "it is not the only reply";
}

// --- what is learned -----------------------------------------------------------------------------

TEST_F(Thinks, AndPutsTheResultDown) {
  const std::string output = folder_.Path("out.lrn");
  Set("Learn Output value " + output);
  Go("depth 3", "startpos");
  const auto size = ReadFile(output).size();
  EXPECT_GT(size, 0u);
  Go("depth 3 searchmoves a2a3");
  EXPECT_EQ(ReadFile(output).size(), size) << "what some moves score is not learned";
  Go("nodes 1");
  EXPECT_EQ(ReadFile(output).size(), size) << "nothing was found";
  Go("depth 3");
  EXPECT_EQ(ReadFile(output).size(), 2 * size);
}

}  // namespace

}  // namespace tarvyle::uci
