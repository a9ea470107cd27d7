// Probing, storing, ageing and verifying in the transposition table.

#include "search/hash.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <ios>
#include <string>

#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr Move kMove = 0x00001C2C;  // some pawn move
constexpr int kSmall = 0x10000;

// Read before any test runs: what a process starts with.
const int kDefaultEntries = Hash_Size;

HashEntry& CurrentSlot() { return HashSlot(g.side, g.key.low); }

// The current position as a stored entry.
HashEntry Entry(int bound, int depth, int score, Move move) {
  HashEntry entry{};
  entry.key = g.key;
  entry.white_key = g.color_key[White];
  entry.score = score;
  entry.move = move;
  entry.ext_key = pos_ext_key() & 0x3FFFFF;
  entry.bound = static_cast<unsigned>(bound) & 3;
  entry.generation = hash_generation & 0xFF;
  entry.white_pawns = static_cast<unsigned>(g.material[White] / 1000) & 0x7FF;
  entry.black_pawns = static_cast<unsigned>(g.material[Black] / 1000) & 0x7FF;
  entry.depth = static_cast<unsigned>(depth) & 0x3FF;
  return entry;
}

// An entry of the running search that only has a depth.
HashEntry OfDepth(int depth) {
  HashEntry entry{};
  entry.generation = hash_generation & 0xFF;
  entry.bound = kExact;
  entry.depth = static_cast<unsigned>(depth) & 0x3FF;
  return entry;
}

using Hash = SearchTest;

TEST_F(Hash, EntriesNeverCrossACacheLine) {
  EXPECT_EQ(64 % sizeof(HashEntry), 0u);
  for (const HashEntry* table : hash) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(table) % 64, 0u);
  }
}

TEST_F(Hash, TablesHoldAHalfMillionEntriesByDefault) { EXPECT_EQ(kDefaultEntries, 0x80000); }

TEST_F(Hash, ClearMakesEveryStoredEntryUnknown) {
  HashInsert(5, 10, 3, kMove);
  int score = 0;
  Move move = 0;
  ASSERT_TRUE(HashLook(-1000, 1000, 3, score, move));
  ASSERT_FALSE(HashEmptyNode(g.side, g.key.low, g.key.high, 3));
  HashClear();
  move = 0;
  EXPECT_FALSE(HashLook(-1000, 1000, 3, score, move));
  EXPECT_EQ(move, 0u);
  EXPECT_TRUE(HashEmptyNode(g.side, g.key.low, g.key.high, 0));
  EXPECT_EQ(HashDamp(), 0);
}

TEST_F(Hash, AnEntryOfAnEarlierSearchIsReplacedByAnything) {
  CurrentSlot() = Entry(kExact, 90, 1, kMove + 1);
  HashClear();
  HashInsert(9, 10, 0, 0);
  EXPECT_EQ(CurrentSlot().depth, 0);
  EXPECT_EQ(CurrentSlot().bound, kUpper);
}

TEST_F(Hash, NoSearchSeesAnEntryOfAnEarlierOneHoweverManyThereWere) {
  ASSERT_TRUE(HashAllocate(kSmall));
  for (int searches = 1; searches <= 600; ++searches) {
    // Each search leaves an entry in a slot of its own.
    HashEntry& slot = hash[searches % 2][searches];
    slot = OfDepth(searches % 90 + 1);
    EXPECT_FALSE(HashEmptyNode(searches % 2, static_cast<std::uint32_t>(searches), 7, 0));
    HashClear();
    for (int earlier = 1; earlier <= searches; ++earlier) {
      ASSERT_TRUE(HashEmptyNode(earlier % 2, static_cast<std::uint32_t>(earlier), 7, 0))
          << earlier << " after " << searches;
    }
  }
}

TEST_F(Hash, StoresEveryFieldOfThePosition) {
  GoTo("r3k2r/8/8/8/8/5N2/8/R3K2R w KQkq -");
  HashInsert(123, 200, 7, kMove);
  const HashEntry& entry = CurrentSlot();
  EXPECT_EQ(entry.key, g.key);
  EXPECT_EQ(entry.white_key, g.color_key[White]);
  EXPECT_EQ(entry.white_pawns, 1013u);
  EXPECT_EQ(entry.black_pawns, 1010u);
  EXPECT_EQ(entry.ext_key, pos_ext_key());
  EXPECT_EQ(entry.score, 123);
  EXPECT_EQ(entry.bound, kExact);
  EXPECT_EQ(entry.depth, 7);
  EXPECT_EQ(entry.move, kMove);
}

