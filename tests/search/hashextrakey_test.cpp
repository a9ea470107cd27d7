// What tells positions with the same pieces apart in the transposition table.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using ExtraKey = SearchTest;

std::uint32_t EnPassantOf(std::uint32_t key) { return key & 63; }
std::uint32_t CastlingOf(std::uint32_t key) { return key >> 18; }

TEST_F(ExtraKey, HoldsBothKings) {
  for (const auto& [white, black] : {std::pair{E1, E8}, std::pair{A1, H8}, std::pair{H1, A8}}) {
    std::string board(64, '1');
    board[static_cast<std::size_t>(white)] = 'K';
    board[static_cast<std::size_t>(black)] = 'k';
    ASSERT_TRUE(InitGame((board + " w").c_str()));
    EXPECT_EQ(pos_ext_key(), static_cast<std::uint32_t>(white << 6 | black << 12));
  }
}

TEST_F(ExtraKey, HoldsTheEnPassantSquareOnlyWhenAPawnStandsBeside) {
  struct Row {
    const char* root;
    const char* move;
    std::uint32_t square;
  };
  constexpr Row kRows[] = {
      {"4k3/8/8/8/3p4/8/4P3/4K3 w", "e2e4", 44},    // left neighbour
      {"4k3/8/8/8/5p2/8/4P3/4K3 w", "e2e4", 44},    // right neighbour
      {"4k3/8/8/8/3p1p2/8/4P3/4K3 w", "e2e4", 44},  // both
      {"4k3/8/8/8/8/8/4P3/4K3 w", "e2e4", 0},       // nobody beside
      {"4k3/8/8/8/3P1P2/8/4P3/4K3 w", "e2e4", 0},   // pawns of the same side
      {"4k3/8/8/8/3n1n2/8/4P3/4K3 w", "e2e4", 0},   // other pieces
      {"4k3/8/8/8/3p4/8/4P3/4K3 w", "e2e3", 0},     // no double step
      {"4k3/8/8/8/3p4/4P3/8/4K3 w", "e3e4", 0},
      {"4k3/8/8/8/1p6/8/P7/4K3 w", "a2a4", 40},   // right neighbour on the a-file
      {"4k3/8/8/7p/8/8/P7/4K3 w", "a2a4", 0},     // the a-file has no left one
      {"4k3/8/8/8/6p1/8/7P/4K3 w", "h2h4", 47},   // left neighbour on the h-file
      {"4k3/8/8/8/8/p7/7P/4K3 w", "h2h4", 0},     // the h-file has no right one
      {"4k3/2p5/8/3P4/8/8/8/4K3 b", "c7c5", 18},  // Black's double step, right neighbour
      {"4k3/2p5/8/1P6/8/8/8/4K3 b", "c7c5", 18},  // left neighbour
      {"4k3/2p5/8/1p6/8/8/8/4K3 b", "c7c5", 0},
      {"4k3/7p/8/6P1/8/8/8/4K3 b", "h7h5", 23},
      {"4k3/7p/8/8/P7/8/8/4K3 b", "h7h5", 0},
      {"4k3/8/8/8/R2p4/8/8/4K3 w", "a4a6", 0},  // as long a step, but no pawn's
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.root << ' ' << row.move);
    GoTo(row.root, row.move);
    EXPECT_EQ(EnPassantOf(pos_ext_key()), row.square);
    Ascend();
    GoTo(std::string(row.root) + " - - moves " + row.move);  // played in the game: the same
    EXPECT_EQ(EnPassantOf(pos_ext_key()), row.square);
  }
}

TEST_F(ExtraKey, ForgetsTheEnPassantSquareAfterTheNextMove) {
  GoTo("4k3/8/8/8/3p4/8/4P3/4K3 w", "e2e4 e8e7");
  EXPECT_EQ(EnPassantOf(pos_ext_key()), 0u);
  Ascend();
  GoTo("4k3/8/8/8/3p4/8/4P3/4K3 w", "e2e4 0");
  EXPECT_EQ(EnPassantOf(pos_ext_key()), 0u);
}

