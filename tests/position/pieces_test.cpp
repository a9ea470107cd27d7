#include "position/pieces.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "position/record.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::Aborted;
using support::kSilence;

class PiecesTest : public support::PositionTest {};
using PiecesDeathTest = PiecesTest;

TEST_F(PiecesTest, EmptyRecordHasNoPieceAndWhiteToMove) {
  std::memset(&g, 0x55, sizeof g);
  ClearRecord();
  EXPECT_TRUE(support::SameBytes(g, support::EmptyRecord()));
}

struct PlacedRow {
  int piece;
  int colour;
  const char* square;
  int slot;
};

constexpr PlacedRow kPlacedRows[] = {
    {Pawn, White, "e4", 0},    {Pawn, Black, "h7", 16}, {Knight, White, "a8", 15},
    {Bishop, Black, "h1", 31}, {Rook, White, "c6", 3},  {Queen, Black, "d5", 20},
    {King, White, "e1", 7},    {King, Black, "e8", 17},
};

TEST_F(PiecesTest, InsertedPieceStandsInEveryFieldAboutIt) {
  for (const PlacedRow& row : kPlacedRows) {
    SCOPED_TRACE(row.square);
    ClearRecord();
    GameRecord expected = g;
    const Square square = StrToSq(row.square);
    expected.board[square] = row.piece;
    expected.color[square] = row.colour;
    expected.list_idx[square] = row.slot;
    expected.list_sq[row.slot] = square;
    expected.material[row.colour] = value[row.piece];
    expected.piece_cnt[row.colour][row.piece] = 1;
    if (row.piece == Pawn) {
      expected.pawn_file_cnt[row.colour][square % 8] = 1;
      expected.pawn_row_cnt[row.colour][square / 8] = 1;
    }
    if (row.piece == King) expected.king_sq[row.colour] = square;
    const std::uint64_t key = hashRnd[(row.colour * 8 + row.piece) * 64 + square];
    expected.key = key;
    expected.color_key[row.colour] = key;
    InsertPiece(row.piece, row.colour, square, row.slot);
    EXPECT_TRUE(support::SameBytes(g, expected));
  }
}

TEST_F(PiecesTest, RemovingAPieceUndoesItsInsertion) {
  for (const PlacedRow& row : kPlacedRows) {
    SCOPED_TRACE(row.square);
    ClearRecord();
    const Square square = StrToSq(row.square);
    if (row.piece == King) g.king_sq[row.colour] = square;  // stays where the king was last
    const GameRecord before = g;
    InsertPiece(row.piece, row.colour, square, row.slot);
    RemovePiece(row.piece, row.colour, square, row.slot);
    EXPECT_TRUE(support::SameBytes(g, before));
  }
}

TEST_F(PiecesTest, PiecesAddUpInCountersAndKeys) {
  ClearRecord();
  for (const PlacedRow& row : kPlacedRows) {
    InsertPiece(row.piece, row.colour, StrToSq(row.square), row.slot);
  }
  EXPECT_EQ(g.material[White], 1000 + 3000 + 5000 + 1000000);
  EXPECT_EQ(g.material[Black], 1000 + 3000 + 10000 + 1000000);
  EXPECT_EQ(g.key, g.color_key[White] ^ g.color_key[Black]);
  RemovePiece(Queen, Black, StrToSq("d5"), 20);
  EXPECT_EQ(g.material[Black], 1000 + 3000 + 1000000);
  EXPECT_EQ(g.piece_cnt[Black][Queen], 0);
}

TEST_F(PiecesDeathTest, InsertingOnAnOccupiedSquareAborts) {
  support::SetUpPosition("k7/K7");
  EXPECT_EXIT(InsertPiece(Pawn, White, StrToSq("a7"), 5), Aborted(), kSilence);
  EXPECT_EXIT(InsertPiece(Pawn, White, StrToSq("a8"), 5), Aborted(), kSilence);
}

TEST_F(PiecesDeathTest, InsertingIntoASlotInUseAborts) {
  support::SetUpPosition("k7/K7");
  EXPECT_EXIT(InsertPiece(Pawn, White, StrToSq("e4"), 0), Aborted(), kSilence);
  EXPECT_EXIT(InsertPiece(Pawn, Black, StrToSq("e4"), 16), Aborted(), kSilence);
}

TEST_F(PiecesDeathTest, InsertingOnASquareWithASlotAborts) {
  g.list_idx[StrToSq("e4")] = 3;
  g.list_sq[3] = -1;
  EXPECT_EXIT(InsertPiece(Pawn, White, StrToSq("e4"), 3), Aborted(), kSilence);
}

TEST_F(PiecesDeathTest, InsertingOnAPieceWithoutASlotAborts) {
  g.list_idx[StrToSq("e2")] = -1;
  g.list_sq[3] = -1;
  EXPECT_EXIT(InsertPiece(Pawn, White, StrToSq("e2"), 3), Aborted(), kSilence);
}

TEST_F(PiecesDeathTest, RemovingAPieceThatTheBoardDoesNotHoldAborts) {
  const Square e2 = StrToSq("e2");
  const int slot = g.list_idx[e2];
  EXPECT_EXIT(RemovePiece(Knight, White, e2, slot), Aborted(), kSilence);
  EXPECT_EXIT(RemovePiece(Pawn, Black, e2, slot), Aborted(), kSilence);
  EXPECT_EXIT(RemovePiece(Pawn, White, e2, slot + 1), Aborted(), kSilence);
  EXPECT_EXIT(RemovePiece(Pawn, White, StrToSq("e4"), slot), Aborted(), kSilence);
}

TEST_F(PiecesDeathTest, RemovingAPieceWhoseSlotDoesNotPointBackAborts) {
  const Square e2 = StrToSq("e2");
  const int slot = g.list_idx[e2];
  g.list_sq[slot] = StrToSq("e3");
  EXPECT_EXIT(RemovePiece(Pawn, White, e2, slot), Aborted(), kSilence);
  g.list_sq[slot + 1] = e2;
  EXPECT_EXIT(RemovePiece(Pawn, White, e2, slot + 1), Aborted(), kSilence);
}

TEST_F(PiecesTest, CapturedPieceLeavesItsSlotFreeForItsReturn) {
  support::SetUpPosition("4k3/8/8/3p4/4P3/8/8/4K3 w - -");
  const int slot = g.list_idx[StrToSq("d5")];
  support::Play("e4d5");
  EXPECT_EQ(g.list_sq[slot], -1);
  UndoGameMove();
  EXPECT_EQ(g.list_sq[slot], StrToSq("d5"));
  EXPECT_EQ(g.list_idx[StrToSq("d5")], slot);
}

TEST_F(PiecesTest, PromotedPawnKeepsItsSlot) {
  support::SetUpPosition("4k3/P7/8/8/8/8/8/4K3 w - -");
  const int slot = g.list_idx[StrToSq("a7")];
  support::Play("a7a8q");
  EXPECT_EQ(g.list_idx[StrToSq("a8")], slot);
  EXPECT_EQ(g.list_sq[slot], StrToSq("a8"));
}

TEST_F(PiecesTest, AnyRecordCanBeMadeTheGame) {
  const GameRecord start = g;
  support::SetUpPosition("k7/K7");
  EXPECT_FALSE(support::SameBytes(g, start));
  SetRecord(start);
  EXPECT_TRUE(support::SameBytes(g, start));
}

}  // namespace
}  // namespace tarvyle
