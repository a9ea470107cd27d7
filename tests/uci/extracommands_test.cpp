// Commands that are not the protocol's but customary.

#include "uci/extracommands.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <initializer_list>
#include <string>

#include "tests/support/uci_support.h"
#include "uci/knowledge.h"
#include "uci/options.h"
#include "uci/place.h"

namespace tarvyle::uci {

using namespace support;

namespace {

class Extras : public UciTest {
 protected:
  Lines Perft(const std::string& words) {
    return Said([&] { ObeyPerft(words); });
  }
  Lines Eval() {
    return Said([] { ObeyEval(""); });
  }
  Lines Bench(const std::string& words) {
    return Said([&] { ObeyBench(words); });
  }
};

TEST_F(Extras, CountLeavesBelowEachMove) {
  const Lines said = Perft(" 3 ");
  ASSERT_EQ(said.size(), 21u);
  EXPECT_EQ(said.back(), "nodes 8902");
  EXPECT_EQ(Beginning(said, "e2e4: 600").size(), 1u);
  EXPECT_EQ(Beginning(said, "a2a3: 380").size(), 1u);
  EXPECT_EQ(Perft("").back(), "nodes 20") << "one ply unless told";
  EXPECT_EQ(Perft("0"), Lines{"nodes 1"});
  ObeyPosition("fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1");
  EXPECT_EQ(Perft("2"), Lines{"nodes 0"});
}

TEST_F(Extras, CountLeavesInTheWordsOfScripts) {
  const Lines said = Speak("position startpos\ngo perft 3\ngo perft\ngo perft x\n");
  ASSERT_EQ(said.size(), 43u);
  EXPECT_EQ(Beginning(said, "a2a3: 380").size(), 1u);
  EXPECT_EQ(said[20], "Nodes searched: 8902");
  EXPECT_EQ(said[41], "Nodes searched: 20");
  EXPECT_EQ(said[42], "info string a depth from 0 to 90 was expected");
}

TEST_F(Extras, RefuseDepthsThatAreNone) {
  for (const char* words : {"x", "-1", "91", "3x", "99999999999"}) {
    EXPECT_EQ(Perft(words), Lines{"info string a depth from 0 to 90 was expected"}) << words;
  }
  for (const char* words : {"x", "1", "0", "-2", "91"}) {
    EXPECT_EQ(Bench(words), Lines{"info string a depth from 2 to 90 was expected"}) << words;
  }
}

TEST_F(Extras, StopCounting) {
  Send("isready\nstop\n");
  const Lines said = Perft("20");
  ASSERT_GE(said.size(), 2u);
  EXPECT_EQ(said.front(), "readyok");
  EXPECT_EQ(said.back(), "info string perft was stopped");
  EXPECT_EQ(Perft("2").back(), "nodes 400") << "the next one is not";
  EXPECT_EQ(Board(), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk");
}

TEST_F(Extras, EvaluateFromWhitesSide) {
  ObeyPosition("fen 4k3/8/8/8/8/8/8/QQ2K3 w - - 0 1");
  const int score = StaticScore();
  char text[64];
  std::snprintf(text, sizeof text, "evaluation %+.3f (White's side)", score / 1000.0);
  EXPECT_EQ(Eval(), Lines{text});
  ObeyPosition("fen qq2k3/8/8/8/8/8/8/4K3 b - - 0 1");
  std::snprintf(text, sizeof text, "evaluation %+.3f (White's side)", -score / 1000.0);
  EXPECT_EQ(Eval(), Lines{text});
}

TEST_F(Extras, ShowTheBoard) {
  ObeyPosition("startpos moves e2e4");
  const Lines said = Said([] { ObeyShow(""); });
  ASSERT_GE(said.size(), 10u);
  EXPECT_EQ(said[0], "8  r n b q k b n r ");
  EXPECT_EQ(said[7], "1  R N B Q K B N R ");
  EXPECT_EQ(said.back(), "text:  rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk");
  EXPECT_EQ(Beginning(said, "side:  black").size(), 1u);
}

TEST_F(Extras, RunTheBenchInTheStyleThatIsSet) {
  ObeyPosition("startpos moves e2e4");
  const std::string board = Board();
  FreshenKnowledge();
  EXPECT_FALSE(FreshenKnowledge());
  const Lines third = Bench("2");
  ASSERT_EQ(third.size(), 45u);
  EXPECT_TRUE(third[0].starts_with("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -"));
  EXPECT_EQ(third[44].substr(third[44].size() - 3), "nps");
  EXPECT_EQ(Board(), board);
  EXPECT_TRUE(FreshenKnowledge()) << "it has emptied the learn table";
  ObeySetOption("name Style value knowledge1");
  EXPECT_NE(Bench("2")[41], third[41]);
  EXPECT_STREQ(print_play_str(), "knowledge1");
}

TEST_F(Extras, StopTheBench) {
  ObeyPosition("startpos moves e2e4");
  const std::string board = Board();
  Send("isready\nstop\n");
  const Lines said = Bench("20");
  EXPECT_EQ(said, (Lines{"readyok", "info string the bench was stopped"}));
  EXPECT_EQ(Board(), board);
  EXPECT_EQ(world.should_stop, nullptr);
  EXPECT_EQ(Bench("2").size(), 45u) << "the next one is not";
}

}  // namespace

}  // namespace tarvyle::uci
