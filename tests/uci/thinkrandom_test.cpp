// Randomised searches and the own book, as the GUI sees them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/think_support.h"
#include "uci/input.h"

namespace tarvyle::uci {

using namespace support;

namespace {

// --- the own book --------------------------------------------------------------------------------

class ThinksWithABook : public Thinks {
 protected:
  explicit ThinksWithABook(const std::string& lines = "h2h4\n") {
    Set("Book File value " + folder_.Write("my.bk", lines));
    Set("OwnBook value true");
    FreshenKnowledge();
  }
};

TEST_F(ThinksWithABook, AlwaysTakesItsMove) {
  const std::string output = folder_.Path("out.lrn");
  Set("Learn Output value " + output);
  const Lines answer{kFromBook, "bestmove h2h4"};
  for (int seed = 1; seed <= 20; ++seed) {
    Set("Seed value " + std::to_string(seed));
    EXPECT_EQ(Go("depth 2", "startpos"), answer) << seed;
  }
  for (const char* limits : {"movetime 100", "nodes 7", "wtime 1000 btime 1000", "depth 9"}) {
    EXPECT_EQ(Go(limits), answer) << limits;
  }
  Set("Random Search value true");
  EXPECT_EQ(Go("depth 2"), answer);
  EXPECT_EQ(ReadFile(output), "") << "of a book's move nothing is put down";
}

TEST_F(ThinksWithABook, ForItselfWhereItHasNoMove) {
  EXPECT_GE(LastNumber(Go("depth 3", "startpos moves e2e4"), "depth"), 3);
  Set("OwnBook value false");
  FreshenKnowledge();
  EXPECT_GE(LastNumber(Go("depth 3", "startpos"), "depth"), 3);
}

TEST_F(ThinksWithABook, ForItselfWhenItAnalyses) {
  for (const char* limits : {"infinite", "ponder wtime 1000 btime 1000", "", "depth 3 infinite"}) {
    Send("stop\n");
    EXPECT_EQ(Beginning(Go(limits, "startpos"), kFromBook), Lines()) << limits;
    EXPECT_TRUE(interruption.stop) << limits;
  }
  for (const char* limits :
       {"mate 1 depth 2", "searchmoves h2h4 depth 3", "depth 3 searchmoves a2a3"}) {
    const Lines said = Go(limits, "startpos");
    EXPECT_EQ(Beginning(said, kFromBook), Lines()) << limits;
    EXPECT_FALSE(ThinkingLines(said).empty()) << limits;
  }
}

// Both moves have the same weight.
TEST_F(ThinksWithABook, DrawsAmongItsMoves) {
  Set("Book File value " + folder_.Write("two.bk", "h2h4\na2a4\n"));
  FreshenKnowledge();
  int first = 0;
  constexpr int kDraws = 60;
  for (int seed = 1; seed <= kDraws; ++seed) {
    Set("Seed value " + std::to_string(seed));
    const std::string move = BestMoveIn(Go("depth 2", "startpos"));
    EXPECT_TRUE(move == "h2h4" || move == "a2a4") << move;
    if (move == "h2h4") ++first;
  }
  EXPECT_GT(first, kDraws / 5);
  EXPECT_LT(first, kDraws * 4 / 5);
}

// --- the randomised search -----------------------------------------------------------------------

TEST_F(Thinks, InStagesOfTheRandomisedSearch) {
  Set("Random Search value true");
  const Lines said = Go("movetime 300", kMiddle);
  // It takes half as much again as it is given, of which the first stage gets half.
  EXPECT_EQ(Beginning(said, "info string #------> stage1"),
            Lines{"info string #------> stage1 - search best move, time = 0.100000 "});
  EXPECT_FALSE(Beginning(said, "info string # select move: " + BestMoveIn(said)).empty());
  ASSERT_EQ(ThinkingLines(said).size(), 1u) << "its result";
  EXPECT_EQ(TextBetween(ThinkingLines(said)[0], "pv"), BestMoveIn(said));
  EXPECT_GE(LastNumber(said, "depth"), 2);
  EXPECT_LT(LastNumber(said, "time"), 1300);
}

TEST_F(Thinks, AloudInTheRandomisedSearch) {
  Set("Random Search value true");
  const LateGui gui([this] { Send("isready\n"); });
  const Lines said = Go("movetime 500", kMiddle);
  const auto stage = std::find_if(said.begin(), said.end(), [](const std::string& line) {
    return line.starts_with("info string #------> stage1");
  });
  EXPECT_EQ(std::count(stage, said.end(), "readyok"), 1) << "what it said, it said before";
}

TEST_F(Thinks, OfARandomisedSearchNoDeeperThanItIsTold) {
  Set("Random Search value true");
  const Lines said = Go("depth 4 movetime 60000", kMiddle);
  EXPECT_EQ(LastNumber(said, "depth"), 4);
  EXPECT_LT(LastNumber(said, "time"), 50000);
  EXPECT_EQ(BestMoveIn(said).size(), 4u);
}

TEST_F(Thinks, OfARandomisedSearchToADepthAndNoFurther) {
  Set("Random Search value true");
  for (const int depth : {2, 3, 5}) {
    const Lines said = Go("depth " + std::to_string(depth), kMiddle);
    EXPECT_EQ(LastNumber(said, "depth"), depth);
    EXPECT_EQ(BestMoveIn(said).size(), 4u);
  }
}

TEST_F(Thinks, OfARandomisedSearchUpToExactlySoManyNodes) {
  Set("Random Search value true");
  for (const int nodes : {3000, 4096, 4097, 20000, 100001}) {
    const Lines said = Go("nodes " + std::to_string(nodes), kMiddle);
    EXPECT_EQ(Beginning(said, "info string #------> stage1").size(), 1u);
    EXPECT_LE(LastNumber(said, "nodes"), nodes);
    // Of what it is given, all but the play-outs' share is used up at least.
    EXPECT_GE(LastNumber(said, "nodes"), nodes - nodes / 15 - 1);
    EXPECT_LE(cnt_nodes, static_cast<std::uint64_t>(nodes) + kNodesPerPoll);
  }
}

TEST_F(Thinks, OfARandomisedSearchThatTellsTheNodesOfAllItsStages) {
  Set("Random Search value true");
  const Lines said = Go("depth 4", kMiddle);
  EXPECT_GT(LastNumber(said, "nodes"), static_cast<long long>(cnt_nodes)) << "of the last one";
}

TEST_F(Thinks, OfARandomisedSearchNoFurtherStageAfterStop) {
  Set("Random Search value true");
  Send("stop\n");
  const Lines said = Go("infinite", kMiddle);
  // The first look at the input comes after 4096 nodes; each stage behind it has a few.
  EXPECT_LT(LastNumber(said, "nodes"), 4096 + 200);
  EXPECT_EQ(BestMoveIn(said).size(), 4u);
}

TEST_F(Thinks, OfARandomisedSearchAsDeepAsItIsTold) {
  Set("Random Search value true");
  // Play-outs, when there are any, take a fifteenth of the time.
  EXPECT_GE(LastNumber(Go("depth 5 movetime 9000", kMiddle), "depth"), 5);
}

TEST_F(Thinks, NotOfASingleReplyInTheRandomisedSearch) {
  Set("Random Search value true");
  const Lines said = Go("movetime 100", kSingleReply);
  EXPECT_TRUE(ThinkingLines(said).empty());
  ASSERT_GE(said.size(), 2u);
  EXPECT_EQ(said[said.size() - 2], kNotSearched);
  EXPECT_EQ(BestMoveIn(said), "h1g1");
}

}  // namespace

}  // namespace tarvyle::uci
