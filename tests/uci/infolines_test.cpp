// The lines that the GUI is told while the engine thinks.

#include "uci/infolines.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "position/types.h"
#include "tests/support/line_support.h"
#include "tests/support/uci_support.h"

namespace tarvyle::uci {

using namespace support;

namespace {

class InfoLines : public UciTest {
 protected:
  std::string Line(int depth, int score, const std::string& moves, const Effort& effort) {
    const auto line = LineOf(moves);
    const Lines said = Said([&] {
      SayLine(SearchStatus{depth, score, 77, 88, line.data()}, effort);
    });
    EXPECT_EQ(said.size(), 1u);
    return said.empty() ? "" : said[0];
  }

  // Uses the first slots of a table.
  static void Fill(int side, int count, int step = 1, int first = 0) {
    for (int slot = first; slot < first + count * step; slot += step) {
      hash[side][slot].key = static_cast<std::uint64_t>(slot);
      hash[side][slot].bound = kExact;
      hash[side][slot].generation = hash_generation & 0xFF;
      hash[side][slot].depth = 1;
    }
  }

  long long HashFull() { return NumberAfter(Line(2, 0, "e2e4", {1, 1}), "hashfull"); }
};

TEST_F(InfoLines, TellDepthScoreEffortAndTheWholeLine) {
  EXPECT_EQ(Line(7, 1239, "e2e4 e7e5 g1f3", {3000, 2000}),
            "info depth 7 score cp 123 nodes 3000 nps 1500 time 2000 hashfull 0 pv e2e4 e7e5 g1f3");
  EXPECT_EQ(Line(12, -999995, "e1e2 d8d1", {12345678901, 1000}),
            "info depth 12 score mate -2 nodes 12345678901 nps 12345678901 time 1000 hashfull 0 pv "
            "e1e2 d8d1");
  EXPECT_EQ(Line(2, 0, "a7a8q", {7, 3}),
            "info depth 2 score cp 0 nodes 7 nps 2333 time 3 hashfull 0 pv a7a8q");
}

TEST_F(InfoLines, TellHowFarASearchIs) {
  HashClear();
  const Move move = LineOf("g1f3")[0];
  EXPECT_EQ(Said([&] {
              SayProgress(9, move, 12, {3000, 2000});
            }),
            Lines{"info depth 9 currmove g1f3 currmovenumber 12 nodes 3000 nps 1500 time 2000 "
                  "hashfull 0"});
  EXPECT_EQ(Said([] {
              SayProgress(9, 0, 1, {3000, 2000});
            }),
            Lines{"info depth 9 nodes 3000 nps 1500 time 2000 hashfull 0"});
  EXPECT_EQ(Said([] {
              SayEffort({3000, 2000});
            }),
            Lines{"info nodes 3000 nps 1500 time 2000 hashfull 0"});
}

TEST_F(InfoLines, TakeAMateToBeAsLongAsItsLine) {
  EXPECT_EQ(TextBetween(Line(9, 999998, "a1a2 b1b2 c1c2 d1d2 e1e2", {1, 1}), "score", "nodes"),
            "mate 3");
}

TEST_F(InfoLines, CountASearchOfNoTimeAsOneMillisecond) {
  EXPECT_EQ(TextBetween(Line(2, 0, "e2e4", {500, 0}), "nodes", "hashfull"),
            "500 nps 500000 time 0");
  EXPECT_EQ(TextBetween(Line(2, 0, "e2e4", {500, 1}), "nodes", "hashfull"),
            "500 nps 500000 time 1");
  EXPECT_EQ(TextBetween(Line(2, 0, "e2e4", {500, 2}), "nodes", "hashfull"),
            "500 nps 250000 time 2");
}

TEST_F(InfoLines, HaveLinesOfAnyLength) {
  std::string moves = "e2e4";
  for (int i = 0; i < 40; ++i) moves += " g8f6 f6g8";
  EXPECT_EQ(TextBetween(Line(81, 0, moves, {1, 1}), "pv"), moves);
}

TEST_F(InfoLines, SampleHowFullBothTablesAre) {
  HashClear();
  EXPECT_EQ(HashFull(), 0);
  Fill(White, 1, 1, 500);
  EXPECT_EQ(HashFull(), 0) << "behind the sample";
  Fill(White, 1, 1, 499);
  EXPECT_EQ(HashFull(), 1);
  HashClear();
  Fill(White, 250);
  EXPECT_EQ(HashFull(), 250);
  Fill(Black, 125, 4);
  EXPECT_EQ(HashFull(), 375);
  Fill(White, 500);
  Fill(Black, 500);
  EXPECT_EQ(HashFull(), 1000);
  HashClear();
  EXPECT_EQ(HashFull(), 0);
}

}  // namespace

}  // namespace tarvyle::uci
