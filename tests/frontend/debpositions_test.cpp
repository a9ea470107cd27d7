#include "frontend/debpositions.h"

#include <gtest/gtest.h>

#include <string>

#include "frontend/display.h"
#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

class TestPositions : public FrontEndTest {};

TEST_F(TestPositions, AreThese) {
  const char* const texts[] = {
      "r4rk1/4Rp2/6p1/1p1p1bNp/p1qP3P/2P1Q3/P4PP1/4R1K1 b",
      "r1bq1r1k/ppp2pp1/2nbp2p/6NQ/3P4/2PB4/P1P2PPP/R1B2RK1 b",
      "2r2b1r/p1qk1ppp/2p1pn2/1B6/Pp6/4PP2/1PQB1P1P/2R2RK1 w",
      "r5k1/7p/1Rp2rp1/2Pp4/P2Qp3/4PqP1/3R1P1P/6K1 w",
      "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR b QKqk",
      "rnbqkbnr/ppp1pppp/8/8/2pP4/8/PP2PPPP/RNBQKBNR w QKqk",
      "r1b1kb1r/ppp1n3/3q4/4pp2/4Q1p1/3B4/PPPP1PP1/R1B1NRK1 w qk",
      "4b3/2R3B1/5P2/pk5p/2p2r1P/P1K5/1P6/8 w",
      "r3kb1r/ppp1pppp/2n2n2/q7/2BP2b1/2N5/PPP1NPPP/R1BQK2R w QKqk",
      "r3kb1r/ppp1pppp/2n2n2/q4b2/2BP4/2N2P2/PPP1N1PP/R1BQK2R w QKqk",
      "3k4/8/2K1Q3/8/8/8/8/8 w",
  };
  for (int i = 0; i < 11; ++i) {
    ASSERT_TRUE(InitGame(TestPosition(i + 1))) << i + 1;
    EXPECT_STREQ(get_board(), texts[i]) << i + 1;
  }
}

TEST_F(TestPositions, KeepTheirTrailingBlanks) {
  for (int number = 1; number <= 11; ++number) {
    const bool has_blank = number == 3 || number == 9 || number == 10;
    EXPECT_EQ(std::string(TestPosition(number)).ends_with(' '), has_blank) << number;
  }
  EXPECT_STREQ(TestPosition(0), "");
  EXPECT_STREQ(TestPosition(12), "");
}

}  // namespace
}  // namespace tarvyle