TEST_F(ExtraKey, IgnoresTheEnPassantSquareOfASetUp) {
  GoTo("4k3/8/8/8/3pP3/8/8/4K3 b - e3");
  EXPECT_EQ(g.ep_sq, 44);
  EXPECT_EQ(EnPassantOf(pos_ext_key()), 0u);
}

TEST_F(ExtraKey, HoldsRightsWhoseKingAndRookAreAtHome) {
  struct Row {
    const char* root;
    std::uint32_t bits;  // a1, h1, a8, h8
  };
  constexpr Row kRows[] = {
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq", 15},
      {"r3k2r/8/8/8/8/8/8/R3K2R w", 0},
      {"r3k2r/8/8/8/8/8/8/R3K2R w Q", 1},
      {"r3k2r/8/8/8/8/8/8/R3K2R w K", 2},
      {"r3k2r/8/8/8/8/8/8/R3K2R w q", 4},
      {"r3k2r/8/8/8/8/8/8/R3K2R w k", 8},
      {"r3k2r/8/8/8/8/8/8/4K2R w KQkq", 14},  // a right without its rook
      {"r3k2r/8/8/8/8/8/8/R3K3 w KQkq", 13},
      {"4k2r/8/8/8/8/8/8/R3K2R w KQkq", 11},
      {"r3k3/8/8/8/8/8/8/R3K2R w KQkq", 7},
      {"r3k2r/8/8/8/8/8/8/R2K3R w KQkq", 12},
      {"r2k3r/8/8/8/8/8/8/R3K2R w KQkq", 3},  // without its king
      {"R3k2R/8/8/8/8/8/8/r3K2r w KQkq", 0},  // rooks of the other side
      {"n3k2b/8/8/8/8/8/8/Q3K2N w KQkq", 0},
      {"r3K2r/8/8/8/8/8/8/R3k2R w KQkq", 0},  // kings of the other side
  };
  for (const Row& row : kRows) {
    ASSERT_TRUE(InitGame(row.root)) << row.root;
    EXPECT_EQ(CastlingOf(pos_ext_key()), row.bits) << row.root;
  }
}

TEST_F(ExtraKey, PositionsOfDifferentRightsOrEnPassantNeverShareAnEntry) {
  struct Row {
    const char* one;
    const char* other;
    bool shared;
  };
  constexpr Row kRows[] = {
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "r3k2r/8/8/8/8/8/8/R3K2R w Qkq", false},
      {"r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", true},
      {"4k3/8/8/8/3p4/8/4P3/4K3 w - - moves e2e4", "4k3/8/8/8/3pP3/8/8/4K3 b", false},
      // A double step with no pawn beside it is as good as any other way there.
      {"4k3/8/8/8/8/8/4P3/4K3 w - - moves e2e4", "4k3/8/8/8/4P3/8/8/4K3 b", true},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.one);
    HashClear();
    GoTo(row.one);
    HashInsert(5, 10, 3, MoveWord(Pawn, 52, 36));
    GoTo(row.other);
    int score = 0;
    Move move = 0;
    EXPECT_EQ(HashLook(-1000, 1000, 3, score, move), row.shared);
  }
}

TEST_F(ExtraKey, KeysAndExtraKeyEqualTheReferencePositions) {
  const auto rows = support::DataRows("positions.tsv");
  EXPECT_GT(rows.size(), 1000u);
  for (const auto& row : rows) {
    ASSERT_TRUE(SetUpGame(row[0])) << row[0];
    char text[40];
    std::snprintf(text, sizeof text, "%08x", pos_ext_key());
    EXPECT_EQ(row[5], text) << row[0];
  }
}

}  // namespace

}  // namespace tarvyle
