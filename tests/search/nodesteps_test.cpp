// What both node searches do before and around their move loops.

#include "search/nodesteps.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>

#include "eval/evaluate.h"
#include "search/quies.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// Both node searches begin alike.
struct Kind {
  const char* name;
  int (*search)(const NodeArguments&);
};
constexpr Kind kBoth[] = {{"off the principal variation", SearchOffPv},
                          {"on the principal variation", SearchOnPv}};

using NodeSteps = SearchTest;

TEST_F(NodeSteps, MatedSideAtPly3Scores999996Below0) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    GoTo(std::string(kStart) + " moves f2f3", "e7e5 g2g4 d8h4");
    ASSERT_EQ(ply, 3);
    EXPECT_EQ(kind.search(Depth(3)), -999996);
    EXPECT_EQ(cut_forse[3], kCheckmated);
    EXPECT_EQ(cnt_nodes, 0u) << "mate is seen before the node is counted";
    Ascend();
  }
}

TEST_F(NodeSteps, MatingSideAtPly2Sees999996) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    for (const int depth : {1, 2, 3}) {
      Forget();
      GoTo(std::string(kStart) + " moves f2f3", "e7e5 g2g4");
      EXPECT_EQ(kind.search(Depth(depth)), 999996) << depth;
      EXPECT_STREQ(MoveToStr(node_line[2]), "d8h4");
      EXPECT_EQ(node_line[3], 0u);
      Ascend();
    }
  }
}

TEST_F(NodeSteps, KingThatCanBeCapturedMakesTheMoveBeforeIllegal) {
  struct Row {
    const char* what;
    const char* root;
    const char* moves;
    int score;
  };
  constexpr Row kRows[] = {
      {"not in check", "4k3/8/8/8/8/8/4R3/4K3 b", "0", 999999},
      {"not in check, deeper", "4k3/8/8/8/8/8/4R3/4K3 b", "0 0 0", 999997},
      {"in check oneself", "k3R3/8/8/8/8/8/r7/K7 b", "0", 999999},
  };
  for (const Kind& kind : kBoth) {
    for (const Row& row : kRows) {
      SCOPED_TRACE(testing::Message() << kind.name << ", " << row.what);
      GoTo(row.root, row.moves);
      EXPECT_EQ(kind.search(Depth(2)), row.score);
      EXPECT_EQ(cut_forse[ply], kNoCut);
      Ascend();
    }
  }
}

TEST_F(NodeSteps, StalemateIs0) {
  struct Row {
    const char* what;
    const char* root;
    const char* moves;
    int reason;
  };
  constexpr Row kRows[] = {
      {"king's moves are all illegal", "7k/8/6K1/5Q2/8/8/8/8 w", "f5f7", kNoMoveLeft},
      {"nothing moves at all", "PP5k/PP6/PP6/PP6/PP6/PP6/PP6/KP6 b", "h8g8", kNoCut},
  };
  for (const Kind& kind : kBoth) {
    for (const Row& row : kRows) {
      SCOPED_TRACE(testing::Message() << kind.name << ", " << row.what);
      GoTo(row.root, row.moves);
      EXPECT_EQ(kind.search(Depth(2)), 0);
      EXPECT_EQ(cut_forse[ply], row.reason);
      Ascend();
    }
  }
}

TEST_F(NodeSteps, BelowDepth1QuiescenceDecides) {
  for (const Kind& kind : kBoth) {
    for (const int depth : {0, -1, -5}) {
      SCOPED_TRACE(testing::Message() << kind.name << ", depth " << depth);
      GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
      TimeReset();
      const int wanted = Quies(-kInfinity, kInfinity);
      const std::uint64_t nodes = cnt_nodes;
      cut_forse[1] = 9;
      TimeReset();
      EXPECT_EQ(kind.search(Depth(depth)), wanted);
      EXPECT_EQ(cnt_nodes, nodes);
      EXPECT_EQ(cut_forse[1], kNoCut);
      Ascend();
    }
  }
}

TEST_F(NodeSteps, QuiescenceGetsTheWindow) {
  for (const Kind& kind : kBoth) {
    GoTo("4k3/8/8/8/4P3/8/8/4K3 b", "e8e7");
    NodeArguments arguments = Depth(0);
    arguments.alpha = 5000;
    arguments.beta = 6000;
    EXPECT_EQ(kind.search(arguments), 5000) << kind.name;
    Ascend();
  }
}

