#include "position/enpassant.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::SetUpPosition;

class EnPassantTarget : public support::PositionTest {};

struct EnPassantTargetRow {
  const char* meaning;
  const char* fen;  // after the move
  Move move;
  int side;
  const char* square;  // "" for none
};

Move PawnMove(const char* from, const char* to) {
  return MoveWord(Pawn, StrToSq(from), StrToSq(to));
}

TEST_F(EnPassantTarget, NeedsADoubleStepBesideAnEnemyPawn) {
  const EnPassantTargetRow rows[] = {
      {"enemy pawn on the right", "k7/8/8/8/4Pp2/8/8/K7 b", PawnMove("e2", "e4"), White, "e3"},
      {"enemy pawn on the left", "k7/8/8/8/3pP3/8/8/K7 b", PawnMove("e2", "e4"), White, "e3"},
      {"by Black", "k7/8/8/3pP3/8/8/8/K7 w", PawnMove("d7", "d5"), Black, "d6"},
      {"nobody beside", "k7/8/8/8/4P3/8/8/K7 b", PawnMove("e2", "e4"), White, ""},
      {"an own pawn beside", "k7/8/8/8/4PP2/8/8/K7 b", PawnMove("e2", "e4"), White, ""},
      {"an enemy piece beside", "k7/8/8/8/4Pn2/8/8/K7 b", PawnMove("e2", "e4"), White, ""},
      {"a single step", "k7/8/8/8/4Pp2/8/8/K7 b", PawnMove("e3", "e4"), White, ""},
      {"a rook's step of two rows", "k7/8/8/8/4Rp2/8/8/K7 b",
       MoveWord(Rook, StrToSq("e2"), StrToSq("e4")), White, ""},
      {"the h-file does not reach round to the a-file", "k7/8/8/p7/7P/8/8/K7 b",
       PawnMove("h2", "h4"), White, ""},
      {"nor the a-file to the h-file", "k7/8/8/8/P7/7p/8/K6p b", PawnMove("a2", "a4"), White, ""},
      {"and on the fifth row", "k7/8/7P/p7/8/8/8/K7 w", PawnMove("a7", "a5"), Black, ""},
      {"and h5 beside a4", "k7/8/8/7p/P7/8/8/K7 w", PawnMove("h7", "h5"), Black, ""},
      {"on the a-file", "k7/8/8/8/Pp6/8/8/K7 b", PawnMove("a2", "a4"), White, "a3"},
      {"on the h-file", "k7/8/8/6Pp/8/8/8/K7 w", PawnMove("h7", "h5"), Black, "h6"},
      {"no move", "k7/8/8/8/4Pp2/8/8/K7 b", 0, White, ""},
  };
  for (const EnPassantTargetRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    SetUpPosition(row.fen);
    const Square square = en_pass_to(row.move, row.side);
    EXPECT_EQ(square == 0 ? "" : chb[square], std::string(row.square));
  }
}

}  // namespace
}  // namespace tarvyle
