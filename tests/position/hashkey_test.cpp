#include "position/hashkey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <set>
#include <string>

#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

constexpr std::uint32_t kFirstSeed = 11111;

// Draws anew from the first seed and leaves keys and seed as they were.
class HashKeyTest : public testing::Test {
 protected:
  void SetUp() override {
    support::StartEngineOnce();
    std::copy(std::begin(hashRnd), std::end(hashRnd), keys_);
    seed_ = seed16;
    seed16 = kFirstSeed;
  }

  void TearDown() override {
    std::copy(std::begin(keys_), std::end(keys_), hashRnd);
    seed16 = seed_;
  }

  std::uint64_t keys_[1024];  // as the engine has drawn them
  std::uint32_t seed_;
};

TEST_F(HashKeyTest, GeneratorIsLinearCongruential) {
  std::uint64_t state = kFirstSeed;
  for (int i = 0; i < 10000; ++i) {
    state = (state * 1103515245 + 12345) % 0x100000000;
    ASSERT_EQ(rand16(), state / 0x10000 % 0x8000);
    ASSERT_EQ(seed16, state);
  }
}

TEST_F(HashKeyTest, KeyIsMadeOfFiveDraws) {
  std::uint64_t draws[5];
  for (std::uint64_t& draw : draws) draw = rand16();
  seed16 = kFirstSeed;
  EXPECT_EQ(Rand64(), draws[0] << 60 ^ draws[1] << 45 ^ draws[2] << 30 ^ draws[3] << 15 ^ draws[4]);
}

TEST_F(HashKeyTest, KeysAreDrawnFromWhitePawnsOnA8ToBlackKingsOnH1) {
  for (int colour = White; colour <= Black; ++colour) {
    for (int piece = Pawn; piece <= King; ++piece) {
      for (Square square = 0; square < kSquares; ++square) {
        ASSERT_EQ(keys_[(colour * 8 + piece) * 64 + square], Rand64());
      }
    }
  }
}

TEST_F(HashKeyTest, EachColourIsFilledAlone) {
  std::fill(std::begin(hashRnd), std::end(hashRnd), 0);
  FillKeys(White);
  EXPECT_TRUE(std::equal(hashRnd, hashRnd + 512, keys_));
  EXPECT_TRUE(std::all_of(hashRnd + 512, hashRnd + 1024, [](auto key) { return key == 0; }));
  FillKeys(Black);
  EXPECT_TRUE(std::equal(hashRnd, hashRnd + 1024, keys_));
}

TEST_F(HashKeyTest, CodesWithoutPieceHaveNoKeys) {
  for (const int colour : {White, Black}) {
    for (const int piece : {0, 7}) {
      for (Square square = 0; square < kSquares; ++square) {
        EXPECT_EQ(PieceKey(piece, colour, square), 0u);
      }
    }
  }
}

TEST_F(HashKeyTest, KeysOfPiecesDiffer) {
  const std::set<std::uint64_t> different(std::begin(keys_), std::end(keys_));
  EXPECT_EQ(different.size(), 2u * 6 * 64 + 1);
}

TEST_F(HashKeyTest, KeyIsFoundByColourPieceAndSquare) {
  EXPECT_EQ(PieceKey(Pawn, White, A8), hashRnd[64]);
  EXPECT_EQ(PieceKey(King, White, H1), hashRnd[6 * 64 + 63]);
  EXPECT_EQ(PieceKey(Queen, Black, E1), hashRnd[(8 + 5) * 64 + 60]);
}

TEST_F(HashKeyTest, SeedStartsAsTheFirstSeed) {
  // 12 kinds of pieces on 64 squares, five draws each, have been taken from it, and nothing else.
  for (int draw = 0; draw < 12 * 64 * 5; ++draw) rand16();
  EXPECT_EQ(seed16, seed_);
}

}  // namespace
}  // namespace tarvyle
