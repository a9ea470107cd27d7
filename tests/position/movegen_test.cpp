#include "position/movegen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "position/makemove.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::CurrentList;
using support::ListedBy;
using support::ListText;

class MoveGenTest : public support::PositionTest {};

std::string Words(const std::vector<Move>& list) {
  std::string text;
  for (const Move move : list) {
    char word[16];
    std::snprintf(word, sizeof word, "%s%08x", text.empty() ? "" : " ", move);
    text += word;
  }
  return text;
}

struct ListRow {
  const char* text;
  const char* moves;
  const char* captures;
};

void ExpectLists(const ListRow& row) {
  support::SetUpPosition(row.text);
  EXPECT_EQ(ListedBy(Generate), row.moves) << row.text;
  EXPECT_EQ(ListedBy(GenerateCaptures), row.captures) << row.text;
}

// --- order -----------------------------------------------------------------------------------

TEST_F(MoveGenTest, WhiteStartsWithTwentyMovesInSlotOrder) {
  EXPECT_EQ(ListedBy(Generate),
            "a2a3 a2a4 b2b3 b2b4 c2c3 c2c4 d2d3 d2d4 e2e3 e2e4 f2f3 f2f4 g2g3 g2g4 h2h3 h2h4 "
            "b1a3 b1c3 g1f3 g1h3");
  EXPECT_EQ(ListLength(), 20);
}

TEST_F(MoveGenTest, BlackStartsWithItsPiecesBeforeItsPawns) {
  support::Play("e2e4");
  EXPECT_EQ(ListedBy(Generate),
            "b8a6 b8c6 g8f6 g8h6 "
            "a7a6 a7a5 b7b6 b7b5 c7c6 c7c5 d7d6 d7d5 e7e6 e7e5 f7f6 f7f5 g7g6 g7g5 h7h6 h7h5");
}

TEST_F(MoveGenTest, RaysAreWalkedNearestFirstUpToTheFirstPiece) {
  ExpectLists({"4k3/8/8/8/p2R1P2/8/8/4K3 w",
               "d4d5 d4d6 d4d7 d4d8 d4c4 d4b4 d4a4 d4d3 d4d2 d4d1 d4e4 f4f5 "
               "e1e2 e1d1 e1f1 e1d2 e1f2",
               "d4a4"});
}

TEST_F(MoveGenTest, GenerateChoosesTheDirectionsOfTheSideToMove) {
  set_dir(Black);
  ASSERT_TRUE(Generate());
  EXPECT_EQ(dir, dir_white);
  support::SetUpPosition("k7/8/8/8/8/8/8/K7 b");
  ASSERT_TRUE(Generate());
  EXPECT_EQ(dir, dir_black);
}

TEST_F(MoveGenTest, GenerateChoosesTheDirectionsOfAnIllegalPositionToo) {
  support::SetUpPosition("8/8/8/3kK3/8/8/8/8 b");
  ASSERT_FALSE(Generate());
  EXPECT_EQ(dir, dir_black);
}

TEST_F(MoveGenTest, CapturesFollowWhicheverDirectionsAreCurrent) {
  support::SetUpPosition("7k/8/8/2ppp3/2pQp3/2ppp3/8/7K w");
  set_dir(White);
  EXPECT_EQ(ListedBy(GenerateCaptures), "d4d5 d4c4 d4d3 d4e4 d4c5 d4e5 d4e3 d4c3");
  set_dir(Black);
  EXPECT_EQ(ListedBy(GenerateCaptures), "d4e4 d4d3 d4c4 d4d5 d4c3 d4e3 d4e5 d4c5");
  EXPECT_EQ(dir, dir_black);
}

// --- pawns -----------------------------------------------------------------------------------

TEST_F(MoveGenTest, PawnsAdvanceThenCaptureTowardsTheLowerFileFirst) {
  ExpectLists({"7k/8/8/3p1p2/4P3/8/8/K7 w", "e4e5 e4d5 e4f5 a1a2 a1b1 a1b2", "e4d5 e4f5"});
  ExpectLists({"7k/8/8/4p3/3P1P2/8/8/K7 b", "h8h7 h8g8 h8g7 e5e4 e5d4 e5f4", "e5d4 e5f4"});
}

