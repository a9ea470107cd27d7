#include "position/legal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "position/makemove.h"
#include "position/soundness.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::ListedBy;
using support::ListText;

class LegalTest : public support::PositionTest {};

// --- the legal list --------------------------------------------------------------------------

TEST_F(LegalTest, StartPositionHasTwentyMovesInGeneratedOrder) {
  ASSERT_TRUE(LegalMoveList());
  EXPECT_EQ(ListLength(), 20);
  const std::string legal = ListText(support::CurrentList());
  EXPECT_EQ(legal, ListedBy(Generate));
}

TEST_F(LegalTest, MovesThatLeaveTheKingAttackedAreDropped) {
  struct Row {
    const char* reason;
    const char* text;
    const char* moves;
  };
  const Row rows[] = {
      {"pinned bishop", "4r2k/8/8/8/8/8/4B3/4K3 w", "e1d1 e1f1 e1d2 e1f2"},
      {"pinned rook moves on the line", "4r2k/8/8/8/8/8/4R3/4K3 w",
       "e2e3 e2e4 e2e5 e2e6 e2e7 e2e8 e1d1 e1f1 e1d2 e1f2"},
      {"check by a knight", "7k/8/8/8/8/3n4/2P5/4K3 w", "c2d3 e1e2 e1d1 e1f1 e1d2"},
      {"double check", "4r2k/8/8/8/8/5n2/4R3/4K3 w", "e1d1 e1f1 e1f2"},
      {"en passant uncovers the rank", "8/8/8/K2pP2r/8/8/8/7k w - d6",
       "a5a6 a5a4 a5b5 a5b6 a5b4 e5e6"},
      {"castling out of check", "4r1k1/8/8/8/8/8/3P1P2/R2QK2R w KQ", "d1e2 e1f1"},
      {"castling through an attacked square", "5rk1/8/8/8/8/8/8/4K2R w K",
       "e1e2 e1d1 e1d2 h1h2 h1h3 h1h4 h1h5 h1h6 h1h7 h1h8 h1g1 h1f1"},
      {"castling into check", "6rk/8/8/8/8/7P/7P/4K2R w K",
       "h3h4 e1e2 e1d1 e1f1 e1d2 e1f2 h1g1 h1f1"},
      {"castling over an attacked rook's way", "1r5k/8/8/8/8/P7/P7/R3K3 w Q",
       "a3a4 a1b1 a1c1 a1d1 e1e2 e1d1 e1f1 e1d2 e1f2 e1c1"},
  };
  for (const Row& row : rows) {
    support::SetUpPosition(row.text);
    EXPECT_EQ(ListedBy(LegalMoveList), row.moves) << row.reason;
  }
}

TEST_F(LegalTest, MateAndStalemateHaveAnEmptyList) {
  struct Row {
    const char* text;
    bool mate;
  };
  const Row rows[] = {
      {"7k/6Q1/6K1/8/8/8/8/8 b", true},
      {"R6k/6pp/8/8/8/8/8/K7 b", true},
      {"rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq", true},
      {"7k/5Q2/6K1/8/8/8/8/8 b", false},
      {"k7/P7/K7/8/8/8/8/8 b", false},
  };
  for (const Row& row : rows) {
    support::SetUpPosition(row.text);
    EXPECT_TRUE(LegalMoveList()) << row.text;
    EXPECT_EQ(ListLength(), 0) << row.text;
    EXPECT_EQ(Check(), row.mate) << row.text;
  }
}

TEST_F(LegalTest, PositionInWhichTheEnemyKingCanBeCapturedIsRefusedWithAnEmptyList) {
  support::SetUpPosition("k7/R7/8/8/8/8/8/K7 w");
  treeCnt[1] = 99;
  EXPECT_FALSE(LegalMoveList());
  EXPECT_EQ(ListLength(), 0);
}

TEST_F(LegalTest, ListOfADeeperPlyFollowsTheOneAbove) {
  ASSERT_TRUE(LegalMoveList());
  const std::vector<Move> root = support::CurrentList();
  MakeMove(root[8]);
  ASSERT_TRUE(LegalMoveList());
  EXPECT_EQ(treeCnt[1], 20);
  EXPECT_EQ(ListLength(), 20);
  UnMakeMove(root[8]);
  EXPECT_EQ(support::CurrentList(), root);
}

