// What "go" asks for.

#include "uci/golimits.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "position/text.h"
#include "position/types.h"
#include "tests/support/uci_support.h"
#include "uci/place.h"

namespace tarvyle::uci {

using namespace support;

namespace {

// Everything that was said, word by word; "infinite" only when it is.
std::string ToldBy(const Limits& limits) {
  std::string text;
  const auto add = [&text](const char* word, std::int64_t number, std::int64_t unsaid) {
    if (number != unsaid) text += std::string(" ") + word + " " + std::to_string(number);
  };
  add("wtime", limits.time[White], -1);
  add("btime", limits.time[Black], -1);
  add("winc", limits.increment[White], 0);
  add("binc", limits.increment[Black], 0);
  add("movestogo", limits.moves_to_go, 0);
  add("movetime", limits.move_time, -1);
  add("depth", limits.depth, 0);
  add("nodes", static_cast<std::int64_t>(limits.nodes), 0);
  add("mate", limits.mate, 0);
  if (limits.infinite) text += " infinite";
  if (!limits.only.empty()) text += " searchmoves";
  for (const Move move : limits.only) text += std::string(" ") + MoveToStr(move);
  return text.empty() ? text : text.substr(1);
}

class LimitsOfGo : public UciTest {
 protected:
  // What is read, and complained of, of such words.
  std::string Read(const std::string& words) {
    std::string told;
    complaints_ = Said([&] { told = ToldBy(ReadLimits(words)); });
    return told;
  }

