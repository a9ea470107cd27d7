#include "position/types.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "position/directions.h"

namespace tarvyle {
namespace {

TEST(Types, SquaresRunRowByRowFromA8) {
  EXPECT_EQ(A8, 0);
  EXPECT_EQ(E8, 4);
  EXPECT_EQ(H8, 7);
  EXPECT_EQ(A1, 56);
  EXPECT_EQ(E1, 60);
  EXPECT_EQ(H1, 63);
  for (Square square = 0; square < kSquares; ++square) {
    EXPECT_EQ(RowOf(square), square / 8);
    EXPECT_EQ(FileOf(square), square % 8);
  }
}

TEST(Types, OnBoardHoldsForTheSixtyFourSquares) {
  for (int square = -80; square < 160; ++square) {
    EXPECT_EQ(OnBoard(square), square >= 0 && square <= 63) << square;
  }
}

TEST(Types, WideFormIsSixteenTimesTheRowAndTheFile) {
  for (Square square = 0; square < kSquares; ++square) {
    EXPECT_EQ(ToWide(square), RowOf(square) * 16 + FileOf(square));
    EXPECT_EQ(FromWide(ToWide(square)), square);
    EXPECT_FALSE(OffBoard(ToWide(square)));
  }
}

TEST(Types, WideFormShowsEveryStepThatLeavesTheBoard) {
  constexpr int kRowSteps[] = {-1, 0, 1, 0, -1, -1, 1, 1, -2, 2, -2, 2, -1, 1, -1, 1};
  constexpr int kFileSteps[] = {0, -1, 0, 1, -1, 1, 1, -1, -1, 1, 1, -1, -2, 2, 2, -2};
  for (Square square = 0; square < kSquares; ++square) {
    for (int d = 0; d < 16; ++d) {
      const int row = RowOf(square) + kRowSteps[d];
      const int file = FileOf(square) + kFileSteps[d];
      const bool on_board = row >= 0 && row < 8 && file >= 0 && file < 8;
      const int wide = ToWide(square) + dir_white[d];
      ASSERT_EQ(OffBoard(wide), !on_board) << square << " direction " << d;
      if (on_board) {
        EXPECT_EQ(FromWide(wide), row * 8 + file);
      }
    }
  }
}

TEST(Types, ColoursAreNumbered) {
  EXPECT_EQ(White, 0);
  EXPECT_EQ(Black, 1);
  EXPECT_EQ(NoColour, 2);
}

TEST(Types, PiecesHaveCodeValueAndLetters) {
  struct Row {
    int piece;
    int code;
    int material;
    char white;
    char black;
    bool slides;
  };
  const Row rows[] = {
      {NoPiece, 0, 0, ' ', ' ', false},    {Pawn, 1, 1000, 'P', 'p', false},
      {Knight, 2, 3000, 'N', 'n', false},  {Bishop, 3, 3000, 'B', 'b', true},
      {Rook, 4, 5000, 'R', 'r', true},     {Queen, 5, 10000, 'Q', 'q', true},
      {King, 6, 1000000, 'K', 'k', false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(row.piece, row.code);
    EXPECT_EQ(value[row.code], row.material) << row.code;
    EXPECT_EQ(kPieceLetters[White][row.code], row.white);
    EXPECT_EQ(kPieceLetters[Black][row.code], row.black);
    EXPECT_EQ(IsSlider(row.code), row.slides) << row.code;
  }
}

TEST(Types, PawnsOfBothColoursHaveTheirDirection) {
  EXPECT_EQ(dP[White], -8);
  EXPECT_EQ(dP[Black], 8);
  EXPECT_EQ(prom_row[White], 0);
  EXPECT_EQ(prom_row[Black], 7);
  EXPECT_EQ(first_pawn_row[White], 6);
  EXPECT_EQ(first_pawn_row[Black], 1);
}

TEST(Types, KingsAndRooksHaveTheirHomes) {
  EXPECT_EQ(kKingHome[White], E1);
  EXPECT_EQ(kKingHome[Black], E8);
  EXPECT_EQ(kLongRookHome[White], A1);
  EXPECT_EQ(kLongRookHome[Black], A8);
  EXPECT_EQ(kShortRookHome[White], H1);
  EXPECT_EQ(kShortRookHome[Black], H8);
}

TEST(Types, RowsOfPawnsAreCountedFromEachSide) {
  EXPECT_EQ(SeventhRow(White), RowOf(8));   // a7
  EXPECT_EQ(SeventhRow(Black), RowOf(48));  // a2
  EXPECT_EQ(PassedRow(White), RowOf(40));   // a3
  EXPECT_EQ(PassedRow(Black), RowOf(16));   // a6
}

TEST(Types, EachColourHasItsHalfOfTheSlots) {
  EXPECT_EQ(kPieceSlots, 32);
  for (int slot = -40; slot < 80; ++slot) {
    EXPECT_EQ(SlotOfColour(slot, White), slot >= 0 && slot <= 15) << slot;
    EXPECT_EQ(SlotOfColour(slot, Black), slot >= 16 && slot <= 31) << slot;
  }
  EXPECT_EQ(FirstSlot(White), 0);
  EXPECT_EQ(LastSlot(White), 15);
  EXPECT_EQ(FirstSlot(Black), 16);
  EXPECT_EQ(LastSlot(Black), 31);
}

TEST(Types, CastlingRightsHaveABitForEachColourAndSide) {
  EXPECT_EQ(LongRight(White), 1u);
  EXPECT_EQ(ShortRight(White), 2u);
  EXPECT_EQ(LongRight(Black), 4u);
  EXPECT_EQ(ShortRight(Black), 8u);
}

TEST(Types, MoveWordHasItsBits) {
  EXPECT_EQ(kTargetMask, 0x3Fu);
  EXPECT_EQ(kPieceMask, 0x7000u);
  EXPECT_EQ(kShortCastling, 0x08000000u);
  EXPECT_EQ(kLongCastling, 0x10000000u);
  EXPECT_EQ(kCastling, 0x18000000u);
  EXPECT_EQ(kEnPassant, 0x20000000u);
  EXPECT_EQ(kCapture, 0x40000000u);
  EXPECT_EQ(kPromotion, 0x80000000u);
  EXPECT_EQ(kNotQuiet, 0xD8000000u);
  EXPECT_EQ(kEnPassantCapture, 0x60001000u);
}

TEST(Types, CastlingWordsAreTheKingsMoves) {
  EXPECT_EQ(kShortCastlingMove[White], 0x08006F3Eu);
  EXPECT_EQ(kLongCastlingMove[White], 0x10006F3Au);
  EXPECT_EQ(kShortCastlingMove[Black], 0x08006106u);
  EXPECT_EQ(kLongCastlingMove[Black], 0x10006102u);
  for (const int colour : {White, Black}) {
    const Square king = kKingHome[colour];
    EXPECT_EQ(kShortCastlingMove[colour], MoveWord(King, king, king + 2) | kShortCastling);
    EXPECT_EQ(kLongCastlingMove[colour], MoveWord(King, king, king - 2) | kLongCastling);
  }
}

TEST(Types, MoveWordGivesBackItsParts) {
  for (int piece = NoPiece; piece <= King; ++piece) {
    for (const Square origin : {A8, H8, E1, H1}) {
      for (const Square target : {A8, H8, E1, H1}) {
        const Move move = MoveWord(piece, origin, target);
        EXPECT_EQ(move & 0x07FF8000u, 0u);
        for (const Move word : {move, move | kNotQuiet | kEnPassant}) {
          EXPECT_EQ(PieceOf(word), piece);
          EXPECT_EQ(OriginOf(word), origin);
          EXPECT_EQ(TargetOf(word), target);
        }
      }
    }
  }
}

TEST(Types, MoverOfAPromotionIsAPawn) {
  const Move move = MoveWord(Queen, 8, 0);
  EXPECT_EQ(MoverOf(move), Queen);
  EXPECT_EQ(MoverOf(move | kCapture), Queen);
  EXPECT_EQ(MoverOf(move | kPromotion), Pawn);
}

}  // namespace
}  // namespace tarvyle