TEST_F(LegalTest, ListIsBuiltBehindRootMovesSetAside) {
  treeCnt[0] = 3;
  tree[0] = tree[1] = tree[2] = 77;
  EXPECT_EQ(ListedBy(LegalMoveList).substr(0, 9), "a2a3 a2a4");
  EXPECT_EQ(ListLength(), 20);
  EXPECT_EQ(treeCnt[1], 23);
  EXPECT_EQ(std::count(tree, tree + 3, 77u), 3);
}

TEST_F(LegalTest, ListChoosesTheDirectionsOfTheSideToMove) {
  set_dir(Black);
  ASSERT_TRUE(LegalMoveList());
  EXPECT_EQ(dir, dir_white);
  support::Play("e2e4");
  ASSERT_TRUE(LegalMoveList());
  EXPECT_EQ(dir, dir_black);
}

TEST_F(LegalTest, LookingLeavesTheRecordAsItWas) {
  support::Play("e2e4 e7e5 g1f3 b8c6");
  const GameRecord before = g;
  std::vector<std::uint32_t> counters(std::begin(repetition_set), std::end(repetition_set));
  ASSERT_TRUE(LegalMoveList());
  GameRecord expected = before;
  expected.undo[g.game_len].fifty_before = g.fifty;
  EXPECT_TRUE(support::SameBytes(g, expected));
  EXPECT_TRUE(std::equal(counters.begin(), counters.end(), std::begin(repetition_set)));
}

TEST_F(LegalTest, LookingAtTheRootKeepsTheMovesForRedo) {
  support::Play("e2e4 e7e5 g1f3");
  UndoGameMove();
  UndoGameMove();
  const std::vector<Move> kept(g.game_moves + g.game_len, g.game_moves + g.game_max);
  ASSERT_EQ(kept.size(), 2u);
  ASSERT_TRUE(LegalMoveList());
  EXPECT_TRUE(std::equal(kept.begin(), kept.end(), g.game_moves + g.game_len));
  EXPECT_EQ(g.game_max, 3);
}

// --- moves as text ---------------------------------------------------------------------------

struct TextRow {
  const char* position;
  const char* text;
  Move move;
};

constexpr Square kE2 = 52;
constexpr Square kE4 = 36;

TEST_F(LegalTest, MovesAreRecognisedByTheirSquares) {
  const char* castling = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq";
  const char* castling_of_black = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq";
  const char* start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq";
  const TextRow rows[] = {
      {start, "e2e4", MoveWord(Pawn, kE2, kE4)},
      {start, "g1f3", MoveWord(Knight, 62, 45)},
      {start, "e2e4extra", MoveWord(Pawn, kE2, kE4)},
      {start, "e2e4q", MoveWord(Pawn, kE2, kE4)},
      {start, "e2e4\r", MoveWord(Pawn, kE2, kE4)},
      {castling, "e1g1", kShortCastlingMove[White]},
      {castling, "e1c1", kLongCastlingMove[White]},
      {castling, "o-o", kShortCastlingMove[White]},
      {castling, "o-o-o", kLongCastlingMove[White]},
      {castling_of_black, "e8g8", kShortCastlingMove[Black]},
      {castling_of_black, "e8c8", kLongCastlingMove[Black]},
      {castling_of_black, "o-o", kShortCastlingMove[Black]},
      {castling_of_black, "o-o-o", kLongCastlingMove[Black]},
      // Castling text stands for two squares, whatever moves between them.
      {"k7/8/8/8/8/8/K7/4R3 w", "o-o", MoveWord(Rook, 60, 62)},
      {"k7/8/8/8/8/8/K7/4R3 w", "o-o-o", MoveWord(Rook, 60, 58)},
      {"4k3/8/8/3pP3/8/8/8/4K3 w - d6", "e5d6", MoveWord(NoPiece, 28, 19) | kEnPassantCapture},
  };
  for (const TextRow& row : rows) {
    support::SetUpPosition(row.position);
    Move move = 0;
    EXPECT_TRUE(StrToMove(row.text, move)) << row.position << ' ' << row.text;
    EXPECT_EQ(move, row.move) << row.position << ' ' << row.text;
  }
}

TEST_F(LegalTest, CoordinatesOfCastlingCastle) {
  support::SetUpPosition("r3k2r/8/8/8/8/8/8/R3K2R w KQkq");
  EXPECT_EQ(support::LegalMove("e1g1"), support::LegalMove("o-o"));
}

struct PromotionRow {
  const char* text;
  int piece;
};

