// Draws by the fifty-move rule and by repetition.

#include "search/draw.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr const char* kKnightsAndKings = "4k1n1/8/8/8/8/8/4P3/4K1N1 w";
constexpr const char* kCycle = "g1f3 g8f6 f3g1 f6g8";

using Draw = SearchTest;

TEST_F(Draw, ByTheFiftyMoveRuleFromTheHundredthReversibleHalfMoveOn) {
  struct Row {
    int reversible;
    bool draw;
  };
  for (const Row& row :
       {Row{0, false}, {2, false}, {98, false}, {99, false}, {100, true}, {150, true}}) {
    GoTo(kStart);
    g.fifty = row.reversible;
    EXPECT_EQ(DrawByRule(), row.draw) << row.reversible;
  }
}

TEST_F(Draw, FirstRepetitionCountsFromTheRootOnAndTheSecondAnywhere) {
  struct Row {
    const char* what;
    std::string root;   // with the moves of the game
    const char* moves;  // of the search
    bool draw;
  };
  const std::string game = std::string(kKnightsAndKings) + " moves ";
  const Row kRows[] = {
      {"position inside the search path", kKnightsAndKings, "e2e3 g8f6 g1f3 f6g8 f3g1",
       true},  // as after e2e3
      {"position at the root, which a game move has led to", game + "e2e3 g8f6",
       "g1f3 f6g8 f3g1 g8f6", true},
      {"set-up position at the root: its key is not in the list", kKnightsAndKings, kCycle, false},
      {"set-up position, second time inside the search", kKnightsAndKings,
       "g1f3 g8f6 f3g1 f6g8 g1f3 g8f6 f3g1 f6g8", true},
      {"once before the root only", game + "e2e3 g8f6 g1f3", "f6g8 f3g1 g8f6", false},
      {"twice before the root", game + "e2e3 g8f6 g1f3 f6g8 f3g1 g8f6 g1f3", "f6g8 f3g1 g8f6",
       true},
      {"once before the root and once at it", game + "e2e3 g8f6 g1f3 f6g8 f3g1 g8f6",
       "g1f3 f6g8 f3g1 g8f6", true},
      {"another square", game + "e2e3 g8f6", "g1f3 f6g8 f3g1 g8h6", false},
      {"the other side to move is another key path", game + "e2e3", "e8d7 e1d2 d7e8 d2d1", false},
      {"three half-moves cannot repeat", kKnightsAndKings, "g1f3 g8f6 f3g1", false},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    ClearRepetitions();
    GoTo(row.root, row.moves);
    EXPECT_EQ(DrawByRule(), row.draw);
    Ascend();
  }
}

TEST_F(Draw, RepetitionInTheGameItselfNeedsTheThirdOccurrence) {
  const std::string once =
      std::string(kKnightsAndKings) + " moves e2e3 " + "g8f6 g1f3 f6g8 f3g1 g8f6 g1f3";
  ClearRepetitions();
  GoTo(once, "f6g8");
  EXPECT_FALSE(DrawByRule()) << "second occurrence, the first lies before the root";
  Ascend();
  ClearRepetitions();
  GoTo(once + " f6g8 f3g1 g8f6 g1f3", "f6g8");
  EXPECT_TRUE(DrawByRule()) << "third occurrence";
}

TEST_F(Draw, WalkEndsAtAMoveThatCannotBeUndone) {
  // The same placement on both sides of each of these moves, as the keys have it; a forged key
  // makes the earlier entry equal.
  struct Row {
    const char* what;
    const char* root;
    const char* moves;  // the irreversible one is the second
    bool draw;
  };
  constexpr Row kRows[] = {
      {"quiet moves only", "4k1n1/4p3/8/8/8/8/4P3/4K1N1 w", "g1f3 g8f6 f3g1 f6g8 g1f3", true},
      {"pawn move", "4k1n1/4p3/8/8/8/8/4P3/4K1N1 w", "g1f3 e7e6 f3g1 g8f6 g1f3", false},
      {"capture", "4k1n1/8/8/4P3/8/5p2/8/4K1N1 w", "g1f3 g8f6 e5f6 e8d7 f3g1", false},
      {"castling", "4k2r/8/8/8/8/8/8/4K1N1 w k", "g1f3 e8g8 f3g1 g8h8 g1f3", false},
      {"promotion", "4k1n1/8/8/8/8/8/p3K3/6N1 w", "g1f3 a2a1q f3g1 g8f6 g1f3", false},
      {"null move", "4k1n1/4p3/8/8/8/8/4P3/4K1N1 w", "g1f3 0 f3g1 g8f6 g1f3", false},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    ClearRepetitions();
    GoTo(row.root, row.moves);
    g.fifty = 5;  // let the walk begin in any case
    g.game_keys[0] = g.key;
    repetition_set[g.key.low & kRepetitionMask] = 5;
    EXPECT_EQ(DrawByRule(), row.draw);
    g.game_keys[0] = 0;
    Ascend();
  }
}

TEST_F(Draw, KeyOfAnIrreversibleMoveIsComparedBeforeTheMoveEndsTheWalk) {
  ClearRepetitions();
  GoTo(kKnightsAndKings, "e2e3 g8f6 g1f3 f6g8 f3g1");
  EXPECT_TRUE(DrawByRule()) << "the entry of the pawn move is the match";
}

TEST_F(Draw, CounterSaysHowManyMatchesAreWorthLookingFor) {
  // The third occurrence counts, the second lies before the root.
  const std::string root =
      std::string(kKnightsAndKings) + " moves e2e3 g8f6 g1f3 f6g8 f3g1 g8f6 g1f3";
  struct Row {
    std::uint32_t counter;
    bool draw;
  };
  for (const Row& row : {Row{0, false}, {1, false}, {2, false}, {3, true}, {4, true}}) {
    ClearRepetitions();
    GoTo(root, "f6g8 f3g1 g8f6");
    repetition_set[g.key.low & kRepetitionMask] = row.counter;
    EXPECT_EQ(DrawByRule(), row.draw) << row.counter;
    Ascend();
  }
}

TEST_F(Draw, MatchDecidesBeforeTheCounterIsUsedUp) {
  ClearRepetitions();
  GoTo(std::string(kKnightsAndKings) + " moves e2e3 g8f6", "g1f3 f6g8 f3g1 g8f6");
  repetition_set[g.key.low & kRepetitionMask] = 2;
  EXPECT_TRUE(DrawByRule());
}

TEST_F(Draw, RepetitionIsNotLookedForWithinTwoReversibleHalfMoves) {
  ClearRepetitions();
  GoTo(std::string(kKnightsAndKings) + " moves e2e3 g8f6", "g1f3 f6g8 f3g1 g8f6");
  ASSERT_TRUE(DrawByRule());
  g.fifty = 2;
  EXPECT_FALSE(DrawByRule());
  g.fifty = 3;
  EXPECT_TRUE(DrawByRule());
}

}  // namespace

}  // namespace tarvyle