TEST_F(NodeSteps, NodeInCheckNeverDropsIntoQuiescence) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    GoTo("r5k1/8/8/8/8/8/5PPP/7K w", "h1g1 a8a1");  // mate: quiescence would stand pat
    EXPECT_EQ(kind.search(Depth(0)), 2 - 999999);
    Ascend();
    // A fork of king and queen: standing pat would keep the queen, no reply does.
    Forget();
    GoTo("4k3/8/8/8/3n4/8/5PPP/2Q3K1 b", "d4e2");
    const int standing_pat = Quies(-kInfinity, kInfinity);
    for (const int depth : {0, -3}) EXPECT_LT(kind.search(Depth(depth)), standing_pat - 5000);
    Ascend();
  }
}

TEST_F(NodeSteps, PliesBeyondThreeTimesTheIterationGoToQuiescence) {
  for (const Kind& kind : kBoth) {
    for (const int moves : {3, 4}) {
      SCOPED_TRACE(testing::Message() << kind.name << ", ply " << moves);
      Forget();
      s_depth = 1;
      GoTo(kStart, Nulls(moves));
      TimeReset();
      const int quiet = Quies(-kInfinity, kInfinity);
      ASSERT_EQ(cnt_nodes, 1u);
      TimeReset();
      const int score = kind.search(Depth(2));
      if (moves == 4) {
        EXPECT_EQ(cnt_nodes, 1u);
        EXPECT_EQ(score, quiet);
      } else {
        EXPECT_GT(cnt_nodes, 20u);
      }
      Ascend();
    }
  }
}

TEST_F(NodeSteps, NodeInCheckIsSearchedHoweverDeep) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    Forget();
    s_depth = 1;
    GoTo("4k3/8/8/8/8/8/r7/4K3 b", "a2a1 e1e2 a1a2 e2e1 a2a1");
    repetition_set[g.key.low & kRepetitionMask] = 0;  // no draw here
    TimeReset();
    kind.search(Depth(3));
    EXPECT_GT(cnt_nodes, 1u);
    Ascend();
  }
}

TEST_F(NodeSteps, AfterTheStopEveryNodeReturns0) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
    is_stop_search = 1;
    EXPECT_EQ(kind.search(Depth(3)), 0);
    EXPECT_EQ(StoredEntry(), nullptr);
    Ascend();
  }
}

TEST_F(NodeSteps, NodeAtPly97IsWorthItsEvaluationUnsearched) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", Nulls(97));
    TimeReset();
    const int evaluation = Evaluate(-kInfinity, kInfinity);
    EXPECT_EQ(kind.search(Depth(5)), evaluation);
    EXPECT_EQ(cnt_nodes, 1u);
    Ascend();

    GoTo("4k3/8/8/3q4/4P3/8/8/4K3 w", Nulls(96));
    EXPECT_GT(kind.search(Depth(1)), Evaluate(-kInfinity, kInfinity)) << "ply 96 is searched";
    Ascend();
  }
}

TEST_F(NodeSteps, AtPly97InCheckMateIsSeenAndNothingElse) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    GoTo("r5k1/8/8/8/8/8/5PPP/6K1 b", Nulls(96) + "a8a1");
    ASSERT_EQ(ply, 97);
    EXPECT_EQ(kind.search(Depth(5)), 97 - 999999);
    Ascend();
    GoTo("r5k1/8/8/8/8/8/5PP1/6K1 b", Nulls(96) + "a8a1");
    TimeReset();
    const int evaluation = Evaluate(-kInfinity, kInfinity);
    EXPECT_EQ(kind.search(Depth(5)), evaluation);
    EXPECT_EQ(cnt_nodes, 1u);
    Ascend();
  }
}

TEST_F(NodeSteps, Ply97AfterAGameOf400MovesStaysInsideTheRecord) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    ASSERT_TRUE(InitNewGame());
    ASSERT_TRUE(PlayKnightMoves(400));
    Move move = 0;
    ASSERT_TRUE(StrToMove("e2e4", move));
    EXPECT_FALSE(InsertMoveInGame(move, 0));
    const GameRecord before = g;
    ASSERT_TRUE(Descend(Nulls(96)));
    kind.search(Depth(1));  // its children stand at ply 97
    kind.search(Depth(0));
    ASSERT_TRUE(Descend("e2e4"));
    ASSERT_EQ(ply, 97);
    kind.search(Depth(9));
    Ascend();
    EXPECT_TRUE(IsSameGame(before));
  }
}

