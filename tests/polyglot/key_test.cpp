#include "polyglot/key.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "polyglot/keytable.h"
#include "tests/support/position_support.h"

namespace tarvyle::polyglot {
namespace {

using support::Play;
using support::PositionTest;
using support::SetUpPosition;

class PolyglotKey : public PositionTest {};

struct PublishedKey {
  const char* moves;
  std::uint64_t key;
};

TEST_F(PolyglotKey, IsThePublishedOneAfterMoves) {
  const PublishedKey rows[] = {
      {"", 0x463b96181691fc9c},
      {"e2e4", 0x823c9b50fd114196},
      {"e2e4 d7d5", 0x0756b94461c50fb0},
      {"e2e4 d7d5 e4e5", 0x662fafb965db29d4},
      {"e2e4 d7d5 e4e5 f7f5", 0x22a48b5a8e47ff78},
      {"e2e4 d7d5 e4e5 f7f5 e1e2", 0x652a607ca3f242c1},
      {"e2e4 d7d5 e4e5 f7f5 e1e2 e8f7", 0x00fdd303c946bdd9},
      {"a2a4 b7b5 h2h4 b5b4 c2c4", 0x3c8123ea7b067637},
      {"a2a4 b7b5 h2h4 b5b4 c2c4 b4c3 a1a3", 0x5c3f9b829b279560},
  };
  for (const PublishedKey& row : rows) {
    InitNewGame();
    Play(row.moves);
    EXPECT_EQ(PositionKey(), row.key) << row.moves;
  }
}

TEST_F(PolyglotKey, IsThePublishedOneOfPositionsThatAreSetUp) {
  SetUpPosition("rnbqkbnr/ppp1p1pp/8/3pPp2/8/8/PPPP1PPP/RNBQKBNR w KQkq f6");
  EXPECT_EQ(PositionKey(), 0x22a48b5a8e47ff78u);
  SetUpPosition("rnbqkbnr/p1pppppp/8/8/PpP4P/8/1P1PPPP1/RNBQKBNR b KQkq c3");
  EXPECT_EQ(PositionKey(), 0x3c8123ea7b067637u);
  SetUpPosition("rnbqkbnr/p1pppppp/8/8/P6P/R1p5/1P1PPPP1/1NBQKBNR b Kkq -");
  EXPECT_EQ(PositionKey(), 0x5c3f9b829b279560u);
}

std::uint64_t KeyOf(const std::string& fen) {
  SetUpPosition(fen);
  return PositionKey();
}

TEST_F(PolyglotKey, CountsEnPassantOnlyBesideAPawnOfTheSideToMove) {
  const std::string none = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq ";
  EXPECT_EQ(KeyOf(none + "e3"), KeyOf(none + "-"));
  // a4 and h5 are neighbours as numbers alone.
  const std::string wrapped = "4k3/8/8/7p/P7/8/8/4K3 b - ";
  EXPECT_EQ(KeyOf(wrapped + "a3"), KeyOf(wrapped + "-"));
  // A pinned pawn stands beside as well.
  const std::string pinned = "8/8/8/8/k2pP2R/8/8/4K3 b - ";
  EXPECT_EQ(KeyOf(pinned + "e3"), KeyOf(pinned + "-") ^ kKeyTable[kEnPassantKeys + 4]);
  const std::string own = "4k3/8/8/8/3PP3/8/8/4K3 b - ";
  EXPECT_EQ(KeyOf(own + "e3"), KeyOf(own + "-"));
}

TEST_F(PolyglotKey, HasAConstantForEachCastlingRight) {
  const std::string board = "r3k2r/8/8/8/8/8/8/R3K2R w ";
  const std::uint64_t none = KeyOf(board + "-");
  EXPECT_EQ(KeyOf(board + "K"), none ^ kKeyTable[768]);
  EXPECT_EQ(KeyOf(board + "Q"), none ^ kKeyTable[769]);
  EXPECT_EQ(KeyOf(board + "k"), none ^ kKeyTable[770]);
  EXPECT_EQ(KeyOf(board + "q"), none ^ kKeyTable[771]);
}

TEST_F(PolyglotKey, LeavesOutRightsWithoutKingAndRookAtHome) {
  const std::string board = "4k2r/8/8/8/8/8/8/R4K2 w ";
  EXPECT_EQ(KeyOf(board + "KQkq"), KeyOf(board + "k"));
}

TEST_F(PolyglotKey, LosesTheRightsOfACapturedRook) {
  SetUpPosition("4k2r/8/8/8/8/8/6B1/4K3 w k -");
  Play("g2b7 e8f7 b7e4 f7e8 e4g2 e8f7 g2d5");
  const std::uint64_t moved = PositionKey();
  EXPECT_EQ(moved, KeyOf("7r/5k2/8/3B4/8/8/8/4K3 b - -"));
  SetUpPosition("r3k2r/8/8/8/4B3/8/8/4K3 w kq -");
  Play("e4a8 h8h1");
  EXPECT_EQ(PositionKey(), KeyOf("B3k3/8/8/8/8/8/8/4K2r w - -"));
}

TEST_F(PolyglotKey, HasNoConstantTwice) {
  std::vector<std::uint64_t> sorted(kKeyTable.begin(), kKeyTable.end());
  std::sort(sorted.begin(), sorted.end());
  EXPECT_EQ(std::adjacent_find(sorted.begin(), sorted.end()), sorted.end());
}

}  // namespace
}  // namespace tarvyle::polyglot