TEST_F(MoveGenTest, PawnsStepTwiceFromTheirFirstRowWhenBothSquaresAreEmpty) {
  ExpectLists(
      {"k7/8/8/8/2n5/1n6/PPP4P/7K w", "a2a3 a2a4 a2b3 c2c3 c2b3 h2h3 h2h4 h1g1 h1g2", "a2b3 c2b3"});
  ExpectLists(
      {"7k/ppp5/1N6/2N5/8/8/8/7K b", "h8h7 h8g8 h8g7 a7a6 a7a5 a7b6 c7c6 c7b6", "a7b6 c7b6"});
}

TEST_F(MoveGenTest, PawnsNeverCaptureRoundTheEdge) {
  ExpectLists({"k7/8/7p/p6p/P6P/p7/8/7K w", "h1h2 h1g1 h1g2", ""});
  ExpectLists({"7k/8/7P/p6p/P6P/P7/8/7K b", "h8h7 h8g8 h8g7", ""});
}

TEST_F(MoveGenTest, PawnOnTheSeventhRankYieldsTwoMovesAhead) {
  ExpectLists({"7k/P7/8/8/8/8/8/7K w", "a7a8q a7a8n h1h2 h1g1 h1g2", "a7a8q a7a8n"});
  ExpectLists({"7k/8/8/8/8/8/p7/7K b", "h8h7 h8g8 h8g7 a2a1q a2a1n", "a2a1q a2a1n"});
}

TEST_F(MoveGenTest, PromotionsWithCaptureAreQueenAndKnightEach) {
  ExpectLists({"1r1r3k/2P5/8/8/8/8/8/K7 w", "c7c8q c7c8n c7b8q c7b8n c7d8q c7d8n a1a2 a1b1 a1b2",
               "c7c8q c7c8n c7b8q c7b8n c7d8q c7d8n"});
  ExpectLists({"1rqr3k/2P5/8/8/8/8/8/K7 w", "c7b8q c7b8n c7d8q c7d8n a1a2 a1b1 a1b2",
               "c7b8q c7b8n c7d8q c7d8n"});
}

TEST_F(MoveGenTest, PromotionWordsReplaceThePawnByTheNewPiece) {
  support::SetUpPosition("1r5k/P7/8/8/8/8/8/7K w");
  ASSERT_TRUE(GenerateCaptures());
  // a7 is square 8, a8 square 0, b8 square 1.
  EXPECT_EQ(Words(CurrentList()), "80005200 80002200 c0005201 c0002201");
}

TEST_F(MoveGenTest, PromotingTurnsTheMoveBeforeTheCursorIntoTwo) {
  Move list[3] = {MoveWord(Pawn, 9, 0) | kCapture, 0, 77};
  EXPECT_EQ(MakePromote(list + 1), list + 2);
  EXPECT_EQ(list[0], (MoveWord(Queen, 9, 0) | kCapture | kPromotion));
  EXPECT_EQ(list[1], (MoveWord(Knight, 9, 0) | kCapture | kPromotion));
  EXPECT_EQ(list[2], 77u);
}

TEST_F(MoveGenTest, PawnsOnTheirOwnLastRowHaveNoMoves) {
  ExpectLists({"PPp4k/1n6/8/8/8/8/1N6/ppP4K w", "b2a4 b2c4 b2d1 b2d3 c1c2 h1h2 h1g1 h1g2", ""});
  ExpectLists({"PPp4k/1n6/8/8/8/8/1N6/ppP4K b", "c8c7 h8h7 h8g8 h8g7 b7d8 b7d6 b7a5 b7c5", ""});
}

TEST_F(MoveGenTest, PawnsOnTheirOwnFirstRowStepOnce) {
  ExpectLists({"7k/8/8/8/8/8/1r6/P6K w", "a1a2 a1b2 h1h2 h1g1 h1g2", "a1b2"});
  ExpectLists({"p6k/1R6/8/8/8/8/8/7K b", "a8a7 a8b7 h8h7 h8g8 h8g7", "a8b7"});
}

