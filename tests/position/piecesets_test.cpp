#include "position/piecesets.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <set>
#include <string>

#include "position/makemove.h"
#include "position/sets.h"
#include "position/types.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::At;

class PieceSetsTest : public support::PositionTest {};

TEST_F(PieceSetsTest, HoldThePiecesOfTheRecord) {
  support::SetUpPosition("4k3/p7/8/8/8/8/8/R3K3 b - -");
  EXPECT_EQ(board_sets.of[White][Rook], SetOf(A1));
  EXPECT_EQ(board_sets.of[White][King], SetOf(E1));
  EXPECT_EQ(board_sets.of[Black][Pawn], SetOf(At("a7")));
  EXPECT_EQ(board_sets.of[Black][Knight], 0u);
  EXPECT_EQ(board_sets.colour[White], SetOf(A1) | SetOf(E1));
  EXPECT_EQ(board_sets.colour[Black], SetOf(E8) | SetOf(At("a7")));
  EXPECT_EQ(Occupied(), board_sets.colour[White] | board_sets.colour[Black]);
  EXPECT_EQ(board_sets.slots, 1u << 0 | 1u << 1 | 1u << 16 | 1u << 17);
  EXPECT_EQ(board_sets.pawn_slots, 1u << 17);
  EXPECT_EQ(board_sets.slot_key,
            slot_rnd[0][A1] ^ slot_rnd[1][E1] ^ slot_rnd[16][E8] ^ slot_rnd[17][At("a7")]);
}

TEST_F(PieceSetsTest, FollowEveryKindOfMoveAndItsTakingBack) {
  support::SetUpPosition("r3k2r/1P1p1ppp/8/2p1P3/8/8/p4PPP/1N2K2R w Kkq -");
  const char* const moves[] = {"b7a8n", "d7d5", "e5d6", "e8g8", "e1g1", "a2b1q", "f1b1"};
  for (const char* text : moves) {
    const Move move = support::LegalMove(text);
    const PieceSets before = board_sets;
    MakeMove(move);
    EXPECT_TRUE(SetsAreSound()) << text;
    EXPECT_FALSE(board_sets == before) << text;
    UnMakeMove(move);
    EXPECT_EQ(board_sets, before) << text;
    support::Play(text);
  }
}

TEST_F(PieceSetsTest, ThatDisagreeWithTheRecordAreUnsoundUntilTheyAreRebuilt) {
  void (*const damages[])() = {
      [] { board_sets.of[White][Pawn] ^= 1; }, [] { board_sets.colour[Black] ^= 1; },
      [] { board_sets.slots ^= 1; },           [] { board_sets.pawn_slots ^= 1; },
      [] { board_sets.slot_key ^= 1; },
  };
  for (const auto damage : damages) {
    ASSERT_TRUE(SetsAreSound());
    damage();
    EXPECT_FALSE(SetsAreSound());
    RebuildSets();
  }
}

TEST_F(PieceSetsTest, TellLikePiecesApartByTheirSlots) {
  support::SetUpPosition("4k3/8/8/8/8/8/4K3/R6R w - -");
  const PieceSets first = board_sets;
  support::Play("a1a3 e8e7 h1a1 e7e8 a3h3 e8e7 h3h1 e7e8");
  EXPECT_EQ(board_sets.of[White][Rook], first.of[White][Rook]);
  EXPECT_NE(board_sets.slot_key, first.slot_key);
}

TEST_F(PieceSetsTest, KeysOfSlotsDiffer) {
  std::set<std::uint64_t> different;
  for (const auto& keys : slot_rnd) different.insert(std::begin(keys), std::end(keys));
  EXPECT_EQ(different.size(), 32u * kSquares);
}

}  // namespace
}  // namespace tarvyle
