#include "position/attack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class AttackTest : public support::PositionTest {};

// --- the tables ------------------------------------------------------------------------------

TEST_F(AttackTest, IndexOfTwoSquaresIsTheirWideDifference) {
  EXPECT_EQ(AttackIndex(A8, A8), 119);
  EXPECT_EQ(AttackIndex(A8, H1), 0);
  EXPECT_EQ(AttackIndex(H1, A8), 238);
  EXPECT_EQ(AttackIndex(A8, H8), 112);
}

// Whether a piece reaches the target on an empty board; pawns in all four diagonal directions.
bool ReachesOnEmptyBoard(int piece, Square from, Square to) {
  const int rows = std::abs(RowOf(from) - RowOf(to));
  const int files = std::abs(FileOf(from) - FileOf(to));
  if (from == to) return false;
  switch (piece) {
    case Pawn: return rows == 1 && files == 1;
    case Knight: return rows * files == 2;
    case Bishop: return rows == files;
    case Rook: return rows == 0 || files == 0;
    case Queen: return rows == files || rows == 0 || files == 0;
    case King: return rows <= 1 && files <= 1;
    default: return false;
  }
}

int Sign(int number) { return (number > 0) - (number < 0); }

TEST_F(AttackTest, TablesTellWhoReachesWhatAndFromWhere) {
  for (Square from = 0; from < kSquares; ++from) {
    for (Square to = 0; to < kSquares; ++to) {
      const int index = AttackIndex(from, to);
      for (int piece = 0; piece < 8; ++piece) {
        ASSERT_EQ((atk[index] >> piece & 1) != 0, ReachesOnEmptyBoard(piece, from, to))
            << chb[from] << chb[to] << " piece " << piece;
      }
      ASSERT_EQ(atk[index] >> 8, 0u);
      const int step = Sign(RowOf(from) - RowOf(to)) * 16 + Sign(FileOf(from) - FileOf(to));
      ASSERT_EQ(dir_atk[index], ReachesOnEmptyBoard(Queen, from, to) ? step : 0)
          << chb[from] << chb[to];
    }
  }
}

TEST_F(AttackTest, EntriesBehindTheLastIndexStayZero) {
  for (int index = 239; index < 256; ++index) {
    EXPECT_EQ(atk[index], 0u);
    EXPECT_EQ(dir_atk[index], 0);
  }
}

TEST_F(AttackTest, TablesDoNotDependOnTheDirectionsInUse) {
  std::uint32_t atk_before[256];
  int dir_atk_before[256];
  std::copy(std::begin(atk), std::end(atk), atk_before);
  std::copy(std::begin(dir_atk), std::end(dir_atk), dir_atk_before);
  for (const int colour : {Black, White}) {
    std::fill(std::begin(atk), std::end(atk), 0);
    std::fill(std::begin(dir_atk), std::end(dir_atk), 0);
    set_dir(colour);
    InitAtk();
    EXPECT_TRUE(std::equal(std::begin(atk), std::end(atk), atk_before));
    EXPECT_TRUE(std::equal(std::begin(dir_atk), std::end(dir_atk), dir_atk_before));
  }
}

// --- one piece -------------------------------------------------------------------------------

struct PieceRow {
  const char* board;
  int piece;
  int colour;
  const char* from;
  const char* attacked;      // squares, separated by nothing
  const char* not_attacked;  // likewise
};

void ExpectAttacks(const PieceRow& row) {
  SCOPED_TRACE(std::string(row.board) + " " + row.from);
  support::SetUpPosition(row.board);
  const auto attacks = [&](const std::string& to) {
    return Attack(row.piece, row.colour, StrToSq(row.from), StrToSq(to));
  };
  const std::string yes = row.attacked;
  const std::string no = row.not_attacked;
  for (std::size_t i = 0; i < yes.size(); i += 2) {
    EXPECT_TRUE(attacks(yes.substr(i, 2))) << yes.substr(i, 2);
  }
  for (std::size_t i = 0; i < no.size(); i += 2) {
    EXPECT_FALSE(attacks(no.substr(i, 2))) << no.substr(i, 2);
  }
}