// --- en passant ------------------------------------------------------------------------------

TEST_F(MoveGenTest, EnPassantComesFirstAndFromTheHigherFileFirst) {
  support::SetUpPosition("4k3/4p3/8/3P1P2/8/8/8/4K3 b");
  support::Play("e7e5");
  ASSERT_TRUE(Generate());
  const std::vector<Move> list = CurrentList();
  ASSERT_GE(list.size(), 2u);
  EXPECT_EQ(ListText({list[0], list[1]}), "f5e6 d5e6");
  for (const Move move : {list[0], list[1]}) EXPECT_EQ(move & 0x60007000, 0x60001000u);
  EXPECT_EQ(EnPassantSquare(), StrToSq("e6"));
}

TEST_F(MoveGenTest, EnPassantWorksForBlackLikewise) {
  support::SetUpPosition("4k3/8/8/8/3p1p2/8/4P3/4K3 w");
  support::Play("e2e4");
  ASSERT_TRUE(Generate());
  const std::vector<Move> list = CurrentList();
  EXPECT_EQ(ListText({list[0], list[1]}), "f4e3 d4e3");
}

TEST_F(MoveGenTest, EnPassantIsReadFromTheLastMove) {
  struct Row {
    const char* reason;
    const char* text;
    const char* move;
    const char* square;
    int captures;
  };
  const Row rows[] = {
      {"both sides", "4k3/4p3/8/3P1P2/8/8/8/4K3 b", "e7e5", "e6", 2},
      {"no pawn beside", "4k3/4p3/8/8/8/8/8/4K3 b", "e7e5", "e6", 0},
      {"single step", "4k3/8/4p3/3P1P2/8/8/8/4K3 b", "e6e5", "", 0},
      {"other piece over two rows", "4k3/4r3/8/3P1P2/8/8/8/K7 b", "e7e5", "", 0},
      {"other pieces beside", "4k3/4p3/8/3N1B2/8/8/8/4K3 b", "e7e5", "e6", 0},
      {"own pawns beside", "4k3/4p3/8/3p1p2/8/8/8/4K3 b", "e7e5", "e6", 0},
      {"a-file", "4k3/p7/8/1P6/8/8/8/4K3 b", "a7a5", "a6", 1},
      {"h-file", "4k3/7p/8/6P1/8/8/8/4K3 b", "h7h5", "h6", 1},
      {"a-file, pawn at the other edge", "4k3/p7/7P/8/8/8/8/4K3 b", "a7a5", "a6", 0},
      {"h-file, pawn at the other edge", "4k3/7p/8/8/P7/8/8/4K3 b", "h7h5", "h6", 0},
      {"a-file of White, pawn at the other edge", "4k3/8/8/7p/8/8/P7/4K3 w", "a2a4", "a3", 0},
      {"h-file of White, pawn at the other edge", "4k3/8/8/8/8/p7/7P/4K3 w", "h2h4", "h3", 0},
      {"promotion", "4k3/8/8/8/8/8/p7/4K3 b", "a2a1q", "", 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.reason);
    support::SetUpPosition(row.text);
    support::Play(row.move);
    EXPECT_EQ(EnPassantSquare(), *row.square == '\0' ? 0 : StrToSq(row.square));
    ASSERT_TRUE(Generate());
    const std::vector<Move> list = CurrentList();
    const auto is_en_passant = [](Move move) { return (move & kEnPassant) != 0; };
    EXPECT_EQ(std::count_if(list.begin(), list.end(), is_en_passant), row.captures);
  }
}

TEST_F(MoveGenTest, EnPassantSquareOfTheTextIsUsedUntilTheFirstMove) {
  support::SetUpPosition("4k3/8/8/3pP3/8/8/8/4K3 w - d6");
  ASSERT_TRUE(Generate());
  EXPECT_EQ(Words({CurrentList()[0]}), "60001713");
  support::Play("e1e2 e8e7");
  EXPECT_EQ(g.ep_sq, StrToSq("d6"));
  EXPECT_EQ(EnPassantSquare(), 0);
  EXPECT_EQ(ListedBy(Generate).substr(0, 4), "e5e6");
  UndoGameMove();
  UndoGameMove();
  EXPECT_EQ(EnPassantSquare(), StrToSq("d6"));
}

