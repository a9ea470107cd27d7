#include "position/text.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <string>

namespace tarvyle {
namespace {

TEST(Text, SquareNamesStandInSquareOrder) {
  for (Square square = 0; square < kSquares; ++square) {
    const char name[] = {static_cast<char>('a' + FileOf(square)),
                         static_cast<char>('8' - RowOf(square)), '\0'};
    EXPECT_STREQ(chb[square], name);
  }
}

TEST(Text, EverySquareNameIsRead) {
  for (Square square = 0; square < kSquares; ++square) EXPECT_EQ(StrToSq(chb[square]), square);
}

TEST(Text, OnlyTheFirstTwoCharactersOfASquareAreLookedAt) {
  EXPECT_EQ(StrToSq("e4x"), StrToSq("e4"));
  EXPECT_EQ(StrToSq("e4e5"), StrToSq("e4"));
}

TEST(Text, TextThatNamesNoSquareIsRefused) {
  for (const char* text : {"", "e", "4", "e0", "e9", "i1", "`1", "E4", "4e", " e4", "--"}) {
    EXPECT_EQ(StrToSq(text), -1) << text;
  }
}

TEST(Text, MovesAreWrittenInCoordinates) {
  struct Row {
    Move move;
    const char* text;
  };
  const Row rows[] = {
      {0, "a8a8"},
      {MoveWord(Pawn, 52, 36), "e2e4"},
      {MoveWord(Queen, 63, 0) | kCapture, "h1a8"},
      {MoveWord(Pawn, 27, 20) | kEnPassantCapture, "d5e6"},
      {kShortCastlingMove[White], "e1g1"},
      {kLongCastlingMove[White], "e1c1"},
      {kShortCastlingMove[Black], "e8g8"},
      {kLongCastlingMove[Black], "e8c8"},
  };
  for (const Row& row : rows) EXPECT_STREQ(MoveToStr(row.move), row.text);
}

TEST(Text, KnightPromotionWithCaptureOnA8FromB7IsB7a8n) {
  EXPECT_STREQ(MoveToStr(MoveWord(Knight, 9, 0) | kPromotion | kCapture), "b7a8n");
}

TEST(Text, PromotionsEndInTheLetterOfTheNewPiece) {
  const char* letters[] = {"", "p", "n", "b", "r", "q", "k", ""};
  for (int piece = 0; piece <= 7; ++piece) {
    const Move move = MoveWord(piece, 8, 0);
    EXPECT_STREQ(PromotionSuffix(move), "") << piece;
    EXPECT_STREQ(PromotionSuffix(move | kPromotion), letters[piece]);
    EXPECT_EQ(MoveToStr(move | kPromotion), std::string("a7a8") + letters[piece]);
  }
}

TEST(Text, MoveIsWrittenIntoTheCallersBuffer) {
  char buffer[kMoveTextSize];
  EXPECT_EQ(MoveToStr(MoveWord(Pawn, 52, 36), buffer), buffer);
  EXPECT_STREQ(buffer, "e2e4");
}

TEST(Text, WithoutBufferTheNextMoveOverwritesTheText) {
  const char* first = MoveToStr(MoveWord(Pawn, 52, 36));
  EXPECT_STREQ(first, "e2e4");
  const char* second = MoveToStr(MoveWord(Pawn, 12, 28), nullptr);
  EXPECT_EQ(first, second);
  EXPECT_STREQ(second, "e7e5");
}

struct NumberRow {
  std::uint64_t number;
  const char* digits;
};

TEST(Text, NumbersAreWrittenInDecimalDigits) {
  const NumberRow rows[] = {
      {0, "0"},
      {1, "1"},
      {9, "9"},
      {10, "10"},
      {1200, "1200"},
      {4294967296, "4294967296"},
      {9223372036854775808u, "9223372036854775808"},
      {18446744073709551615u, "18446744073709551615"},
  };
  for (const NumberRow& row : rows) {
    char buffer[21];
    std::memset(buffer, '#', sizeof buffer);
    EXPECT_EQ(U64ToStr(buffer, row.number), buffer);
    EXPECT_STREQ(buffer, row.digits);
  }
}

}  // namespace
}  // namespace tarvyle
