// Sizing and allocating the transposition tables.

#include "search/hashinit.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "position/hashkey.h"
#include "tests/support/build_kind.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr double kEntryPairBytes = 2 * sizeof(HashEntry);

double MachineBytes() {
  return static_cast<double>(sysconf(_SC_PHYS_PAGES)) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double TableBytes(int number) { return kEntryPairBytes * static_cast<double>(1u << number / 2); }

void InitWith(const std::string& number) {
  property_add("hash size", number.c_str());
  HashInit();
}

// For a child process: as much address space as given, all tables included.
void LimitMemory(rlim_t megabytes) {
  rlimit limit{};
  limit.rlim_cur = megabytes << 20;
  limit.rlim_max = limit.rlim_cur;
  if (setrlimit(RLIMIT_AS, &limit) != 0) std::exit(3);
}

void InitWithin(rlim_t megabytes, const std::string& number) {
  LimitMemory(megabytes);
  InitWith(number);
}

// Whether anything is found in the tables for the current position; they must be readable.
bool HashLookAnywhere() {
  int score = 0;
  Move move = 0;
  return HashLook(-1, 1, 0, score, move);
}

void InitAloud(const std::string& number) {
  SayAloud();
  InitWith(number);
  std::exit(0);
}

using HashInitialisation = SearchTest;

TEST_F(HashInitialisation, ConfiguredNumberIsTwiceTheLogarithmOfTheEntries) {
  struct Row {
    const char* number;
    int entries;
    const char* bytes;
  };
  constexpr Row kRows[] = {{"32", 0x10000, "6815744"},  {"33", 0x10000, "6815744"},
                           {"34", 0x20000, "13631488"}, {"38", 0x80000, "54525952"},
                           {"39", 0x80000, "54525952"}, {" 36 entries", 0x40000, "27262976"},
                           {"96", 0x10000, "6815744"}};  // 48 mod 32
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.number);
    property_add("hash size", row.number);
    EXPECT_EQ(Printed(HashInit),
              std::string("# hash table init: \n# get mem ") + row.bytes + " byte(s) \n");
    EXPECT_EQ(Hash_Size, row.entries);
    for (HashEntry* table : hash) {
      ASSERT_NE(table, nullptr);
      table[row.entries - 1].depth = 1;  // the last one is there
    }
  }
}

TEST_F(HashInitialisation, LargeSizesAreReportedAsASignedWord) {
  if (TableBytes(50) > MachineBytes()) GTEST_SKIP() << "this machine has not enough memory";
  EXPECT_EXIT(InitAloud("50"), testing::ExitedWithCode(0), "# get mem -805306368 byte\\(s\\) \n");
}

TEST_F(HashInitialisation, SizesBelow65536EntriesEndTheProcess) {
  // -26 would be shifted as 19, and 2^32 + 38 as 38.
  for (const char* text : {"31", "30", "0", "1", "-1", "-2", "-26", "62", "63", "64", "4294967334",
                           "99999999999999999999", "abc", ""}) {
    SCOPED_TRACE(text);
    EXPECT_EXIT(InitWith(text), testing::ExitedWithCode(1),
                std::string("^# error: \"hash size\"=") + text + "   \n$");
  }
}

TEST_F(HashInitialisation, MissingSizeEndsTheProcess) {
  EXPECT_EXIT(HashInit(), testing::ExitedWithCode(1), "^# error: \"hash size\"=   \n$");
}

TEST_F(HashInitialisation, SizesBeyondTheMachineAreRefusedBeforeTheyHurt) {
  int number = 60;
  if (TableBytes(number) <= MachineBytes()) GTEST_SKIP() << "no size is beyond this machine";
  for (; number > 32 && TableBytes(number) > MachineBytes(); number -= 2) {
    SCOPED_TRACE(number);
    EXPECT_EXIT(InitWith(std::to_string(number)), testing::ExitedWithCode(1),
                "^# error: HashInit: out of memory \n$");
  }
}

TEST_F(HashInitialisation, RefusedAllocationEndsTheProcess) {
  if (kAddressSanitizer) GTEST_SKIP() << "the address sanitizer needs its address space";
  // Room for no table at all, and for one of the two only.
  for (const rlim_t megabytes : {300u, 700u}) {
    EXPECT_EXIT(InitWithin(megabytes, "48"), testing::ExitedWithCode(1),  // twice 512 megabytes
                "^# error: HashInit: out of memory \n$");
  }
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

TEST_F(HashInitialisation, RefusedSizeLeavesTheTablesThatThereAre) {
  if (TableBytes(60) <= MachineBytes()) GTEST_SKIP() << "no size is beyond this machine";
  HashEntry* const before[2] = {hash[White], hash[Black]};
  EXPECT_FALSE(HashAllocate(1 << 30));
  EXPECT_EQ(hash[White], before[White]);
  EXPECT_EQ(hash[Black], before[Black]);
  EXPECT_EQ(Hash_Size, kReferenceEntries);
}

TEST_F(HashInitialisation, SecondTableRefusedLeavesTheTablesThatThereAre) {
  if (kAddressSanitizer) GTEST_SKIP() << "the address sanitizer needs its address space";
  EXPECT_EXIT(AllocateWithin(700, 1 << 24), testing::ExitedWithCode(0), "");
}

TEST_F(HashInitialisation, TablesStartEmptyEvenInUsedMemory) {
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

TEST_F(HashInitialisation, EmptiedTablesTakeNoMemory) {
  ASSERT_TRUE(HashAllocate(0x20000));
  EXPECT_EQ(PagesInUse(), 0);
  for (HashEntry* table : hash)
    std::memset(static_cast<void*>(table), 1, sizeof(HashEntry) * 0x20000);
  EXPECT_GE(PagesInUse(), 2 * 1024);
  HashRenew();
  EXPECT_EQ(PagesInUse(), 0);
}

TEST_F(HashInitialisation, DrawsTheKeysWhitesFirst) {
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

TEST_F(HashInitialisation, DrawsTheKeysOnceOnly) {
  const std::uint32_t seed = seed16;
  const std::uint64_t key = PieceKey(King, Black, H1);
  ASSERT_TRUE(HashAllocate(0x10000));
  property_add("hash size", "32");
  Printed(HashInit);
  EXPECT_EQ(seed16, seed);
  EXPECT_EQ(PieceKey(King, Black, H1), key);
}

}  // namespace

}  // namespace tarvyle
