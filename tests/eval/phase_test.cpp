#include "eval/phase.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <string>

#include "position/types.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_phase.h"

namespace tarvyle {
namespace {

using support::SetUpRoot;

struct PhaseRow {
  const char* black;  // his pieces on the last row, from b8 on
  int weight;
  double phase;  // that White sees
  int minors;
};

TEST(Phase, FollowsFromTheOpponentsPieces) {
  const PhaseRow rows[] = {
      {"7", 0, 0.0, 0},
      {"n6", 3, 0.0, 0},
      {"b6", 4, 0.0, 0},
      {"r6", 6, 6 / 40.0, 0},
      {"nn5", 6, 6 / 40.0, 1},
      {"nb5", 7, 7 / 40.0, 1},
      {"bb5", 8, 8 / 40.0, 2},
      {"nnn4", 9, 9 / 40.0, 3},
      {"nnb4", 10, 10 / 40.0, 3},
      {"nbb4", 11, 11 / 40.0, 4},
      {"bbb4", 12, 12 / 40.0, 4},
      {"nnnn3", 12, 12 / 40.0, 4},
      {"q6", 14, 14 / 40.0, 0},
      {"qr5", 20, 0.5, 0},
      {"qrrnn2", 32, 32 / 40.0, 1},
      {"qrrnnb1", 36, 36 / 40.0, 3},
      {"qrrnnbb", 40, 1.0, 4},
      {"qqrrnnb", 50, 1.0, 3},
      {"qqqqqqq", 98, 1.0, 0},
  };
  for (const PhaseRow& row : rows) {
    SCOPED_TRACE(row.black);
    SetUpRoot(std::string("k") + row.black + "/8/8/8/8/8/PPPPPPPP/QRRNNBBK w");
    EXPECT_EQ(OpponentWeight(White), row.weight);
    EXPECT_EQ(Stage(White), row.phase);
    EXPECT_EQ(stage_nb_int(White), row.minors);
    EXPECT_EQ(Stage(Black), 1.0) << "the other side sees White's pieces";
  }
}

TEST(Phase, OfTheMinorPiecesHoldsForMoreThanItsTablesName) {
  SetUpRoot("knnnnnnn/nnnnnnnn/8/8/8/8/8/K7 w");
  EXPECT_EQ(stage_nb_int(White), 4);
  SetUpRoot("kbbbbbbb/bbbbbbbb/8/8/8/8/8/K7 w");
  EXPECT_EQ(stage_nb_int(White), 4);
  EXPECT_EQ(stage_nb_int(Black), 0);
}

TEST(Phase, OfAnyNumberOfKnightsFromFourOnIsFull) {
  for (int knights = 4; knights <= 15; ++knights) {
    std::string men = "k" + std::string(static_cast<std::size_t>(knights), 'n');
    men.resize(16, 'q');
    men.insert(8, "/");
    SetUpRoot(men + "/8/8/8/8/8/K7 w");
    EXPECT_EQ(stage_nb_int(White), 4) << knights;
  }
}

TEST(Phase, EqualsACountOfThePiecesOnTheBoard) {
  support::VisitRandomPositions(7, 1000, [] {
    for (const int colour : {White, Black}) {
      EXPECT_EQ(OpponentWeight(colour), support::PlainWeight(colour));
      EXPECT_EQ(Stage(colour), support::PlainPhase(colour));
    }
  });
}

}  // namespace
}  // namespace tarvyle