TEST_F(MoveGenTest, EnPassantSquareOfTheTextIsNotUsedBehindANullMove) {
  support::SetUpPosition("4k3/8/8/3pP3/8/8/8/4K3 w - d6");
  MakeMove(0);
  EXPECT_EQ(EnPassantSquare(), 0);
  MakeMove(0);
  EXPECT_EQ(EnPassantSquare(), 0);
}

TEST_F(MoveGenTest, NullMoveEndsThePossibilityOfEnPassant) {
  support::SetUpPosition("4k3/4p3/8/3P4/8/8/8/4K3 b");
  support::Play("e7e5");
  MakeMove(0);
  MakeMove(0);
  EXPECT_EQ(EnPassantSquare(), 0);
}

TEST_F(MoveGenTest, EnPassantIsNoneOfTheCaptures) {
  support::SetUpPosition("4k3/8/8/3pP3/8/8/8/4K3 w - d6");
  EXPECT_EQ(ListedBy(GenerateCaptures), "");
}

// --- castling --------------------------------------------------------------------------------

TEST_F(MoveGenTest, CastlingIsListedLastWithoutLookingAtAttacks) {
  struct Row {
    const char* reason;
    const char* text;
    const char* words;
  };
  const Row rows[] = {
      {"both sides", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "08006f3e 10006f3a"},
      {"both sides", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq", "08006106 10006102"},
      {"in check", "r3k2r/8/8/8/8/8/4r3/R3K2R w KQkq", "08006f3e 10006f3a"},
      {"way attacked", "3rkr2/8/8/8/8/8/8/R3K2R w KQ", "08006f3e 10006f3a"},
      {"short right only", "r3k2r/8/8/8/8/8/8/R3K2R w K", "08006f3e"},
      {"long right only", "r3k2r/8/8/8/8/8/8/R3K2R b q", "10006102"},
      {"no right", "r3k2r/8/8/8/8/8/8/R3K2R w kq", ""},
      {"f1 occupied", "4k3/8/8/8/8/8/8/R3KB1R w KQ", "10006f3a"},
      {"g1 occupied", "4k3/8/8/8/8/8/8/R3K1nR w KQ", "10006f3a"},
      {"d1 occupied", "4k3/8/8/8/8/8/8/R2QK2R w KQ", "08006f3e"},
      {"c1 occupied", "4k3/8/8/8/8/8/8/R1n1K2R w KQ", "08006f3e"},
      {"b1 occupied", "4k3/8/8/8/8/8/8/RN2K2R w KQ", "08006f3e"},
      {"no rooks", "4k3/8/8/8/8/8/8/B3K2N w KQ", ""},
      {"enemy rooks", "4k3/8/8/8/8/2N3N1/8/r3K2r w KQ", ""},
      {"king elsewhere", "4k3/8/8/8/8/8/8/R2K3R w KQ", ""},
  };
  for (const Row& row : rows) {
    support::SetUpPosition(row.text);
    ASSERT_TRUE(Generate()) << row.reason;
    const std::vector<Move> list = CurrentList();
    const auto is_castling = [](Move move) { return (move & kCastling) != 0; };
    const auto first = std::find_if(list.begin(), list.end(), is_castling);
    EXPECT_EQ(Words({first, list.end()}), row.words) << row.reason;
  }
}

// --- illegal positions -----------------------------------------------------------------------

TEST_F(MoveGenTest, PositionInWhichTheEnemyKingCanBeCapturedHasNoList) {
  const char* rows[] = {
      "8/8/4k3/3P4/8/8/8/K7 w", "8/8/2k5/3P4/8/8/8/K7 w",  "k7/8/8/8/3p4/2K5/8/8 b",
      "8/8/4k3/8/3N4/8/8/K7 w", "7k/8/8/8/3B4/8/8/K7 w",   "3k4/8/8/8/3R4/8/8/K7 w",
      "3k4/8/8/8/3Q4/8/8/K7 w", "7k/8/8/8/3Q4/8/8/K7 w",   "8/8/8/3kK3/8/8/8/8 w",
      "8/8/8/3kK3/8/8/8/8 b",   "4kr2/8/8/8/8/8/8/4RK2 b", "1k6/P7/8/8/8/8/8/K7 w",
  };
  for (const char* text : rows) {
    support::SetUpPosition(text);
    for (const int start : {0, 5}) {
      for (const auto generate : {Generate, GenerateCaptures}) {
        set_dir(g.side);
        treeCnt[0] = start;
        treeCnt[1] = 99;
        const bool legal = generate();
        const int end = treeCnt[1];
        treeCnt[0] = 0;
        EXPECT_FALSE(legal) << text;
        EXPECT_EQ(end, start) << text;
      }
    }
  }
}

// --- lists -----------------------------------------------------------------------------------

TEST_F(MoveGenTest, MovesThatLeaveTheOwnKingAttackedAreListed) {
  support::SetUpPosition("4r2k/8/8/8/8/8/4B3/4K3 w");
  EXPECT_EQ(ListedBy(Generate), "e2d3 e2c4 e2b5 e2a6 e2f3 e2g4 e2h5 e2f1 e2d1 e1d1 e1f1 e1d2 e1f2");
}

TEST_F(MoveGenTest, ListsOfDeeperPliesFollowEachOther) {
  ASSERT_TRUE(Generate());
  const std::vector<Move> root = CurrentList();
  MakeMove(root[0]);
  ASSERT_TRUE(Generate());
  EXPECT_EQ(ply, 1);
  EXPECT_EQ(treeCnt[1], 20);
  EXPECT_EQ(treeCnt[2], 40);
  const std::vector<Move> replies = CurrentList();
  MakeMove(replies[0]);
  ASSERT_TRUE(GenerateCaptures());
  EXPECT_EQ(treeCnt[3], 40);
  UnMakeMove(replies[0]);
  UnMakeMove(root[0]);
  EXPECT_EQ(CurrentList(), root);
}

bool IsCaptureOrPromotion(Move move) {
  return (move & (kCapture | kPromotion)) != 0 && (move & kEnPassant) == 0;
}

TEST_F(MoveGenTest, CaptureListIsTheCapturesAndPromotionsOfTheFullList) {
  for (const auto& row : support::DataRows("movelists.tsv")) {
    support::SetUpPosition(row[0]);
    ASSERT_TRUE(Generate()) << row[0];
    std::vector<Move> expected;
    const std::vector<Move> all = CurrentList();
    std::copy_if(all.begin(), all.end(), std::back_inserter(expected), IsCaptureOrPromotion);
    ASSERT_TRUE(GenerateCaptures()) << row[0];
    EXPECT_EQ(CurrentList(), expected) << row[0];
  }
}

TEST_F(MoveGenTest, MovesAreWellFormed) {
  for (const auto& row : support::DataRows("movelists.tsv")) {
    support::SetUpPosition(row[0]);
    ASSERT_TRUE(Generate()) << row[0];
    for (const Move move : CurrentList()) {
      SCOPED_TRACE(row[0] + ' ' + MoveToStr(move));
      EXPECT_EQ(move & 0x07FF8000, 0u);
      EXPECT_EQ(g.board[OriginOf(move)], MoverOf(move));
      EXPECT_EQ(g.color[OriginOf(move)], g.side);
      const bool takes_target = (move & kCapture) != 0 && (move & kEnPassant) == 0;
      EXPECT_EQ(g.color[TargetOf(move)], takes_target ? g.xside : NoColour);
      const bool promotes = MoverOf(move) == Pawn && RowOf(TargetOf(move)) == prom_row[g.side];
      EXPECT_EQ((move & kPromotion) != 0, promotes);
      if (promotes) {
        EXPECT_TRUE(PieceOf(move) == Queen || PieceOf(move) == Knight);
      }
    }
  }
}

}  // namespace
}  // namespace tarvyle
