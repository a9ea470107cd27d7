#include "eval/attackmap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "position/directions.h"
#include "position/text.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_attacks.h"

namespace tarvyle {
namespace {

constexpr std::uint32_t kPawnBit = piece_cntrl[Pawn];
constexpr std::uint32_t kKnightBit = piece_cntrl[Knight];
constexpr std::uint32_t kBishopBit = piece_cntrl[Bishop];
constexpr std::uint32_t kRookBit = piece_cntrl[Rook];
constexpr std::uint32_t kQueenBit = piece_cntrl[Queen];
constexpr std::uint32_t kKingBit = piece_cntrl[King];

using support::PlainAttackWord;
using support::SetUpRoot;
using support::VisitRandomPositions;

struct Marked {
  const char* square;
  std::uint32_t word;
};

struct MapRow {
  const char* meaning;
  const char* fen;
  int colour;
  std::vector<Marked> marked;
};

TEST(AttackMap, MarksTheseSquaresWithCountAndTypes) {
  const MapRow rows[] = {
      {"a pawn on the a-file marks one square",
       "7k/8/8/8/8/8/P7/7K w",
       White,
       {{"b3", kPawnBit | 1}, {"a3", 0}, {"h3", 0}}},
      {"a pawn on the h-file marks one square",
       "k7/7p/8/8/8/8/8/K7 w",
       Black,
       {{"g6", kPawnBit | 1}, {"h6", 0}, {"a6", 0}}},
      {"two pawns on one square",
       "7k/8/8/8/8/8/1P1P4/7K w",
       White,
       {{"c3", kPawnBit | 2}, {"a3", kPawnBit | 1}, {"e3", kPawnBit | 1}}},
      {"a pawn on its promotion row marks nothing", "P6k/8/8/8/8/8/8/7K w", White, {{"b8", 0}}},
      {"a pawn on its own first row marks like any other",
       "7k/8/8/8/8/8/8/P6K w",
       White,
       {{"b2", kPawnBit | 1}}},
      {"a king marks its neighbours with count 1",
       "7k/8/8/8/8/8/8/K7 w",
       White,
       {{"a2", kKingBit | 1}, {"b2", kKingBit | 1}, {"b1", kKingBit | 1}, {"a1", 0}}},
      {"a knight in the corner",
       "N6k/8/8/8/8/8/8/7K w",
       White,
       {{"b6", kKnightBit | 1}, {"c7", kKnightBit | 1}, {"a8", 0}}},
      {"a ray ends on the first piece, of either colour",
       "7k/8/8/8/p7/8/8/R1N4K w",
       White,
       {{"a3", kRookBit | 1},
        {"a4", kRookBit | 1},
        {"a5", 0},
        {"b1", kRookBit | 1},
        {"c1", kRookBit | 1},
        {"d1", 0}}},
      {"rooks on a1 and a3: each attacks a2, and the back one looks through the front one",
       "7k/8/8/8/8/R7/8/R6K w",
       White,
       {{"a2", kRookBit | 2},
        {"a3", kRookBit | 1},
        {"a1", kRookBit | 1},
        {"a4", kRookBit | 2},
        {"a8", kRookBit | 2}}},
      {"the x-ray ends on the next piece",
       "7k/8/p7/8/8/R7/8/R6K w",
       White,
       {{"a5", kRookBit | 2}, {"a6", kRookBit | 2}, {"a7", 0}}},
      {"a queen behind a bishop adds to the count alone",
       "7k/8/8/8/8/2B5/8/Q6K w",
       White,
       {{"d4", kBishopBit | 2}, {"h8", kBishopBit | 2}, {"c3", kQueenBit | 1}}},
      {"a bishop behind a queen on the diagonal",
       "7k/8/8/8/8/2Q5/8/B6K w",
       White,
       {{"d4", kQueenBit | 2}, {"c4", kQueenBit | 1}}},
      {"a bishop on a file lets no rook through",
       "7k/8/8/8/8/B7/8/R6K w",
       White,
       {{"a3", kRookBit | 1}, {"a4", 0}}},
      {"nor does a knight",
       "7k/8/8/8/4K3/8/8/P2RNR2 w",
       White,
       {{"a1", kRookBit | 1}, {"g1", kRookBit | 1}, {"h1", kRookBit | 1}}},
      {"nor a king",
       "7k/8/8/8/8/8/8/R3K3 w",
       White,
       {{"e1", kRookBit | 1}, {"f1", kKingBit | 1}, {"g1", 0}}},
      {"nor a pawn", "7k/8/8/8/8/P7/8/R6K w", White, {{"a3", kRookBit | 1}, {"a4", 0}}},
      {"an enemy slider lets nothing through",
       "7k/8/8/8/8/r7/8/R6K w",
       White,
       {{"a3", kRookBit | 1}, {"a4", 0}}},
      {"only one such step is taken",
       "7k/8/8/8/R7/R7/R7/7K w",
       White,
       {{"a5", kRookBit | 2}, {"a8", kRookBit | 2}, {"a4", kRookBit | 2}}},
  };
  for (const MapRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    SetUpRoot(row.fen);
    GenerateAttackes();
    for (const Marked& marked : row.marked) {
      EXPECT_EQ(p_attack[row.colour][StrToSq(marked.square)], marked.word) << marked.square;
    }
  }
}

TEST(AttackMap, APieceNeverMarksItsOwnSquare) {
  for (const char letter : std::string("PNBRQ")) {
    SetUpRoot(std::string("k7/8/8/3") + letter + "4/8/8/8/7K w");
    GenerateAttackes();
    EXPECT_EQ(p_attack[White][StrToSq("d5")], 0u) << letter;
  }
}

TEST(AttackMap, IsRebuiltFromScratch) {
  SetUpRoot("7k/8/8/8/8/8/8/QQQQQQQK w");
  GenerateAttackes();
  SetUpRoot("7k/8/8/8/8/8/8/7K w");
  GenerateAttackes();
  for (Square square = 0; square < kSquares; ++square) {
    EXPECT_EQ(p_attack[White][square], PlainAttackWord(White, square)) << chb[square];
  }
}

TEST(AttackMap, SixteenAttackersReadAsNoneThoughTheSquareIsAttacked) {
  // Six lines with two queens each, three knights and the king around d4.
  SetUpRoot("k7/8/1Q1Q1Q2/1NQQQN2/1QQ1QQ2/3QK3/2NQ4/8 w");
  GenerateAttackes();
  const std::uint32_t word = p_attack[White][StrToSq("d4")];
  EXPECT_EQ(word, 16u | kKnightBit | kQueenBit | kKingBit);
  EXPECT_EQ(AttackCount(word), 0);
}

TEST(AttackMap, EqualsALookOutwardsFromEverySquareInThousandsOfPositions) {
  VisitRandomPositions(41, 4000, [] {
    GenerateAttackes();
    for (const int colour : {White, Black}) {
      for (Square square = 0; square < kSquares; ++square) {
        ASSERT_EQ(p_attack[colour][square], PlainAttackWord(colour, square))
            << "colour " << colour << " on " << chb[square];
      }
    }
  });
}

TEST(AttackMap, DoesNotDependOnTheDirectionTable) {
  VisitRandomPositions(42, 200, [] {
    std::uint32_t words[2][kSquares];
    set_dir(White);
    GenerateAttackes();
    std::copy_n(&p_attack[0][0], 2 * kSquares, &words[0][0]);
    set_dir(Black);
    GenerateAttackes();
    EXPECT_TRUE(std::equal(&words[0][0], &words[0][0] + 2 * kSquares, &p_attack[0][0]));
  });
}

TEST(AttackBits, GoFromThePawnDownToTheKing) {
  for (int piece = Pawn; piece <= King; ++piece) {
    EXPECT_EQ(piece_cntrl[piece], 1u << (16 - piece)) << piece;
    EXPECT_EQ(comp_piece_cntrl[piece], piece == Bishop ? 1u << 14 : 1u << (16 - piece)) << piece;
  }
  EXPECT_EQ(piece_cntrl[NoPiece], 0u);
  EXPECT_EQ(comp_piece_cntrl[NoPiece], 0u);
}

TEST(AttackBits, APawnMakesTheLowHalfOfTheWordNegative) {
  EXPECT_LT(static_cast<std::int16_t>(kPawnBit | kKnightBit | 3), 0);
  EXPECT_GT(static_cast<std::int16_t>(kKnightBit | 3), 0);
}

TEST(GetLess, IsTheCheapestTypeOfEveryWord) {
  for (std::uint32_t word = 0; word < 0x10000; ++word) {
    std::uint32_t expected = 0;
    for (int piece = King; piece >= Pawn; --piece) {
      if ((word & piece_cntrl[piece]) != 0) expected = piece_cntrl[piece];
    }
    ASSERT_EQ(get_less(word), expected) << word;
    ASSERT_EQ(get_less(word | 0xFFFF0000), expected) << word;
  }
}

}  // namespace
}  // namespace tarvyle
