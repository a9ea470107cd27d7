// Moves that disagree with the board, made for good and on trial.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "position/makemove.h"
#include "position/pieces.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::Aborted;
using support::At;
using support::kSilence;
using support::LegalMove;

class BrokenMoveTest : public support::PositionTest {};
using BrokenMoveDeathTest = BrokenMoveTest;

struct BrokenRow {
  const char* what;
  const char* text;
  Move move;
  void (*damage)();
};

void Nothing() {}

std::vector<BrokenRow> BrokenMoves() {
  return {
      {"no piece on the origin", "4k3/8/8/8/8/8/8/4K3 w", MoveWord(Pawn, At("e4"), At("e5")),
       Nothing},
      {"empty word but for the target", "4k3/8/8/8/8/8/8/4K3 w", MoveWord(NoPiece, 0, At("e5")),
       Nothing},
      {"other piece on the origin", "4k3/8/8/8/4P3/8/8/4K3 w", MoveWord(Knight, At("e4"), At("f6")),
       Nothing},
      {"enemy piece on the origin", "4k3/8/8/8/4p3/8/8/4K3 w", MoveWord(Pawn, At("e4"), At("e5")),
       Nothing},
      {"rook that promotes", "4k3/R7/8/8/8/8/8/4K3 w",
       MoveWord(Queen, At("a7"), At("a8")) | kPromotion, Nothing},
      {"slot that does not point back", "4k3/8/8/8/4P3/8/8/4K3 w",
       MoveWord(Pawn, At("e4"), At("e5")), [] { g.list_sq[g.list_idx[At("e4")]] = At("e3"); }},
      {"occupied target", "4k3/8/8/4p3/4P3/8/8/4K3 w", MoveWord(Pawn, At("e4"), At("e5")), Nothing},
      {"own piece on the target", "4k3/8/8/8/8/8/8/4KR2 w", MoveWord(Rook, At("f1"), At("e1")),
       Nothing},
      {"slot on the empty target", "4k3/8/8/8/4P3/8/8/4K3 w", MoveWord(Pawn, At("e4"), At("e5")),
       [] { g.list_idx[At("e5")] = 7; }},
      {"piece without a slot on the target", "4k3/8/8/4p3/4P3/8/8/4K3 w",
       MoveWord(Pawn, At("e4"), At("e5")), [] { g.list_idx[At("e5")] = -1; }},
      {"capture of nothing", "4k3/8/8/8/4P3/8/8/4K3 w",
       MoveWord(Pawn, At("e4"), At("d5")) | kCapture, Nothing},
      {"capture of an own piece", "4k3/8/8/3N4/4P3/8/8/4K3 w",
       MoveWord(Pawn, At("e4"), At("d5")) | kCapture, Nothing},
      {"captured slot that does not point back", "4k3/8/8/3n4/4P3/8/8/4K3 w",
       MoveWord(Pawn, At("e4"), At("d5")) | kCapture,
       [] { g.list_sq[g.list_idx[At("d5")]] = At("d6"); }},
      {"en passant without the pawn", "4k3/8/8/4P3/8/8/8/4K3 w",
       MoveWord(NoPiece, At("e5"), At("d6")) | kEnPassantCapture, Nothing},
      {"en passant onto a piece", "4k3/8/3n4/3pP3/8/8/8/4K3 w",
       MoveWord(NoPiece, At("e5"), At("d6")) | kEnPassantCapture, Nothing},
      {"short castling without rook", "4k3/8/8/8/8/8/8/4K3 w", kShortCastlingMove[White], Nothing},
      {"long castling without rook", "4k3/8/8/8/8/8/8/4K3 w", kLongCastlingMove[White], Nothing},
      {"castling with an enemy rook", "k7/8/8/8/8/8/8/4K2r w", kShortCastlingMove[White], Nothing},
      {"castling with another piece", "k7/8/8/8/8/8/8/4K2B w", kShortCastlingMove[White], Nothing},
      {"castling rook jumps onto a piece", "k7/8/8/8/8/8/8/4KB1R w", kShortCastlingMove[White],
       Nothing},
      {"slot on the rook's target", "k7/8/8/8/8/8/8/4K2R w", kShortCastlingMove[White],
       [] { g.list_idx[At("f1")] = 9; }},
      {"rook's slot does not point back", "k7/8/8/8/8/8/8/4K2R w", kShortCastlingMove[White],
       [] { g.list_sq[g.list_idx[At("h1")]] = At("h2"); }},
      {"castling onto a piece", "k7/8/8/8/8/8/8/4K1NR w", kShortCastlingMove[White], Nothing},
      {"rook of the castling beyond the board", "k7/8/8/8/8/8/8/6K1 w",
       MoveWord(King, At("g1"), At("h1")) | kShortCastling, Nothing},
      {"rook of the castling before the board", "2k5/8/8/8/8/8/8/6K1 b",
       MoveWord(King, At("c8"), At("b8")) | kLongCastling, Nothing},
  };
}