TEST_F(AttackTest, WhitePawnAttacksUpTheBoard) {
  ExpectAttacks({"7k/8/8/8/4P3/8/8/7K", Pawn, White, "e4", "d5f5", "d3f3e5e3d4f4e4"});
}

TEST_F(AttackTest, BlackPawnAttacksDownTheBoard) {
  ExpectAttacks({"7k/8/8/4p3/8/8/8/7K", Pawn, Black, "e5", "d4f4", "d6f6e4e6d5f5e5"});
}

TEST_F(AttackTest, PawnOnTheEdgeAttacksOneSquare) {
  ExpectAttacks({"7k/8/8/8/P7/8/8/7K", Pawn, White, "a4", "b5", "h5h6a5"});
  ExpectAttacks({"7k/8/8/7p/8/8/8/7K", Pawn, Black, "h5", "g4", "a4a3h4"});
}

TEST_F(AttackTest, RookAttacksAlongAnEmptyFile) {
  ExpectAttacks({"6k1/8/8/8/8/8/8/R5K1", Rook, White, "a1", "a8a2b1g1", "h1b2h8"});
}

TEST_F(AttackTest, RookStopsAtAnyPieceBetween) {
  ExpectAttacks({"6k1/8/8/P7/8/8/8/R5K1", Rook, White, "a1", "a4a5", "a6a8"});
  ExpectAttacks({"6k1/8/8/p7/8/8/8/R5K1", Rook, White, "a1", "a4a5", "a6a8"});
  ExpectAttacks({"6k1/p7/8/8/8/8/8/R5K1", Rook, White, "a1", "a7", "a8"});
  ExpectAttacks({"6k1/8/8/8/8/8/P7/R5K1", Rook, White, "a1", "a2", "a3a8"});
}

TEST_F(AttackTest, QueenAttacksAlongLinesAndDiagonals) {
  ExpectAttacks({"6k1/8/8/8/8/8/8/3Q2K1", Queen, White, "d1", "h5a4d8a1g1", "h1e3c3"});
  ExpectAttacks({"6k1/8/8/8/6p1/8/8/3Q2K1", Queen, White, "d1", "g4", "h5"});
}

TEST_F(AttackTest, KnightJumps) {
  ExpectAttacks({"4k3/8/8/8/8/8/PPPPPPPP/4K1N1", Knight, White, "g1", "f3h3e2", "g2g3e1"});
}

TEST_F(AttackTest, BishopNeverAttacksAnOrthogonalNeighbour) {
  ExpectAttacks({"7k/8/8/8/4B3/8/8/7K", Bishop, White, "e4", "d5f5d3f3a8h7b1h1", "e5e3d4f4"});
}

TEST_F(AttackTest, KingAttacksItsNeighbours) {
  ExpectAttacks({"7k/8/8/8/4K3/8/8/8", King, White, "e4", "d5e5f5d4f4d3e3f3", "e6g4c2e4"});
}

TEST_F(AttackTest, NothingAttacksFromNowhere) {
  ExpectAttacks({"7k/8/8/8/4K3/8/8/8", NoPiece, White, "a1", "", "a1a2b1b2h8"});
}

// --- all pieces ------------------------------------------------------------------------------

// The answer by walking over rows and files, without tables.
bool AttacksByWalking(int piece, int colour, Square from, Square to) {
  if (!ReachesOnEmptyBoard(piece, from, to)) return false;
  if (piece == Pawn) return RowOf(to) - RowOf(from) == (colour == White ? -1 : 1);
  if (piece == Knight || piece == King) return true;
  const int step = Sign(RowOf(to) - RowOf(from)) * 8 + Sign(FileOf(to) - FileOf(from));
  for (Square square = from + step; square != to; square += step) {
    if (g.board[square] != NoPiece) return false;
  }
  return true;
}

