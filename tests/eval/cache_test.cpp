#include "eval/cache.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <set>
#include <string>
#include <utility>

#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "position/directions.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"
#include "tests/support/eval_support.h"

namespace tarvyle {
namespace {

constexpr const char* kPosition = "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2R w KQkq -";

// Keys of the position and of each change of it, none of them the same.
class EvaluationKeyTest : public testing::Test {
 protected:
  void SetUp() override {
    support::SetUpRoot(kPosition);
    keys_.insert(EvaluationKey());
  }

  void ExpectANewKey(const char* what) {
    EXPECT_TRUE(keys_.insert(EvaluationKey()).second) << what;
  }

 private:
  std::set<std::uint64_t> keys_;
};

TEST_F(EvaluationKeyTest, TellsApartWhateverTheEvaluationReads) {
  for (const std::uint32_t right : {1u, 2u, 4u, 8u}) {
    g.castle ^= right;
    ExpectANewKey("castling right");
  }
  ++g.castled[White];
  ExpectANewKey("White has castled");
  ++g.castled[Black];
  ExpectANewKey("both have castled");
  set_dir(Black);
  ExpectANewKey("direction table");
  ForgetScores();
  ExpectANewKey("piece-square tables");
}

// Two like pieces change places: the board stays the same, but not the order of the list, by which
// rooks are truncated.
void SwapSlots(Square a, Square b) {
  std::swap(g.list_idx[a], g.list_idx[b]);
  g.list_sq[g.list_idx[a]] = a;
  g.list_sq[g.list_idx[b]] = b;
  RebuildSets();
}

TEST_F(EvaluationKeyTest, TellsLikePiecesInEachOthersSlotsApart) {
  SwapSlots(A1, H1);
  ExpectANewKey("White's rooks");
  SwapSlots(StrToSq("a2"), StrToSq("b2"));
  ExpectANewKey("and two of his pawns");
  SwapSlots(A8, H8);
  ExpectANewKey("and Black's rooks");
}

TEST_F(EvaluationKeyTest, TellsPiecesInTheSameSlotsApart) {
  // Without new tables, which would change the key by themselves.
  for (const char* fen : {"r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2N w KQkq -",
                          "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2B w KQkq -",
                          "r3k2r/pppppppp/8/8/8/8/PPPPPPPP/R3K2Q w KQkq -"}) {
    ASSERT_TRUE(InitGame(fen));
    g.castle = 15;
    ExpectANewKey(fen);
  }
}

TEST_F(EvaluationKeyTest, IsTheSameForBothSidesToMove) {
  const std::uint64_t key = EvaluationKey();
  g.side = Black;
  g.xside = White;
  EXPECT_EQ(EvaluationKey(), key);
}

TEST_F(EvaluationKeyTest, DoesNotCountHowOftenASideHasCastled) {
  g.castled[White] = 1;
  const std::uint64_t key = EvaluationKey();
  g.castled[White] = 2;
  EXPECT_EQ(EvaluationKey(), key);
}

TEST(EvaluationCache, KeepsAScoreUntilThePieceSquareTablesChange) {
  support::SetUpRoot(kPosition);
  const int score = support::EvaluateFully();
  CachedScore& kept = CacheSlot(EvaluationKey());
  ASSERT_EQ(kept.key, EvaluationKey());
  kept.positional += 7;
  EXPECT_EQ(support::EvaluateFully(), score + 7);
  InitEvaluate();
  EXPECT_EQ(support::EvaluateFully(), score);
}

TEST(EvaluationCache, TellsTheDearestHangingPiecesOfAScoreThatItKeeps) {
  support::SetUpRoot("rq6/7k/8/8/N7/8/PQ6/7K b");
  support::EvaluateFully();
  CachedScore& kept = CacheSlot(EvaluationKey());
  ASSERT_EQ(kept.key, EvaluationKey());
  EXPECT_EQ(kept.hanging[White], Knight);
  EXPECT_EQ(kept.hanging[Black], NoPiece);
  Evaluate(900000, 900001);  // lazily: with none
  ASSERT_EQ(maxHungValue[White], 0);
  support::EvaluateFully();
  EXPECT_EQ(maxHungValue[White], 3000);
  EXPECT_EQ(maxHungValue[Black], 0);
  // Nobody but the cache knows of these.
  kept.hanging[White] = Rook;
  kept.hanging[Black] = Queen;
  support::EvaluateFully();
  EXPECT_EQ(maxHungValue[White], 5000);
  EXPECT_EQ(maxHungValue[Black], 10000);
}

TEST(EvaluationCache, HasOnePlaceForKeysWithTheSameLowBits) {
  EXPECT_EQ(&CacheSlot(5), &CacheSlot(5 + (std::uint64_t{1} << 16)));
  EXPECT_NE(&CacheSlot(5), &CacheSlot(5 + (std::uint64_t{1} << 15)));
}

}  // namespace
}  // namespace tarvyle
