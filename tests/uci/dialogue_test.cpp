// The second front end, from its first line to its last.

#include "uci/dialogue.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

#include "base/version.h"
#include "position/record.h"
#include "tests/support/captured.h"
#include "tests/support/uci_support.h"

namespace tarvyle::uci {

using namespace support;

namespace {

using Loop = UciTest;

TEST_F(Loop, DeclaresItself) {
  const Lines said = Speak("uci\n");
  ASSERT_EQ(said.size(), 14u);
  EXPECT_EQ(said[0], std::string("id name Tarvyle ") + kVersion);
  EXPECT_EQ(said[1], "id author Tarvyle developers");
  EXPECT_EQ(Beginning(said, "option name ").size(), 11u);
  EXPECT_EQ(said.back(), "uciok");
}

TEST_F(Loop, IsReady) {
  EXPECT_EQ(Speak("isready\n\n  \r\nisready\r\n"), (Lines{"readyok", "readyok"}));
}

TEST_F(Loop, ReportsCommandsThatItDoesNotKnow) {
  EXPECT_EQ(Speak("hello world\nUCI\ngo2 depth 3\n"),
            (Lines{"info string unknown command: hello", "info string unknown command: UCI",
                   "info string unknown command: go2"}));
}

TEST_F(Loop, HasNothingToStop) { EXPECT_EQ(Speak("stop\nponderhit\nstop now\n"), Lines()); }

TEST_F(Loop, ObeysEveryCommand) {
  const Lines said = Speak(
      "position startpos moves e2e4\nsetoption name Seed value 1\nsetoption name Seed value x\n"
      "go depth 2\nperft 1\neval\nbench 1\nd\n");
  EXPECT_EQ(Beginning(said, "info string setoption Seed").size(), 1u);
  EXPECT_EQ(Beginning(said, "bestmove ").size(), 1u);
  EXPECT_EQ(Beginning(said, "nodes 20").size(), 1u);
  EXPECT_EQ(Beginning(said, "evaluation ").size(), 1u);
  EXPECT_EQ(Beginning(said, "info string a depth from 2 ").size(), 1u);
  EXPECT_EQ(said.back(), "text:  rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk");
}

TEST_F(Loop, StartsEachTimeAtTheStart) {
  const Lines first = Speak("setoption name Seed value x\nposition startpos moves e2e4\nd\n");
  EXPECT_EQ(first.back(), "text:  rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk");
  EXPECT_EQ(Speak("d\n").back(), "text:  rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk");
  Speak("setoption name Style value knowledge1\n");
  EXPECT_STREQ(print_play_str(), "knowledge1");
  Speak("");
  EXPECT_STREQ(print_play_str(), "knowledge3");
}

TEST_F(Loop, DoesNotComeBackToAGameBeforeANewOne) {
  const Lines said = Speak(
      "position startpos moves e2e4\nucinewgame\nsetoption name Book File value <empty>\n"
      "isready\nd\n");
  EXPECT_EQ(said.back(), "text:  rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk");
}

// The book's lines are no positions of the game.
TEST_F(Loop, PlaysTheGameAnewWhenTheBookHasBeenRead) {
  const std::string book = folder_.Write("my.bk", "h2h4 h7h5 h1h3 h8h6\n");
  Speak("setoption name Book File value " + book +
        "\nsetoption name OwnBook value true\nposition startpos moves e2e4\nisready\n");
  EXPECT_EQ(std::accumulate(std::begin(repetition_set), std::end(repetition_set), 0u), 2u);
}

TEST_F(Loop, ForgetsTheOldGameInANewOne) {
  // So short that "quit" is not heard while it thinks.
  const std::string search = "go depth 4\n";
  const Lines said = Speak("setoption name Seed value 1\n" + search +
                           "position startpos moves e2e4\n" + "ucinewgame\nd\n" + search);
  const Lines boards = Beginning(said, "text: ");
  EXPECT_EQ(boards, Lines{"text:  rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk"});
  Lines pv;
  for (const std::string& line : Beginning(said, "info depth")) {
    pv.push_back(TextBetween(line, "depth", "nps") + ": " + TextBetween(line, "pv"));
  }
  ASSERT_EQ(pv.size() % 2, 0u);
  const auto half = pv.begin() + static_cast<std::ptrdiff_t>(pv.size() / 2);
  EXPECT_TRUE(std::equal(pv.begin(), half, half)) << "the second search is the first one";
}

TEST_F(Loop, ReadsFilesBeforeItIsReadyAndBeforeItSearches) {
  const std::string missing = folder_.Path("missing.lrn");
  const std::string complaint = "info string cannot read the learn file " + missing;
  const std::string option = "setoption name Learn File value " + missing + "\n";
  EXPECT_EQ(Speak(option + "isready\nisready\n"), (Lines{complaint, "readyok", "readyok"}));
  const Lines said = Speak(option + "position startpos moves e2e4\ngo depth 2\nd\n");
  EXPECT_EQ(said.front(), complaint);
  EXPECT_EQ(said.back(), "text:  rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk");
  EXPECT_EQ(Speak(option + "ucinewgame\nisready\n"), (Lines{complaint, "readyok"}));
}

TEST_F(Loop, EndsWithQuit) { EXPECT_EQ(Speak("isready\n quit now\nisready\n"), Lines{"readyok"}); }

TEST_F(Loop, EndsWithQuitWhileItThinks) {
  const Lines said = Speak("go infinite\nisready\nquit\nisready\n");
  EXPECT_EQ(Beginning(said, "readyok").size(), 1u) << "nothing that came after it is obeyed";
  EXPECT_EQ(Beginning(said, "bestmove ").size(), 1u);
  EXPECT_FALSE(Beginning(Speak("isready\n"), "readyok").empty()) << "the next one begins anew";
}

// A program of its own, whose input ends; the engine's words stay within.
TEST_F(Loop, SpeaksOnTheStandardStreams) {
  const std::string file = folder_.Write("input", "isready\nd\nisready");
  const auto speak = [&file] {
    if (std::freopen(file.c_str(), "r", stdin) == nullptr) std::exit(3);
    dup2(STDERR_FILENO, STDOUT_FILENO);
    SpeakUci();
    std::puts("the end");
    std::fflush(stdout);
    std::exit(0);
  };
  EXPECT_EXIT(speak(), testing::ExitedWithCode(0),
              "^readyok\n(.*\n)+text: .*\nreadyok\nthe end\n$");
}

}  // namespace

}  // namespace tarvyle::uci