TEST_F(Hash, HoldsTheLargestMaterialThatCanBeSetUp) {
  GoTo("QQQQQQQQ/QQQQQQQ1/8/8/k6K/8/qqqqqqq1/qqqqqqqq w");  // 15 queens a side
  HashInsert(123, 200, 90, kMove);
  int score = 0;
  Move move = 0;
  EXPECT_TRUE(HashLook(-1000, 1000, 90, score, move));
  EXPECT_EQ(CurrentSlot().white_pawns * 1000, static_cast<unsigned>(g.material[White]));
  EXPECT_EQ(CurrentSlot().black_pawns * 1000, static_cast<unsigned>(g.material[Black]));
}

TEST_F(Hash, SlotIsChosenBySideAndLowKeyBits) {
  ASSERT_TRUE(HashAllocate(kSmall));
  HashClear();
  for (const char* root : {"4k3/8/8/8/8/8/4P3/4K3 w", "4k3/8/8/8/8/8/4P3/4K3 b"}) {
    GoTo(root);
    HashInsert(1, 2, 3, kMove);
    EXPECT_EQ(hash[g.side][g.key.low & 0xFFFF].key, g.key);
  }
  int used = 0;
  for (const HashEntry* table : hash) {
    for (int i = 0; i < Hash_Size; ++i) used += table[i].generation == hash_generation ? 1 : 0;
  }
  EXPECT_EQ(used, 2);
}

TEST_F(Hash, BoundFollowsFromMoveAndBeta) {
  struct Row {
    int score;
    int beta;
    Move move;
    int bound;
  };
  constexpr Row kRows[] = {{10, 20, 0, kUpper},     {30, 20, 0, kUpper},
                           {19, 20, kMove, kExact}, {20, 20, kMove, kLower},
                           {21, 20, kMove, kLower}, {-999998, -999900, kMove, kExact}};
  for (const Row& row : kRows) {
    CurrentSlot() = {};
    HashInsert(row.score, row.beta, 5, row.move);
    EXPECT_EQ(CurrentSlot().bound, row.bound) << row.score << " against " << row.beta;
    EXPECT_EQ(CurrentSlot().score, row.score);
  }
}

TEST_F(Hash, ProbeOfAnEmptySlotFindsNothing) {
  int score = 77;
  Move move = kMove;
  EXPECT_FALSE(HashLook(-1, 1, 0, score, move));
  EXPECT_EQ(score, 77);
  EXPECT_EQ(move, kMove);
}

TEST_F(Hash, ScoreIsUsedWhenItsBoundSettlesTheWindow) {
  struct Row {
    int bound;
    int score;
    int alpha;
    int beta;
    bool usable;
  };
  constexpr Row kRows[] = {{kExact, 0, 100, 200, true},    {kExact, 150, 100, 200, true},
                           {kExact, 300, 100, 200, true},  {kLower, 199, 100, 200, false},
                           {kLower, 200, 100, 200, true},  {kLower, 201, 100, 200, true},
                           {kUpper, 99, 100, 200, true},   {kUpper, 100, 100, 200, true},
                           {kUpper, 101, 100, 200, false}, {kEmpty, 150, 100, 200, false}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "bound " << row.bound << " score " << row.score);
    CurrentSlot() = Entry(row.bound, 6, row.score, kMove);
    int score = 12345;
    Move move = 0;
    EXPECT_EQ(HashLook(row.alpha, row.beta, 6, score, move), row.usable);
    EXPECT_EQ(score, row.usable ? row.score : 12345);
    EXPECT_EQ(move, kMove);
  }
}

TEST_F(Hash, ProbeThatMatchesButIsTooShallowStillYieldsTheMove) {
  CurrentSlot() = Entry(kExact, 4, 50, kMove);
  int score = 12345;
  Move move = 0;
  EXPECT_FALSE(HashLook(-1000, 1000, 5, score, move));
  EXPECT_EQ(move, kMove);
  EXPECT_EQ(score, 12345);
  EXPECT_TRUE(HashLook(-1000, 1000, 4, score, move));
  EXPECT_EQ(score, 50);
}

TEST_F(Hash, MatchWithoutAMoveClearsTheCallersMove) {
  CurrentSlot() = Entry(kUpper, 4, 50, 0);
  int score = 0;
  Move move = kMove;
  EXPECT_TRUE(HashLook(60, 70, 4, score, move));
  EXPECT_EQ(move, 0u);
}