  Lines complaints_;
};

struct LimitsRow {
  const char* words;
  const char* told;
};

TEST_F(LimitsOfGo, AreReadInAnyOrder) {
  for (const LimitsRow& row : {
           LimitsRow{"wtime 60000 btime 59000 winc 1000 binc 2000 movestogo 40",
                     "wtime 60000 btime 59000 winc 1000 binc 2000 movestogo 40"},
           {"movestogo 7 binc 5 btime 3 winc 4 wtime 2",
            "wtime 2 btime 3 winc 4 binc 5 movestogo 7"},
           {"movetime 500", "movetime 500"},
           {"movetime 0", "movetime 0"},
           {"depth 7", "depth 7"},
           {"nodes 123456789012", "nodes 123456789012"},
           {"mate 3", "mate 3"},
           {" \t depth   7 \r", "depth 7"},
           {"depth 3 depth 4", "depth 4"},
       }) {
    EXPECT_EQ(Read(row.words), row.told) << row.words;
    EXPECT_EQ(complaints_, Lines()) << row.words;
  }
}

TEST_F(LimitsOfGo, AreNoneWithoutAWordThatEndsTheSearch) {
  for (const LimitsRow& row : {
           LimitsRow{"", "infinite"},
           {"infinite", "infinite"},
           {"ponder", "infinite"},
           {"infinite depth 3", "depth 3 infinite"},
           {"depth 3 ponder", "depth 3 infinite"},
           {"winc 100 binc 100 movestogo 3", "winc 100 binc 100 movestogo 3 infinite"},
           {"searchmoves e2e4", "infinite searchmoves e2e4"},
           {"wtime 100", "wtime 100"},
           {"btime 100", "btime 100 infinite"},  // the opponent's clock
       }) {
    EXPECT_EQ(Read(row.words), row.told) << row.words;
    EXPECT_EQ(complaints_, Lines()) << row.words;
  }
  ObeyPosition("startpos moves e2e4");
  EXPECT_EQ(Read("btime 100"), "btime 100");
  EXPECT_EQ(Read("wtime 100"), "wtime 100 infinite");
}

TEST_F(LimitsOfGo, AreHeldWithinWhatMakesSense) {
  for (const LimitsRow& row : {
           LimitsRow{"wtime -5 btime -1", "wtime 0 btime 0"},
           {"wtime 1 winc -5 binc -5", "wtime 1"},
           {"movetime -1", "movetime 0"},
           {"depth 0", "depth 1"},
           {"depth -3", "depth 1"},
           {"depth 99999999999", "depth 1000000"},
           {"nodes 0", "nodes 1"},
           {"nodes -1", "nodes 1"},
           {"mate 0", "mate 1"},
           {"mate 2000000", "mate 1000000"},
           {"movestogo -2 depth 2", "depth 2"},
           {"movestogo 5000000 depth 2", "movestogo 1000000 depth 2"},
           {"wtime 9000000000000000000", "wtime 1000000000000"},
           {"movetime 9000000000000000000", "movetime 1000000000000"},
       }) {
    EXPECT_EQ(Read(row.words), row.told) << row.words;
    EXPECT_EQ(complaints_, Lines()) << row.words;
  }
}

TEST_F(LimitsOfGo, ComplainOfNumbersThatAreNone) {
  for (const char* word :
       {"wtime", "btime", "winc", "binc", "movestogo", "movetime", "depth", "nodes", "mate"}) {
    const std::string complaint = std::string("info string a number was expected after ") + word;
    EXPECT_EQ(Read(word), "infinite");
    EXPECT_EQ(complaints_, Lines{complaint});
    EXPECT_EQ(Read(std::string(word) + " mate 3"), "mate 3") << "the next word is none of its own";
    EXPECT_EQ(complaints_, Lines{complaint});
  }
  Read("depth 3x");
  EXPECT_EQ(complaints_, (Lines{"info string a number was expected after depth",
                                "info string unknown in go: 3x"}));
  Read("nodes 99999999999999999999");
  EXPECT_EQ(complaints_.size(), 2u);
  Read("nodes +5");
  EXPECT_EQ(complaints_.size(), 2u);
  Read("nodes 1.5");
  EXPECT_EQ(complaints_.size(), 2u);
}

TEST_F(LimitsOfGo, ComplainOfUnknownWords) {
  EXPECT_EQ(Read("Depth 3 depth 4 perft"), "depth 4");
  EXPECT_EQ(complaints_, (Lines{"info string unknown in go: Depth", "info string unknown in go: 3",
                                "info string unknown in go: perft"}));
}

TEST_F(LimitsOfGo, TakeLegalMovesToSearchUpToTheNextWord) {
  for (const LimitsRow& row : {
           LimitsRow{"searchmoves e2e4 g1f3 depth 3", "depth 3 searchmoves e2e4 g1f3"},
           {"depth 3 searchmoves a2a3", "depth 3 searchmoves a2a3"},
           {"searchmoves a2a3 infinite", "infinite searchmoves a2a3"},
           {"searchmoves a2a3 searchmoves a2a4 nodes 5", "nodes 5 searchmoves a2a3 a2a4"},
           {"searchmoves depth 2", "depth 2"},
       }) {
    EXPECT_EQ(Read(row.words), row.told) << row.words;
    EXPECT_EQ(complaints_, Lines()) << row.words;
  }
}

TEST_F(LimitsOfGo, LeaveOutMovesThatCannotBePlayed) {
  EXPECT_EQ(Read("searchmoves e2e5 a2a3 e7e5 nonsense depth 3"), "depth 3 searchmoves a2a3");
  EXPECT_EQ(complaints_, (Lines{"info string not a move to search: e2e5",
                                "info string not a move to search: e7e5",
                                "info string not a move to search: nonsense"}));
  // A pinned piece, and a king that would stay in check.
  ObeyPosition("fen 4k3/8/8/8/4r3/8/4B3/4K3 w - - 0 1");
  EXPECT_EQ(Read("searchmoves e2d3 e1d1 depth 3"), "depth 3 searchmoves e1d1");
  EXPECT_EQ(complaints_, Lines{"info string not a move to search: e2d3"});
  ObeyPosition("fen 4k3/8/8/8/8/8/4r3/4K3 w - - 0 1");
  EXPECT_EQ(Read("searchmoves e1d2 e1e2 e1f1 depth 3"), "depth 3 searchmoves e1e2 e1f1");
  EXPECT_EQ(complaints_, Lines{"info string not a move to search: e1d2"});
}

TEST_F(LimitsOfGo, KnowEveryKindOfMove) {
  ObeyPosition("fen r3k3/8/8/8/3pP3/8/8/4K2R b q e3 0 1");
  EXPECT_EQ(Read("searchmoves d4e3 e8c8 depth 1"), "depth 1 searchmoves d4e3 e8c8");
  ObeyPosition("fen r3k3/1P6/8/8/8/8/8/4K2R w K - 0 1");
  EXPECT_EQ(Read("searchmoves b7a8n b7b8 e1g1 depth 1"), "depth 1 searchmoves b7a8n b7b8q e1g1");
}

}  // namespace

}  // namespace tarvyle::uci