TEST_F(AttackTest, AnswersAgreeWithWalkingOverTheBoard) {
  for (const auto& row : support::DataRows("movelists.tsv")) {
    support::SetUpPosition(row[0]);
    for (Square square = 0; square < kSquares; ++square) {
      bool attacked[2] = {};
      for (Square from = 0; from < kSquares; ++from) {
        const int colour = g.color[from];
        if (colour == NoColour) continue;
        const bool attacks = AttacksByWalking(g.board[from], colour, from, square);
        ASSERT_EQ(Attack(g.board[from], colour, from, square), attacks)
            << row[0] << ' ' << chb[from] << chb[square];
        attacked[colour] |= attacks;
      }
      for (const int colour : {White, Black}) {
        ASSERT_EQ(SqAttack(square, colour), attacked[colour]) << row[0] << ' ' << chb[square];
      }
      if (square == g.king_sq[g.side]) {
        EXPECT_EQ(Check(), attacked[g.xside]) << row[0];
      }
    }
  }
}

TEST_F(AttackTest, CapturedPieceAttacksNothing) {
  support::SetUpPosition("4k3/8/8/3r4/4P3/8/8/3K4 w - -");
  EXPECT_TRUE(SqAttack(StrToSq("d1"), Black));
  support::Play("e4d5");
  EXPECT_FALSE(SqAttack(StrToSq("d1"), Black));
}

struct CheckRow {
  const char* text;
  bool check;
};

TEST_F(AttackTest, KingOfTheSideToMoveIsLookedAt) {
  const CheckRow rows[] = {
      {"4k3/8/8/8/8/8/8/4K3 w", false},     {"4k3/8/8/8/8/8/4r3/4K3 w", true},
      {"4k3/8/8/8/8/8/4r3/4K3 b", false},   {"4k3/3P4/8/8/8/8/8/4K3 b", true},
      {"4k3/8/8/8/8/8/3p4/4K3 w", true},    {"4k3/8/8/8/8/5n2/8/4K3 w", true},
      {"4k3/8/8/8/7b/8/8/4K3 w", true},     {"4k3/8/8/8/7b/6P1/8/4K3 w", false},
      {"4k3/4r3/8/8/8/8/4P3/4K3 w", false}, {"4k3/4r3/8/8/8/8/8/4K3 w", true},
  };
  for (const CheckRow& row : rows) {
    support::SetUpPosition(row.text);
    EXPECT_EQ(Check(), row.check) << row.text;
  }
}

TEST_F(AttackTest, KingInContactWithTheEnemyKingIsInCheck) {
  for (const char* side : {" w", " b"}) {
    support::SetUpPosition(std::string("8/8/8/3kK3/8/8/8/8") + side);
    EXPECT_TRUE(Check()) << side;
  }
}

// --- castling --------------------------------------------------------------------------------

struct CastlingRow {
  const char* reason;
  const char* text;
  bool short_side;
  bool long_side;
};

