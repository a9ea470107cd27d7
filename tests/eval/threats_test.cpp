#include "eval/threats.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "eval/attacksets.h"
#include "eval/side.h"
#include "position/sets.h"
#include "position/text.h"
#include "position/types.h"
#include "tests/support/eval_support.h"

namespace tarvyle {
namespace {

// Names of the squares of a set, from a8 on.
std::string Names(SquareSet set) {
  std::string names;
  while (set != 0) names += chb[TakeFirst(set)];
  return names;
}

TEST(Threats, SortWhitesPiecesByTheAttacksOnThem) {
  struct Row {
    const char* meaning;
    const char* fen;
    const char* attacked;
    const char* hanging;
    const char* outbid;
    const char* outnumbered;
    int cost;
  };
  const Row rows[] = {
      {"nothing attacked", "7k/8/8/8/3N4/8/8/7K w", "", "", "", "", 0},
      {"undefended", "3r3k/8/8/8/3N4/8/8/7K w", "d4", "d4", "", "", -1 - 4},
      {"undefended pawn", "3r3k/8/8/8/3P4/8/8/7K w", "d4", "d4", "", "", -1 - 4 - 1},
      {"two undefended ones", "3r1r1k/8/8/8/3N1N2/8/8/7K w", "d4f4", "d4f4", "", "",
       -2 - 4 - 4 - 6},
      {"attacked by a cheaper one, though defended", "7k/8/8/4p3/3N4/4P3/8/7K w", "d4", "d4", "",
       "", -1 - 4},
      {"cheapest attacker cheaper than the cheapest defender", "3r3k/8/8/8/3N4/8/8/3Q3K w", "d4",
       "", "d4", "", -1 - 1},
      {"pawn with more attackers than defenders", "3r3k/3r4/8/8/3P4/8/8/3R3K w", "d4", "", "", "d4",
       -2 - 1},
      {"well defended", "3r3k/8/8/8/3N4/4P3/8/7K w", "d4", "", "", "", -1},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.meaning);
    support::SetUpRoot(row.fen);
    const BoardAttacks attacks = AttacksOnBoard();
    const Side side = SideOf(White, attacks);
    const Threats threats = FindThreats(side);
    EXPECT_EQ(Names(threats.attacked), row.attacked);
    EXPECT_EQ(Names(threats.hanging), row.hanging);
    EXPECT_EQ(Names(threats.outbid), row.outbid);
    EXPECT_EQ(Names(threats.outnumbered), row.outnumbered);
    EXPECT_EQ(ThreatTerms(side, threats, ~SquareSet{0}), row.cost);
  }
}

TEST(Threats, OfSomePiecesCountTheSecondHangingOneAmongThese) {
  support::SetUpRoot("3r1r1k/8/8/8/3N1N2/8/8/7K w");
  const BoardAttacks attacks = AttacksOnBoard();
  const Side side = SideOf(White, attacks);
  const Threats threats = FindThreats(side);
  EXPECT_EQ(ThreatTerms(side, threats, SetOf(StrToSq("d4"))), -1 - 4);
  EXPECT_EQ(ThreatTerms(side, threats, SetOf(StrToSq("h1"))), 0);
}

TEST(Threats, DearestPieceIsThatOfTheGreatestValue) {
  support::SetUpRoot("7k/8/8/8/PNBRQ3/8/8/7K w");
  const BoardAttacks attacks = AttacksOnBoard();
  const Side side = SideOf(White, attacks);
  SquareSet pieces = 0;
  EXPECT_EQ(DearestPiece(side, pieces), NoPiece);
  int code = Pawn;
  for (const char* square : {"a4", "b4", "c4", "d4", "e4", "h1"}) {
    pieces |= SetOf(StrToSq(square));
    EXPECT_EQ(DearestPiece(side, pieces), code++) << square;
  }
}

}  // namespace
}  // namespace tarvyle