TEST_F(Hash, EntryIsTrustedOnlyWhenEveryFeatureMatches) {
  struct Row {
    const char* what;
    void (*spoil)(HashEntry&);
  };
  const Row kRows[] = {
      {"key, low word", [](HashEntry& e) { e.key ^= 0x80000000; }},
      {"key, high word", [](HashEntry& e) { e.key ^= std::uint64_t{1} << 32; }},
      {"white key, low word", [](HashEntry& e) { e.white_key ^= 1; }},
      {"white key, high word", [](HashEntry& e) { e.white_key ^= std::uint64_t{1} << 32; }},
      {"white material", [](HashEntry& e) { e.white_pawns ^= 1; }},
      {"black material", [](HashEntry& e) { e.black_pawns ^= 1; }},
      {"extra key", [](HashEntry& e) { e.ext_key ^= 1u << 21; }},
      {"search", [](HashEntry& e) { e.generation ^= 1; }},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    CurrentSlot() = Entry(kExact, 9, 50, kMove);
    row.spoil(CurrentSlot());
    int score = 12345;
    Move move = 0;
    EXPECT_FALSE(HashLook(-1000, 1000, 1, score, move));
    EXPECT_EQ(move, 0u);
    EXPECT_EQ(score, 12345);
  }
}

TEST_F(Hash, SideToMoveHasATableOfItsOwn) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 w");
  HashInsert(5, 10, 3, kMove);
  GoTo("4k3/8/8/8/8/8/4P3/4K3 b");
  int score = 0;
  Move move = 0;
  EXPECT_FALSE(HashLook(-1000, 1000, 0, score, move));
  EXPECT_EQ(move, 0u);
}

TEST_F(Hash, MateScoresComeBackAsTheyWereStored) {
  GoTo(kStart, "e2e4 e7e5");
  HashInsert(999990, 1000000, 3, kMove);
  int score = 0;
  Move move = 0;
  EXPECT_TRUE(HashLook(-1000000, 1000000, 3, score, move));
  EXPECT_EQ(score, 999990);
}

TEST_F(Hash, DepthAndBoundDecideWhatIsReplaced) {
  struct Row {
    int old_bound;
    int old_depth;
    int new_bound;
    int new_depth;
    bool replaced;
  };
  constexpr Row kRows[] = {
      {kUpper, 9, kExact, 5, true},    // 5 + 6 >= 9 + 2
      {kUpper, 10, kExact, 5, false},  // 5 + 6 < 10 + 2
      {kExact, 6, kUpper, 5, false},   // a shallower upper bound over a deeper exact entry
      {kExact, 5, kUpper, 9, true},    // equality: the new one wins
      {kExact, 5, kUpper, 8, false},  {kExact, 5, kLower, 7, true},  {kExact, 5, kLower, 6, false},
      {kLower, 5, kUpper, 7, true},   {kLower, 5, kUpper, 6, false}, {kLower, 5, kExact, 3, true},
      {kLower, 5, kExact, 2, false},  {kExact, 5, kExact, 5, true},  {kExact, 5, kExact, 4, false},
      {kUpper, 5, kUpper, 5, true},   {kUpper, 5, kUpper, 4, false}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "bound " << row.old_bound << " depth " << row.old_depth
                                    << ", then " << row.new_bound << " " << row.new_depth);
    // Whatever position the slot held.
    HashEntry other = Entry(row.old_bound, row.old_depth, 1, kMove + 1);
    other.key ^= std::uint64_t{0xFFFF} << 32;
    CurrentSlot() = other;
    HashInsert(row.new_bound == kLower ? 10 : 9, 10, row.new_depth,
               row.new_bound == kUpper ? 0 : kMove);
    const HashEntry& now = CurrentSlot();
    EXPECT_EQ(now.key, row.replaced ? std::uint64_t{g.key} : other.key);
    EXPECT_EQ(static_cast<int>(now.bound), row.replaced ? row.new_bound : row.old_bound);
    EXPECT_EQ(static_cast<int>(now.depth), row.replaced ? row.new_depth : row.old_depth);
    if (!row.replaced) {
      EXPECT_EQ(now.move, other.move);
    }
  }
}

