// Allocating and emptying the transposition tables.

#include "search/hashmemory.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "position/hashkey.h"
#include "tests/support/build_kind.h"
#include "tests/support/machine_memory.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using HashMemory = SearchTest;

// Whether anything is found in the tables for the current position; they must be readable.
bool HashLookAnywhere() {
  int score = 0;
  Move move = 0;
  return HashLook(-1, 1, 0, score, move);
}

// For a child process: ends with 0 when an allocation is refused and the tables are as they were.
void AllocateWithin(rlim_t megabytes, int entries) {
  const HashEntry* const before[2] = {hash[White], hash[Black]};
  const int size = Hash_Size;
  LimitMemory(megabytes);
  if (HashAllocate(entries)) std::exit(4);
  const bool same = hash[White] == before[White] && hash[Black] == before[Black];
  std::exit(same && Hash_Size == size && !HashLookAnywhere() ? 0 : 5);
}

TEST_F(HashMemory, RefusedSizeLeavesTheTablesThatThereAre) {
  if (2.0 * sizeof(HashEntry) * (1 << 30) <= MachineBytes())
    GTEST_SKIP() << "no size is beyond this machine";
  HashEntry* const before[2] = {hash[White], hash[Black]};
  EXPECT_FALSE(HashAllocate(1 << 30));
  EXPECT_EQ(hash[White], before[White]);
  EXPECT_EQ(hash[Black], before[Black]);
  EXPECT_EQ(Hash_Size, kReferenceEntries);
}

TEST_F(HashMemory, SecondTableRefusedLeavesTheTablesThatThereAre) {
  if (kAddressSanitizer) GTEST_SKIP() << "the address sanitizer needs its address space";
  EXPECT_EXIT(AllocateWithin(700, 1 << 24), testing::ExitedWithCode(0), "");
}

TEST_F(HashMemory, TablesStartEmptyEvenInUsedMemory) {
  ASSERT_TRUE(HashAllocate(0x20000));
  for (HashEntry* table : hash)
    std::memset(static_cast<void*>(table), 1, sizeof(HashEntry) * 0x20000);
  ASSERT_TRUE(HashAllocate(0x10000));
  for (const HashEntry* table : hash) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(table);
    const auto used = [](unsigned char byte) { return byte != 0; };
    EXPECT_EQ(std::count_if(bytes, bytes + sizeof(HashEntry) * 0x10000, used), 0);
  }
}

// How many pages of the tables take memory.
int PagesInUse() {
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  std::size_t used = 0;
  for (HashEntry* table : hash) {
    const auto begin = reinterpret_cast<std::uintptr_t>(table) / page * page;
    const auto end = reinterpret_cast<std::uintptr_t>(table + Hash_Size);
    std::vector<unsigned char> states((end - begin + page - 1) / page);
    if (mincore(reinterpret_cast<void*>(begin), end - begin, states.data()) != 0) return -1;
    used += static_cast<std::size_t>(std::count_if(
        states.begin(), states.end(), [](unsigned char state) { return (state & 1) != 0; }));
  }
  return static_cast<int>(used);
}

TEST_F(HashMemory, EmptiedTablesTakeNoMemory) {
  ASSERT_TRUE(HashAllocate(0x20000));
  EXPECT_EQ(PagesInUse(), 0);
  for (HashEntry* table : hash)
    std::memset(static_cast<void*>(table), 1, sizeof(HashEntry) * 0x20000);
  EXPECT_GE(PagesInUse(), 2 * 1024);
  hash_generation = 255;  // the last: the next search begins with fresh memory
  HashClear();
  EXPECT_EQ(PagesInUse(), 0);
}

TEST_F(HashMemory, IsHandedOutBeforeItIsUsed) {
  ASSERT_TRUE(HashAllocate(0x20000));
  hash[White][12345].key = 77;
  HashPopulate();
  EXPECT_GE(PagesInUse(), 2 * 1024);
  EXPECT_EQ(hash[White][12345].key, 77u) << "what stands in it stays";
  EXPECT_EQ(hash[Black][12345].key, 0u);
  ASSERT_TRUE(HashAllocate(0x20000));
  EXPECT_EQ(PagesInUse(), 0);
  HashPopulate();
  EXPECT_GE(PagesInUse(), 2 * 1024) << "and anew after each allocation";
}

// While it lives, the tables are cleared in parts.
class InParts {
 public:
  InParts() { HashClearInParts(true); }
  ~InParts() { HashClearInParts(false); }
  InParts(const InParts&) = delete;
  InParts& operator=(const InParts&) = delete;
};

// Entries that a search would take for its own.
std::int64_t EntriesThatCount() {
  std::int64_t count = 0;
  for (const HashEntry* table : hash) {
    count += std::count_if(table, table + Hash_Size, [](const HashEntry& entry) {
      return entry.bound != kEmpty && entry.generation == (hash_generation & 0xFF);
    });
  }
  return count;
}

// One in so many slots, others each time: an entry is written over after that many searches.
constexpr int kSlotsApart = 300;

void UseSlots(int search) {
  for (HashEntry* table : hash) {
    for (int i = search % kSlotsApart; i < Hash_Size; i += kSlotsApart) {
      table[i].bound = kExact;
      table[i].generation = hash_generation & 0xFF;
    }
  }
}

void SearchAndExpectEmptyTables(int searches) {
  for (int search = 0; search < searches; ++search) {
    HashClear();
    ASSERT_EQ(EntriesThatCount(), 0) << search;
    UseSlots(search);
    ASSERT_GT(EntriesThatCount(), 0) << search;
  }
}

TEST_F(HashMemory, IsEmptyForEachSearchWhenItIsClearedInParts) {
  ASSERT_TRUE(HashAllocate(0x400));
  const InParts in_parts;
  SearchAndExpectEmptyTables(1000);
}

TEST_F(HashMemory, IsNeverGivenBackWhenItIsClearedInParts) {
  ASSERT_TRUE(HashAllocate(0x20000));
  const InParts in_parts;
  HashPopulate();
  for (int search = 0; search < 300; ++search) {
    HashClear();
    ASSERT_GE(PagesInUse(), 2 * 1024) << search;
  }
}

TEST_F(HashMemory, IsEmptiedWhenTheWayOfClearingChanges) {
  ASSERT_TRUE(HashAllocate(0x400));
  SearchAndExpectEmptyTables(200);
  {
    const InParts in_parts;
    SearchAndExpectEmptyTables(280);
  }
  SearchAndExpectEmptyTables(280);
}

TEST_F(HashMemory, DrawsTheKeysWhitesFirst) {
  const std::uint32_t kept = seed16;
  seed16 = 11111;
  for (int colour = White; colour <= Black; ++colour) {
    for (int piece = Pawn; piece <= King; ++piece) {
      for (Square square = 0; square < kSquares; ++square) {
        ASSERT_EQ(PieceKey(piece, colour, square), Rand64());
      }
    }
  }
  EXPECT_EQ(seed16, kept) << "nothing else has been drawn";
}

}  // namespace

}  // namespace tarvyle
