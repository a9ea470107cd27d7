#include "eval/pawns.h"

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <string>

#include "eval/attacksets.h"
#include "eval/side.h"
#include "position/text.h"
#include "position/types.h"
#include "tests/support/eval_support.h"

namespace tarvyle {
namespace {

using support::SetUpRoot;

int SumOf(int colour, SquareSet pawns) {
  const BoardAttacks attacks = AttacksOnBoard();
  const PawnSum sum = PawnTerms(SideOf(colour, attacks), pawns);
  return sum.losses + sum.gains;
}

// A position of White to move with the colours changed, White to move again.
std::string Mirrored(const std::string& fen) {
  std::istringstream in(fen);
  std::string rows[8];
  for (int i = 0; i < 8; ++i) std::getline(in, rows[i], i < 7 ? '/' : ' ');
  std::string result;
  for (int i = 7; i >= 0; --i) result += rows[i] + (i > 0 ? "/" : " w");
  for (char& letter : result) {
    if (std::isalpha(static_cast<unsigned char>(letter)) != 0) letter ^= 32;
  }
  result.back() = 'w';
  return result;
}

struct PawnRow {
  const char* meaning;
  const char* fen;    // White to move
  const char* pawns;  // those of White that are scored
  int expected;
};

// The terms, in this order: no enemy pawn on the file +1, front square without a pawn's support -1,
// enemy piece before it -2, doubled, isolated, passed.
const PawnRow kPawnRows[] = {
    {"nothing stops it", "8/P7/8/8/8/7k/8/K7 w", "a7", 1 - 1 - 8 + 12 + 64 + 512},
    {"and a pawn covers it", "8/P7/1P6/8/8/7k/8/K7 w", "a7", 1 - 1 + 12 + 64 + 4 + 512},
    {"and a pawn covers the promotion square", "8/PP6/8/8/8/7k/8/K7 w", "a7",
     1 + 12 + 64 + 4 + 512},
    {"the king is near enough", "1k6/P7/8/8/8/8/8/K7 w", "a7", 1 - 1 - 8 + 12 + 64},
    {"the king has as far to go", "3k4/8/8/P7/8/8/8/K7 w", "a5", 1 - 1 - 8 + 12 + 16},
    {"the king has one step more", "4k3/8/8/P7/8/8/8/K7 w", "a5", 1 - 1 - 8 + 12 + 16 + 128},
    {"neither the move nor the double step counts", "6k1/8/8/8/8/8/P7/K7 w", "a2",
     1 - 1 - 8 + 12 + 2},
    {"a knight ends the square rule", "8/P7/8/8/8/7k/8/K6n w", "a7", 1 - 1 - 8 + 12 + 64},
    {"a bishop does", "8/P7/8/8/8/7k/8/K6b w", "a7", 1 - 1 - 8 + 12 + 64},
    {"a queen does", "8/P7/8/8/8/7k/8/K6q w", "a7", 1 - 1 - 8 + 12 + 64},
    {"own pieces do not", "8/P7/8/8/8/7k/8/K1Q5 w", "a7", 1 - 1 - 8 + 12 + 64 + 512},
    {"nor does an enemy pawn", "8/P7/8/8/8/7k/7p/K7 w", "a7", 1 - 1 - 8 + 12 + 64 + 512},
    {"an own pawn before it: passed all the same, and doubled", "2k5/8/8/8/P7/P7/8/K7 w", "a3",
     1 - 1 - 2 - 8 + 12 + 4},
    {"an own piece before it is no block", "2k5/8/8/8/N7/P7/8/K7 w", "a3", 1 - 1 - 8 + 12 + 4},
    {"an enemy piece before it", "3k4/8/8/3n4/3P4/8/8/K7 w", "d4", 1 - 1 - 2 - 8 + 12 + 8},
    {"an enemy pawn before it", "3k4/8/8/3p4/3P4/8/8/K7 w", "d4", -1 - 2 - 8},
    {"its front square supported", "n2k4/8/8/8/3PP3/8/8/K7 w", "d4", 1 + 12 + 8 + 4},
    {"an enemy pawn attacks the next square", "3k4/8/4p3/8/3P4/8/8/K7 w", "d4", 1 - 1 - 8},
    {"an enemy pawn attacks the square after it", "3k4/4p3/8/8/3P4/8/8/K7 w", "d4", 1 - 1 - 8},
    {"an enemy pawn far ahead on its file", "3k4/3p4/8/8/3P4/8/8/K7 w", "d4", -1 - 8},
    {"an enemy pawn beside it is harmless", "3k4/8/8/8/3Pp3/8/8/K7 w", "d4", 1 - 1 - 8 + 12 + 8},
    {"so is one that attacks the pawn itself", "3k4/8/8/4p3/3P4/8/8/K7 w", "d4",
     1 - 1 - 8 + 12 + 8},
    {"on its last row it counts as passed", "P7/8/8/8/8/7k/8/K7 w", "a8", 1 - 1 - 8 + 12},
    {"on its first row", "8/8/8/8/8/7k/8/P6K w", "a1", 1 - 1 - 8 + 12},
    {"on its last row with a pawn behind", "Pk6/P7/8/8/8/8/8/K7 w", "a8 a7",
     2 * (1 - 1 - 2 - 8 + 12) + 64},
    {"two doubled pawns", "3k4/p7/8/8/8/P7/P7/K7 w", "a3 a2", 2 * (-1 - 2 - 8)},
    {"the third doubled and the third isolated pawn cost 8 and 14", "3k4/p7/8/8/P7/P7/P7/K7 w",
     "a4 a3 a2", 3 * -1 - (2 + 2 + 8) - (8 + 8 + 14)},
    {"the fourth costs 2 and 8 again", "3k4/p7/8/P7/P7/P7/P7/K7 w", "a5 a4 a3 a2",
     4 * -1 - (2 + 2 + 8 + 2) - (8 + 8 + 14 + 8)},
    {"three isolated pawns", "3k4/p1p1p3/8/8/8/8/P1P1P3/K7 w", "a2 c2 e2", 3 * -1 - (8 + 8 + 14)},
    {"a neighbour on either side ends isolation", "3k4/pppp4/8/8/8/1PPP4/8/K7 w", "b3 c3 d3", 0},
    {"a neighbour far behind does too", "3k4/p7/8/8/P7/8/8/KP6 w", "a4", -1},
    {"the file beyond the edge is nobody's", "3k4/p6p/8/8/8/8/P6P/K7 w", "a2 h2", 2 * (-1 - 8)},
    {"a rook behind it in the far half", "n6k/8/8/P7/8/8/8/R6K w", "a5", 1 - 1 - 8 + 12 + 16 + 4},
    {"in the near half it earns nothing", "n6k/8/8/8/P7/8/8/R6K w", "a4", 1 - 1 - 8 + 12 + 8},
    {"a rook beside it earns nothing", "n6k/8/8/P6R/8/8/8/7K w", "a5", 1 - 1 - 8 + 12 + 16},
    {"two rooks, one on the pawn and one on the square behind", "n6k/8/8/P6R/7R/8/8/7K w", "a5",
     1 - 1 - 8 + 12 + 16 + 4},
    {"a rook's x-ray through a queen shows no rook", "n6k/8/8/P7/8/8/Q7/R6K w", "a5",
     1 - 1 - 8 + 12 + 16},
};

// The pawns of a row, or Black's on the same squares as seen from the other side.
SquareSet PawnsOf(const PawnRow& row, int colour) {
  SquareSet pawns = 0;
  std::istringstream names(row.pawns);
  for (std::string name; names >> name;) pawns |= SetOf(StrToSq(name) ^ (colour == White ? 0 : 56));
  return pawns;
}

TEST(PawnTerms, AddUpForBothColours) {
  for (const PawnRow& row : kPawnRows) {
    SCOPED_TRACE(row.meaning);
    SetUpRoot(row.fen);
    EXPECT_EQ(SumOf(White, PawnsOf(row, White)), row.expected);
    SetUpRoot(Mirrored(row.fen));
    EXPECT_EQ(SumOf(Black, PawnsOf(row, Black)), row.expected);
  }
}

TEST(PawnTerms, OfSomePawnsCountTheThirdAmongThese) {
  SetUpRoot("3k4/p7/8/8/P7/P7/P7/K7 w");
  const SquareSet two = SetOf(StrToSq("a4")) | SetOf(StrToSq("a3"));
  EXPECT_EQ(SumOf(White, two), 2 * (-1 - 2 - 8));
}

int WholeOf(int colour) {
  const BoardAttacks attacks = AttacksOnBoard();
  return SideTerms(SideOf(colour, attacks));
}

struct SideRow {
  const char* meaning;
  const char* fen;
  int expected;  // for White
};

const SideRow kSideRows[] = {
    {"all pawns at home", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w", 0},
    {"no pawn: 8, 16 and 3", "k7/8/8/8/8/8/8/K7 w", -27},
    {"no pawn, but more pieces while the other has pawns", "k7/p7/8/8/8/8/8/KN6 w", -27 + 2},
    {"more pieces, no pawn on the board", "k7/8/8/8/8/8/8/KN6 w", -27},
    {"as many pieces of other kinds", "kn6/8/8/8/8/8/PPPPPPPP/KQ6 w", 0},
    {"fewer pieces", "knn5/8/8/8/8/8/PPPPPPPP/KQ6 w", 0},
    {"more pieces", "kqn5/8/8/8/8/8/PPPPPPPP/KBNR4 w", 2},
    {"no d-pawn", "k7/8/8/8/8/8/PPP1PPPP/K7 w", -1 - 1},
    {"no e-pawn", "k7/8/8/8/8/8/PPPP1PPP/K7 w", -1 - 1},
    {"neither", "k7/8/8/8/8/8/PPP2PPP/K7 w", -2 - 3},
    {"one pawn, in the centre", "k7/8/8/8/4P3/8/8/K7 w", -7 - 1},
};

TEST(SideTerms, AddUpForBothColours) {
  for (const SideRow& row : kSideRows) {
    SCOPED_TRACE(row.meaning);
    SetUpRoot(row.fen);
    EXPECT_EQ(WholeOf(White), row.expected);
    SetUpRoot(Mirrored(row.fen));
    EXPECT_EQ(WholeOf(Black), row.expected);
  }
}

}  // namespace
}  // namespace tarvyle