TEST_F(LegalTest, FifthCharacterChoosesThePromotion) {
  const PromotionRow rows[] = {
      {"e7e8", Queen},   {"e7e8q", Queen},  {"e7e8n", Knight},  {"e7e8N", Knight},
      {"e7e8b", Bishop}, {"e7e8B", Bishop}, {"e7e8r", Rook},    {"e7e8R", Rook},
      {"e7e8Q", Queen},  {"e7e8x", Queen},  {"e7e8k", Queen},   {"e7e8p", Queen},
      {"e7e8=n", Queen}, {"e7e8 n", Queen}, {"e7e8nq", Knight}, {"e7e8\x80", Queen},
      {"e7e8a", Queen},  {"e7e8s", Queen},
  };
  support::SetUpPosition("k7/4P3/8/8/8/8/8/K7 w");
  const Move plain = MoveWord(NoPiece, 12, 4) | kPromotion;
  for (const PromotionRow& row : rows) {
    Move move = 0;
    EXPECT_TRUE(StrToMove(row.text, move)) << row.text;
    EXPECT_EQ(move, plain | PieceBits(row.piece)) << row.text;
  }
}

TEST_F(LegalTest, PromotionsOfTextCanBeMade) {
  for (const char* text : {"e7d8n", "e7d8b", "e7d8r", "e7d8q"}) {
    support::SetUpPosition("k2r4/4P3/8/8/8/8/8/K7 w");
    const GameRecord before = g;
    const Move move = support::LegalMove(text);
    EXPECT_STREQ(MoveToStr(move), text);
    MakeMove(move);
    EXPECT_TRUE(RecordIsSound(g));
    UnMakeMove(move);
    EXPECT_TRUE(support::SameBytes(g, before));
  }
}

TEST_F(LegalTest, OtherTextIsRefusedAndNothingStored) {
  struct Row {
    const char* position;
    const char* text;
  };
  const char* start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq";
  const char* castling = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq";
  const Row rows[] = {
      {start, ""},
      {start, "e"},
      {start, "e2"},
      {start, "e2e"},
      {start, "e2-e4"},
      {start, "E2E4"},
      {start, " e2e4"},
      {start, "e4"},
      {start, "Nf3"},
      {start, "e2e5"},
      {start, "e7e5"},
      {start, "a8a8"},
      {start, "e3e4"},
      {start, "o-o"},
      {start, "o-o-o"},
      {castling, "O-O"},
      {castling, "O-O-O"},
      {castling, "0-0"},
      {castling, "0-0-0"},
      {castling, "o-o "},
      {castling, "o-o-"},
      {castling, "o-o-o-o"},
      {castling, "o-O"},
      {castling, "oo"},
      {"5rk1/8/8/8/8/8/8/4K2R w K", "o-o"},
      {"5rk1/8/8/8/8/8/8/4K2R w K", "e1g1"},
      {"4r2k/8/8/8/8/8/4B3/4K3 w", "e2d3"},
      {"k7/R7/8/8/8/8/8/K7 w", "a1b1"},
  };
  for (const Row& row : rows) {
    support::SetUpPosition(row.position);
    const GameRecord before = g;
    Move move = 77;
    EXPECT_FALSE(StrToMove(row.text, move)) << row.position << ' ' << row.text;
    EXPECT_EQ(move, 77u) << row.text;
    EXPECT_TRUE(support::SameBytes(g, before)) << row.text;
  }
}

TEST_F(LegalTest, OnlyTextOfAMoveTouchesTheList) {
  for (const char* text : {"quit", "e2", "help", "e2x4", "O-O", "o-o "}) {
    treeCnt[1] = 0;
    Move move = 0;
    EXPECT_FALSE(StrToMove(text, move));
    EXPECT_EQ(ListLength(), 0) << text;
  }
  for (const char* text : {"e7e5", "o-o", "o-o-o", "e2e4"}) {
    treeCnt[1] = 0;
    Move move = 0;
    StrToMove(text, move);
    EXPECT_EQ(ListLength(), 20) << text;
  }
}

TEST_F(LegalTest, RefusedTextKeepsTheMovesForRedo) {
  support::Play("e2e4 e7e5");
  UndoGameMove();
  const Move kept = g.game_moves[1];
  Move move = 0;
  EXPECT_FALSE(StrToMove("e7e4", move));
  EXPECT_EQ(g.game_moves[1], kept);
  RedoGameMove();
  EXPECT_EQ(LastMove(), kept);
  EXPECT_EQ(g.game_len, 2);
}

}  // namespace
}  // namespace tarvyle