TEST_F(BrokenMoveDeathTest, MoveThatDisagreesWithTheBoardAborts) {
  for (const BrokenRow& row : BrokenMoves()) {
    SCOPED_TRACE(row.what);
    support::SetUpPosition(row.text);
    row.damage();
    EXPECT_EXIT(MakeMove(row.move), Aborted(), kSilence);
  }
}

TEST_F(BrokenMoveTest, MoveThatDisagreesWithTheBoardIsRefusedOnTrial) {
  for (const BrokenRow& row : BrokenMoves()) {
    support::SetUpPosition(row.text);
    if (row.damage != Nothing) continue;  // trials start from sound records
    EXPECT_FALSE(TryMakeMove(row.move)) << row.what;
    ply = 0;
  }
}

std::vector<BrokenRow> BrokenTakeBacks() {
  return {
      {"mover gone", "4k3/8/8/8/4P3/8/8/4K3 w", MoveWord(Pawn, At("e4"), At("e5")),
       [] { RemovePiece(Pawn, White, At("e5"), 0); }},
      {"other piece on the target", "4k3/8/8/8/4P3/8/8/4K3 w", MoveWord(Pawn, At("e4"), At("e5")),
       [] {
         RemovePiece(Pawn, White, At("e5"), 0);
         InsertPiece(Knight, White, At("e5"), 0);
       }},
      {"mover's slot does not point back", "4k3/8/8/8/4P3/8/8/4K3 w",
       MoveWord(Pawn, At("e4"), At("e5")), [] { g.list_sq[0] = At("e6"); }},
      {"origin occupied", "4k3/8/8/8/4P3/8/8/4K3 w", MoveWord(Pawn, At("e4"), At("e5")),
       [] { InsertPiece(Pawn, White, At("e4"), 5); }},
      {"slot on the origin", "4k3/8/8/8/4P3/8/8/4K3 w", MoveWord(Pawn, At("e4"), At("e5")),
       [] { g.list_idx[At("e4")] = 5; }},
      {"captured slot in use", "4k3/8/8/3n4/4P3/8/8/4K3 w",
       MoveWord(Pawn, At("e4"), At("d5")) | kCapture,
       [] { InsertPiece(Knight, Black, At("h8"), g.undo[0].cap_idx); }},
      {"captured square occupied", "4k3/8/8/3pP3/8/8/8/4K3 w - d6",
       MoveWord(NoPiece, At("e5"), At("d6")) | kEnPassantCapture,
       [] { InsertPiece(Knight, White, At("d5"), 9); }},
      {"castling rook gone", "k7/8/8/8/8/8/8/4K2R w", kShortCastlingMove[White],
       [] { RemovePiece(Rook, White, At("f1"), g.list_idx[At("f1")]); }},
      {"rook's corner occupied", "k7/8/8/8/8/8/8/4K2R w", kShortCastlingMove[White],
       [] { InsertPiece(Knight, White, At("h1"), 9); }},
  };
}

