// Lines from the GUI, also while the engine thinks.

#include "uci/input.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <initializer_list>
#include <vector>

#include "tests/support/uci_support.h"

namespace tarvyle::uci {

using namespace support;

namespace {

constexpr std::size_t kMillion = std::size_t{1} << 20;
constexpr const char* kIgnored = "info string a line of more than a million characters was ignored";

class InputTest : public UciTest {
 protected:
  // All lines up to the end of the input.
  static Lines Rest() {
    Lines lines;
    for (std::string line; NextLine(line);) lines.push_back(line);
    return lines;
  }

  static std::string Next() {
    std::string line;
    return NextLine(line) ? line : "the end";
  }
};

TEST_F(InputTest, ComesLineByLine) {
  Send("uci\nposition startpos\n\n  isready\r\n");
  HangUp();
  EXPECT_EQ(Rest(), (Lines{"uci", "position startpos", "", "  isready\r"}));
  EXPECT_EQ(Next(), "the end");
}

TEST_F(InputTest, MayComeInPieces) {
  Send("isre");
  HearWhileThinking();
  Send("ady\nde");
  EXPECT_EQ(Next(), "isready");
  Send("p");
  HearWhileThinking();
  Send("th");
  HangUp();
  EXPECT_EQ(Rest(), Lines{"depth"}) << "the last line needs no end";
}

TEST_F(InputTest, MayHoldAnyBytes) {
  const std::string odd("a\0b\xff\t", 5);
  Send(odd + "\n");
  EXPECT_EQ(Next(), odd);
}

TEST_F(InputTest, ForgetsAllWithANewDescriptor) {
  Send("unfinished");
  HearWhileThinking();
  Replay("new\n");
  EXPECT_EQ(Rest(), Lines{"new"});
  Replay("newer\n");
  EXPECT_EQ(Rest(), Lines{"newer"}) << "the end of the old input too";
}

TEST_F(InputTest, IgnoresLinesOfMoreThanAMillionCharacters) {
  const std::string longest(kMillion, 'x');
  const std::string longer(3 * kMillion, 'x');
  struct Row {
    std::string text;
    Lines lines;
    Lines said;
  };
  for (const Row& row : {
           Row{longest + "\nnext\n", {longest, "next"}, {}},
           {"before\n" + longest + "y\nnext\n", {"before", "next"}, {kIgnored}},
           {longer + "z\nnext\n", {"next"}, {kIgnored}},
           {longer + "without an end", {}, {kIgnored}},
           {longest + "y", {}, {kIgnored}},  // nothing of it is held any more when the input ends
       }) {
    Replay(row.text);
    Lines lines;
    EXPECT_EQ(Said([&] { lines = Rest(); }), row.said);
    EXPECT_TRUE(lines == row.lines) << lines.size() << " lines";
  }
}

TEST_F(InputTest, EndsWhereNothingCanBeRead) {
  const int folder = open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  ListenTo(folder);
  EXPECT_EQ(Next(), "the end");
  close(folder);
  ListenTo(folder);
  EXPECT_EQ(Next(), "the end") << "a closed descriptor";
}

TEST_F(InputTest, IsNotWaitedForWhileTheEngineThinks) {
  HearWhileThinking();
  EXPECT_FALSE(interruption.stop);
  EXPECT_FALSE(interruption.quit);
}

// It is listened to every few thousand nodes.
TEST_F(InputTest, CostsThinkingNoTime) {
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < 2000; ++i) HearWhileThinking();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

TEST_F(InputTest, AnswersIsreadyWhileTheEngineThinks) {
  Send("isready\n isready \r\n");
  EXPECT_EQ(Said(HearWhileThinking), (Lines{"readyok", "readyok"}));
  EXPECT_FALSE(interruption.stop);
}

TEST_F(InputTest, StopsTheSearch) {
  for (const char* word : {"stop", "ponderhit"}) {
    interruption = {};
    Send(std::string(word) + "\n");
    EXPECT_EQ(Said(HearWhileThinking), Lines());
    EXPECT_TRUE(interruption.stop) << word;
    EXPECT_FALSE(interruption.quit) << word;
  }
  interruption = {};
  Send("quit\n");
  HearWhileThinking();
  EXPECT_TRUE(interruption.stop);
  EXPECT_TRUE(interruption.quit);
  interruption = {};
  HangUp();
  HearWhileThinking();
  EXPECT_TRUE(interruption.stop);
  EXPECT_FALSE(interruption.quit);
}

TEST_F(InputTest, KeepsWhatCameWhileTheEngineThought) {
  Send("position startpos\nisready\ngo depth 3\n\nstop\nlast\nisready\n");
  HangUp();
  EXPECT_EQ(Said(HearWhileThinking), Lines{"readyok"}) << "the second comes after the stop";
  EXPECT_TRUE(interruption.stop);
  EXPECT_EQ(Rest(), (Lines{"position startpos", "go depth 3", "", "last", "isready"}));
}

// Each stop ends one search; what has been read meanwhile is heard by the next.
TEST_F(InputTest, KeepsTheSecondStopForTheSecondSearch) {
  Send("a\nstop\nb\nstop\nc\n");
  HearWhileThinking();
  EXPECT_TRUE(interruption.stop);
  interruption = {};
  HearWhileThinking();
  EXPECT_TRUE(interruption.stop);
  interruption = {};
  HearWhileThinking();
  EXPECT_FALSE(interruption.stop);
  HangUp();
  EXPECT_EQ(Rest(), (Lines{"a", "b", "c"}));
}

TEST_F(InputTest, WaitsForStop) {
  Send("isready\nposition startpos\nstop\nisready\n");
  EXPECT_EQ(Said(WaitForStop), Lines{"readyok"});
  EXPECT_TRUE(interruption.stop);
  EXPECT_EQ(Next(), "position startpos");
  EXPECT_EQ(Next(), "isready");
  interruption = {};
  HangUp();
  WaitForStop();
  EXPECT_TRUE(interruption.stop) << "nobody is there any more";
}

TEST_F(InputTest, DoesNotWaitBeforeItLooksAtWhatItHas) {
  Send("go infinite\nstop\nposition startpos\n");
  EXPECT_EQ(Next(), "go infinite") << "all of it has been read";
  WaitForStop();
  EXPECT_TRUE(interruption.stop);
  EXPECT_EQ(Next(), "position startpos");
}

TEST_F(InputTest, HasStoppedAlready) {
  interruption.stop = true;
  Send("isready\n");
  EXPECT_EQ(Said(WaitForStop), Lines());
}

}  // namespace

}  // namespace tarvyle::uci
