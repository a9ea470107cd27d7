// From which score on the root search takes a result for a mate.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using MateFound = SearchTest;

// Learns a score for all positions of the fortress in which White is to move: either king walks on
// its own first row only.
void LearnFortress(int score) {
  constexpr int kDeep = 100;
  for (int white = 0; white < 8; ++white) {
    for (int black = 0; black < 8; ++black) {
      const auto row = [](int file, char king) {
        std::string text(8, '1');
        text[static_cast<std::size_t>(file)] = king;
        return text;
      };
      GoTo(row(black, 'k') + "/1p1p1p1p/1P1P1P1P/8/8/1p1p1p1p/1P1P1P1P/" + row(white, 'K') +
           " w - -");
      SaveSearchResult(score, kDeep);
    }
  }
}

// Nodes from ply 5 on find their score there, and the first with White to move is at ply 6, which
// the iteration of depth 7 is the first to look up. Neither side can make the other repeat.
TEST_F(MateFound, ScoreBeyond999900EndsTheSearchAndThatItselfDoesNot) {
  struct Row {
    int score;
    int last_depth;
  };
  constexpr int kMostDepth = 9;
  constexpr Row kRows[] = {
      {999899, kMostDepth}, {999900, kMostDepth}, {999901, 7}, {-999900, kMostDepth}, {-999901, 7}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.score);
    ASSERT_TRUE(FreshProcess());
    LearnFortress(row.score);
    GoTo(kFortress);
    const Report report = SearchToDepth(kMostDepth);
    ASSERT_FALSE(report.iterations.empty());
    EXPECT_EQ(report.iterations.back().score, row.score);
    EXPECT_EQ(report.iterations.back().depth, row.last_depth);
  }
}

}  // namespace

}  // namespace tarvyle