TEST_F(NodeSteps, DrawScoresMinus8ForTheSideThatMovedAtTheRootAnd0ForTheOther) {
  for (const Kind& kind : kBoth) {
    for (const int depth_of_node : {1, 2}) {
      SCOPED_TRACE(testing::Message() << kind.name << ", ply " << depth_of_node);
      GoTo("4k3/8/8/8/8/8/4P3/4KQ2 w", depth_of_node == 1 ? "f1f3" : "f1f3 e8d8");
      g.fifty = 100;
      EXPECT_EQ(kind.search(Depth(3)), depth_of_node == 1 ? 0 : -8);
      EXPECT_EQ(cut_forse[ply], kDrawByRule);
      g.fifty = 99;
      EXPECT_NE(kind.search(Depth(3)), depth_of_node == 1 ? 0 : -8);
      EXPECT_EQ(cut_forse[ply], kNoCut);
      Ascend();
    }
  }
}

TEST_F(NodeSteps, RepetitionIsADrawToo) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    ClearRepetitions();
    GoTo("4k1n1/8/8/8/8/8/4P3/4K1N1 w", "e2e3 g8f6 g1f3 f6g8 f3g1");
    EXPECT_EQ(kind.search(Depth(3)), 0);
    EXPECT_EQ(cut_forse[ply], kDrawByRule);
    Ascend();
  }
}

TEST_F(NodeSteps, RootIsNeverADraw) {
  GoTo("4k3/8/8/8/8/8/4P3/4KQ2 w");
  ASSERT_TRUE(LegalMoveList());
  g.fifty = 100;
  EXPECT_GT(Printed([] { EXPECT_GT(SearchOnPv(Depth(2)), 0); }).size(), 0u);
  EXPECT_NE(cut_forse[0], kDrawByRule);
}

TEST_F(NodeSteps, MateStopAndQuiescenceComeBeforeTheDraw) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    GoTo("r5k1/8/8/8/8/8/5PPP/6K1 b", "a8a1");
    g.fifty = 100;
    is_stop_search = 1;
    EXPECT_EQ(kind.search(Depth(3)), 1 - 999999);
    TimeReset();
    Ascend();
    GoTo("4k3/8/8/8/8/8/4P3/4KQ2 w", "f1f3 e8d8");
    g.fifty = 100;
    EXPECT_GT(kind.search(Depth(0)), 1000) << "quiescence";
    is_stop_search = 1;
    EXPECT_EQ(kind.search(Depth(3)), 0) << "the stop, not -8";
    TimeReset();
    Ascend();
  }
}

TEST_F(NodeSteps, LearnedScoresCountFromPly5On) {
  for (const Kind& kind : kBoth) {
    for (const int moves : {4, 5}) {
      SCOPED_TRACE(testing::Message() << kind.name << ", ply " << moves);
      Forget();
      GoTo(kStart, moves == 4 ? "e2e4 e7e5 g1f3 b8c6" : "e2e4 e7e5 g1f3 b8c6 f1b5");
      SaveSearchResult(54321, 3);
      EXPECT_EQ(kind.search(Depth(3)) == 54321, moves == 5);
      EXPECT_NE(kind.search(Depth(4)), 54321) << "learned at a smaller depth";
      Ascend();
      LearnReset();
    }
  }
}

TEST_F(NodeSteps, LearnedBookPositionsBoundTheScore) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    Forget();
    GoTo(kStart, "e2e4 e7e5 g1f3 b8c6 f1b5");
    InsertNodeLearn();
    NodeArguments arguments = Depth(2);
    arguments.alpha = 16;
    arguments.beta = 17;
    TimeReset();
    EXPECT_EQ(kind.search(arguments), 16);
    EXPECT_EQ(cnt_nodes, 1u);
    arguments.alpha = -17;
    arguments.beta = -16;
    EXPECT_EQ(kind.search(arguments), -16);
    EXPECT_EQ(cnt_nodes, 2u);
    arguments.alpha = 14;
    arguments.beta = 15;
    kind.search(arguments);
    EXPECT_GT(cnt_nodes, 3u);
    Ascend();
    LearnReset();
  }
}