TEST_F(Hash, DepthLowHalvesUntilNoDepthIsAboveTwo) {
  struct Row {
    int depth;
    int other;  // depth of another entry, in the other table
    int lowered;
    int other_lowered;
  };
  constexpr Row kRows[] = {{13, 0, 1, 0},  // 13, 6, 3, 1
                           {0, 13, 0, 1}, {5, 0, 2, 0},  {4, 4, 2, 2}, {3, 0, 1, 0},
                           {2, 0, 1, 0},  {1, 0, 0, 0},  {6, 2, 1, 0}, {13, 5, 1, 0},
                           {5, 13, 0, 1}, {90, 1, 2, 0}, {0, 0, 0, 0}, {7, 6, 1, 1}};
  ASSERT_TRUE(HashAllocate(kSmall));
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.depth << " and " << row.other);
    HashClear();
    hash[White][0] = OfDepth(row.depth);
    hash[Black][kSmall - 1] = OfDepth(row.other);
    HashDepthLow();
    EXPECT_EQ(static_cast<int>(hash[White][0].depth), row.lowered);
    EXPECT_EQ(static_cast<int>(hash[Black][kSmall - 1].depth), row.other_lowered);
  }
}

TEST_F(Hash, DepthLowChangesNothingButDepths) {
  ASSERT_TRUE(HashAllocate(kSmall));
  HashClear();
  HashEntry wanted = Entry(kLower, 9, 321, kMove);
  CurrentSlot() = wanted;
  HashDepthLow();
  wanted.depth = 2;
  EXPECT_EQ(std::memcmp(static_cast<const void*>(&CurrentSlot()), &wanted, sizeof wanted), 0);
}

TEST_F(Hash, DepthLowPassesOverEntriesOfEarlierSearches) {
  ASSERT_TRUE(HashAllocate(kSmall));
  hash[White][0] = OfDepth(90);
  HashClear();
  hash[White][1] = OfDepth(4);
  HashDepthLow();
  EXPECT_EQ(hash[White][1].depth, 2);
}

TEST_F(Hash, DampIsThePercentageOfEntriesWithADepth) {
  ASSERT_TRUE(HashAllocate(kSmall));
  HashClear();
  EXPECT_EQ(HashDamp(), 0);
  CurrentSlot() = Entry(kExact, 0, 1, kMove);  // without a depth it does not count
  EXPECT_EQ(HashDamp(), 0);
  std::fill_n(hash[White], kSmall / 2, OfDepth(1));
  EXPECT_EQ(HashDamp(), 25);
  std::fill_n(hash[Black], kSmall, OfDepth(2));
  EXPECT_EQ(HashDamp(), 75);
  hash[Black][kSmall - 1] = OfDepth(0);
  EXPECT_EQ(HashDamp(), 74);
  for (HashEntry* table : hash) std::fill_n(table, kSmall, OfDepth(90));
  EXPECT_EQ(HashDamp(), 100);
}

TEST_F(Hash, EmptyNodeTellsWhetherASlotMayBeUsed) {
  struct Row {
    int side;
    std::uint32_t key_lo;
    std::uint32_t key_hi;
    int depth;
    bool usable;
  };
  constexpr Row kRows[] = {
      {White, 0x12345678, 0x9ABCDEF0, 9, false},  // that very position
      {White, 0x12345678, 0x9ABCDEF0, 5, false},
      {White, 0x12345678, 0x00000000, 5, true},  // another one in its slot, not deeper
      {White, 0x12345678, 0x00000000, 6, true},
      {White, 0x12345678, 0x00000000, 4, false},  // deeper
      {White, 0x92345678, 0x9ABCDEF0, 5, true},
      {White, 0x92345678, 0x9ABCDEF0, 4, false},
      {Black, 0x12345678, 0x9ABCDEF0, 0, true},  // empty slot
      {White, 0x12345679, 0x9ABCDEF0, 0, true},
      {White, 0x12345679, 0x9ABCDEF0, -1, false}};
  HashEntry& entry = hash[White][0x12345678 & (Hash_Size - 1)];
  entry = OfDepth(5);
  entry.key = 0x9ABCDEF012345678;
  for (const Row& row : kRows) {
    EXPECT_EQ(HashEmptyNode(row.side, row.key_lo, row.key_hi, row.depth), row.usable)
        << std::hex << row.side << ' ' << row.key_lo << ' ' << row.key_hi << ' ' << row.depth;
  }
}

}  // namespace

}  // namespace tarvyle