TEST_F(BrokenMoveDeathTest, TakingBackAMoveThatDisagreesWithTheBoardAborts) {
  for (const BrokenRow& row : BrokenTakeBacks()) {
    SCOPED_TRACE(row.what);
    support::SetUpPosition(row.text);
    ply = 0;
    MakeMove(row.move);
    row.damage();
    EXPECT_EXIT(UnMakeMove(row.move), Aborted(), kSilence);
  }
}

TEST_F(BrokenMoveTest, TakingBackAMoveThatDisagreesWithTheBoardIsRefusedOnTrial) {
  for (const BrokenRow& row : BrokenTakeBacks()) {
    support::SetUpPosition(row.text);
    ply = 0;
    MakeMove(row.move);
    row.damage();
    EXPECT_FALSE(TryUnMakeMove(row.move)) << row.what;
    ply = 0;
  }
}

// --- on trial alone --------------------------------------------------------------------------

TEST_F(BrokenMoveTest, CapturedKingComesBackToItsSquare) {
  support::SetUpPosition("4k3/8/8/8/8/8/8/K3R3 w");
  GameRecord before = g;
  before.undo[0].fifty_before = g.fifty;
  const Move move = MoveWord(Rook, At("e1"), At("e8")) | kCapture;
  ASSERT_TRUE(TryMakeMove(move));
  EXPECT_EQ(g.piece_cnt[Black][King], 0);
  EXPECT_EQ(g.material[Black], 0);
  g.king_sq[Black] = 0;
  ASSERT_TRUE(TryUnMakeMove(move));
  EXPECT_EQ(g.king_sq[Black], At("e8"));
  EXPECT_TRUE(support::SameBytes(g, before));
}

TEST_F(BrokenMoveTest, WordsWithImpossiblePiecesAreRefusedOnTrial) {
  support::SetUpPosition("4k3/P7/8/8/8/8/8/4K3 w");
  const Square from = At("a7");
  const Square to = At("a8");
  const Move words[] = {
      MoveWord(NoPiece, from, to),
      MoveWord(7, from, to),
      MoveWord(NoPiece, from, to) | kPromotion,
      MoveWord(King, from, to) | kPromotion,
      MoveWord(7, from, to) | kPromotion,
  };
  const GameRecord before = g;
  for (const Move word : words) {
    EXPECT_FALSE(TryMakeMove(word)) << word;
    EXPECT_TRUE(support::SameBytes(g, before)) << word;
  }
}

TEST_F(BrokenMoveTest, EnPassantBehindTheBoardIsRefusedOnTrial) {
  support::SetUpPosition("4k3/8/8/8/8/8/P7/4K3 w");
  EXPECT_FALSE(TryMakeMove(MoveWord(Pawn, At("a2"), At("a1")) | kEnPassantCapture));
}

struct UndoRow {
  const char* what;
  UndoRecord undo;
};

TEST_F(BrokenMoveTest, UndoRecordsWithIndexesOutsideTheirTablesAreRefusedOnTrial) {
  const int slot = 17;
  const UndoRow rows[] = {
      {"square 64", {64, Knight, slot, 0, 0}},
      {"square -1", {-1, Knight, slot, 0, 0}},
      {"square 1000000", {1000000, Knight, slot, 0, 0}},
      {"piece 0", {27, NoPiece, slot, 0, 0}},
      {"piece 7", {27, 7, slot, 0, 0}},
      {"piece -1", {27, -1, slot, 0, 0}},
      {"slot 32", {27, Knight, 32, 0, 0}},
      {"slot -1", {27, Knight, -1, 0, 0}},
      {"slot of the other side", {27, Knight, 9, 0, 0}},
      {"slot 2000000000", {27, Knight, 2000000000, 0, 0}},
  };
  for (const UndoRow& row : rows) {
    support::SetUpPosition("4k3/8/8/3n4/4P3/8/8/4K3 w");
    const Move move = LegalMove("e4d5");
    MakeMove(move);
    ASSERT_EQ(g.undo[0].cap_sq, 27);
    ASSERT_EQ(g.undo[0].cap_idx, slot);
    g.undo[0] = row.undo;
    EXPECT_FALSE(TryUnMakeMove(move)) << row.what;
    ply = 0;
  }
}

}  // namespace
}  // namespace tarvyle