TEST_F(NodeSteps, DrawComesBeforeTheLearnedScoreAndThatBeforeTheTable) {
  for (const Kind& kind : kBoth) {
    SCOPED_TRACE(kind.name);
    Forget();
    GoTo(kStart, "e2e4 e7e5 g1f3 b8c6 f1b5");
    SaveSearchResult(54321, 9);
    HashInsert(777, kInfinity, 20, Find("a7a6"));
    EXPECT_EQ(kind.search(Depth(3)), 54321);
    g.fifty = 100;
    EXPECT_EQ(kind.search(Depth(3)), 0);
    Ascend();
    LearnReset();
  }
}

// --- helpers of the move loops -------------------------------------------------------------------

TEST_F(NodeSteps, GenerationSettlesNodesWithoutMovesAndIllegalOnes) {
  struct Row {
    const char* root;
    bool settled;
    int score;
  };
  constexpr Row kRows[] = {{"4k3/8/8/8/8/8/4R3/4K3 b", true, 999999},
                           {"PP5k/PP6/PP6/PP6/PP6/PP6/PP6/KP6 b", true, 0},
                           {"4k3/8/8/8/8/8/4P3/4K3 b", false, 0}};
  for (const Row& row : kRows) {
    GoTo(row.root, "0");
    int score = 5;
    EXPECT_EQ(SettleByGeneration(score), row.settled) << row.root;
    EXPECT_EQ(score, row.score) << row.root;
    Ascend();
  }
}

TEST_F(NodeSteps, IllegalMovesAreNotMade) {
  struct Row {
    const char* what;
    const char* root;
    Move move;
    bool legal;
  };
  const Row kRows[] = {
      {"quiet", "4k3/8/8/8/8/8/4P3/4K3 w", MoveWord(Pawn, 52, 44), true},
      {"pinned", "4k3/8/8/8/4r3/8/4N3/4K3 w", MoveWord(Knight, 52, 42), false},
      {"into check", "4k3/8/8/8/8/8/3r4/6K1 w", MoveWord(King, 62, 53), false},
      {"castling", "4k3/8/8/8/8/8/8/4K2R w K", kShortCastlingMove[White], true},
      {"castling out of check", "4k3/8/8/8/4r3/8/8/4K2R w K", kShortCastlingMove[White], false},
      {"castling across an attack", "4k3/8/8/8/5r2/8/8/4K2R w K", kShortCastlingMove[White], false},
      {"castling into check", "4k3/8/8/8/6r1/8/8/4K2R w K", kShortCastlingMove[White], false},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    GoTo(row.root);
    const GameRecord before = g;
    ASSERT_EQ(MakeIfLegal(row.move, false), row.legal);
    EXPECT_EQ(ply, row.legal ? 1 : 0);
    if (row.legal) {
      UnMakeMove(row.move);
    } else {
      EXPECT_EQ(std::memcmp(g.board, before.board, sizeof g.board), 0);
      EXPECT_EQ(g.side, before.side);
    }
  }
}

TEST_F(NodeSteps, MovesOfALegalListAreMadeUnexamined) {
  GoTo("4k3/8/8/8/4r3/8/4N3/4K3 w");
  EXPECT_TRUE(MakeIfLegal(MoveWord(Knight, 52, 42), true));
  EXPECT_EQ(ply, 1);
}

TEST_F(NodeSteps, PawnMovesToTheSeventhRowAreTold) {
  struct Row {
    const char* root;
    Move move;
    bool told;
  };
  const char* const white = "4k3/8/8/8/8/8/8/4K3 w";
  const char* const black = "4k3/8/8/8/8/8/8/4K3 b";
  const Row kRows[] = {{white, MoveWord(Pawn, 16, 8), true},
                       {white, MoveWord(Pawn, 17, 8) | kCapture, true},
                       {white, MoveWord(Rook, 16, 8), false},
                       {white, MoveWord(Pawn, 24, 16), false},
                       {white, MoveWord(Queen, 8, 0) | kPromotion, false},
                       {white, MoveWord(Pawn, 56, 48), false},  // Black's seventh row
                       {black, MoveWord(Pawn, 40, 48), true},
                       {black, MoveWord(Pawn, 47, 54) | kCapture, true},
                       {black, MoveWord(King, 47, 54), false},
                       {black, MoveWord(Pawn, 32, 40), false},
                       {black, MoveWord(Pawn, 0, 8), false}};
  for (const Row& row : kRows) {
    ASSERT_TRUE(InitGame(row.root));
    EXPECT_EQ(IsPawnToSeventh(row.move), row.told) << row.root << ' ' << MoveToStr(row.move);
  }
}

}  // namespace

}  // namespace tarvyle