constexpr CastlingRow kCastlingRows[] = {
    {"both sides free", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", true, true},
    {"both sides free", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq", true, true},
    {"short right only", "r3k2r/8/8/8/8/8/8/R3K2R w Kq", true, false},
    {"long right only", "r3k2r/8/8/8/8/8/8/R3K2R w Qk", false, true},
    {"short right only", "r3k2r/8/8/8/8/8/8/R3K2R b Qk", true, false},
    {"long right only", "r3k2r/8/8/8/8/8/8/R3K2R b Kq", false, true},
    {"rights of the other side", "r3k2r/8/8/8/8/8/8/R3K2R w kq", false, false},
    {"king in check", "r3k2r/8/8/8/4r3/8/8/R3K2R w KQkq", false, false},
    {"f1 attacked", "r3k2r/8/8/8/5r2/8/8/R3K2R w KQkq", false, true},
    {"g1 attacked", "r3k2r/8/8/8/6r1/8/8/R3K2R w KQkq", false, true},
    {"h1 attacked", "r3k2r/8/8/8/7r/8/8/R3K2R w KQkq", true, true},
    {"d1 attacked", "r3k2r/8/8/8/3r4/8/8/R3K2R w KQkq", true, false},
    {"c1 attacked", "r3k2r/8/8/8/2r5/8/8/R3K2R w KQkq", true, false},
    {"b1 attacked", "r3k2r/8/8/8/1r6/8/8/R3K2R w KQkq", true, true},
    {"a1 attacked", "r3k2r/8/8/8/r7/8/8/R3K2R w KQkq", true, true},
    {"f8 attacked", "r3k2r/8/8/5R2/8/8/8/R3K2R b KQkq", false, true},
    {"g8 attacked", "r3k2r/8/8/6R1/8/8/8/R3K2R b KQkq", false, true},
    {"d8 attacked", "r3k2r/8/8/3R4/8/8/8/R3K2R b KQkq", true, false},
    {"c8 attacked", "r3k2r/8/8/2R5/8/8/8/R3K2R b KQkq", true, false},
    {"b8 attacked", "r3k2r/8/8/1R6/8/8/8/R3K2R b KQkq", true, true},
    {"f1 occupied", "r3k2r/8/8/8/8/8/8/R3KB1R w KQkq", false, true},
    {"g1 occupied", "r3k2r/8/8/8/8/8/8/R3K1nR w KQkq", false, true},
    {"d1 occupied", "r3k2r/8/8/8/8/8/8/R2QK2R w KQkq", true, false},
    {"c1 occupied", "r3k2r/8/8/8/8/8/8/R1B1K2R w KQkq", true, false},
    {"b1 occupied", "r3k2r/8/8/8/8/8/8/RN2K2R w KQkq", true, false},
    {"b8 occupied", "rn2k2r/8/8/8/8/8/8/R3K2R b KQkq", true, false},
    {"rooks missing", "r3k2r/8/8/8/8/8/8/4K3 w KQkq", false, false},
    {"other pieces in the corners", "r3k2r/8/8/8/8/8/8/B3K2N w KQkq", false, false},
    {"enemy rooks in the corners", "4k3/8/8/8/8/2N3N1/8/r3K2r w KQ", false, false},
    {"king elsewhere", "r3k2r/8/8/8/8/8/4K3/R6R w KQkq", false, false},
    {"king in check by a knight", "r3k2r/8/8/8/8/3n4/8/R3K2R w KQkq", false, false},
    {"a pawn attacks both ways", "r3k2r/8/8/8/8/8/4p3/R3K2R w KQkq", false, false},
};

TEST_F(AttackTest, CastlingAsksForRightKingRookWayAndSafety) {
  for (const CastlingRow& row : kCastlingRows) {
    support::SetUpPosition(row.text);
    EXPECT_EQ(LegalCastl(kShortCastlingMove[g.side]), row.short_side)
        << row.reason << ' ' << row.text;
    EXPECT_EQ(LegalCastl(kLongCastlingMove[g.side]), row.long_side)
        << row.reason << ' ' << row.text;
  }
}

TEST_F(AttackTest, ShortCastlingIsRefusedWhenOnlyTheSquareBetweenIsAttacked) {
  support::SetUpPosition("4k3/8/8/8/8/3b4/8/4K2R w K");
  EXPECT_FALSE(SqAttack(StrToSq("e1"), Black));
  EXPECT_TRUE(SqAttack(StrToSq("f1"), Black));
  EXPECT_FALSE(SqAttack(StrToSq("g1"), Black));
  EXPECT_FALSE(LegalCastl(kShortCastlingMove[White]));
}

TEST_F(AttackTest, LongCastlingIsAllowedWhenOnlyTheRooksWayIsAttacked) {
  support::SetUpPosition("4k3/8/8/8/8/3b4/8/R3K3 w Q");
  EXPECT_TRUE(SqAttack(StrToSq("b1"), Black));
  EXPECT_TRUE(LegalCastl(kLongCastlingMove[White]));
}

TEST_F(AttackTest, CastlingIsRefusedWithoutItsRook) {
  support::SetUpPosition("4k3/8/8/8/8/8/8/4K3 w KQ");
  EXPECT_FALSE(LegalCastl(kShortCastlingMove[White]));
  EXPECT_FALSE(LegalCastl(kLongCastlingMove[White]));
}

TEST_F(AttackTest, OtherMovesAreNoCastling) {
  support::SetUpPosition("r3k2r/8/8/8/8/8/8/R3K2R w KQkq");
  EXPECT_FALSE(LegalCastl(0));
  EXPECT_FALSE(LegalCastl(MoveWord(King, E1, E1 + 2)));
  EXPECT_FALSE(LegalCastl(MoveWord(King, E1, E1 - 2)));
  EXPECT_FALSE(LegalCastl(MoveWord(King, E1, E1 + 1) | kCapture));
}

}  // namespace
}  // namespace tarvyle
