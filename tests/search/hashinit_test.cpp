// The configured size of the transposition tables.

#include "search/hashinit.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <string>

#include "position/hashkey.h"
#include "tests/support/build_kind.h"
#include "tests/support/machine_memory.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr double kEntryPairBytes = 2 * sizeof(HashEntry);

double TableBytes(int number) { return kEntryPairBytes * static_cast<double>(1u << number / 2); }

void InitWith(const std::string& number) {
  property_add("hash size", number.c_str());
  HashInit();
}

void InitWithin(rlim_t megabytes, const std::string& number) {
  LimitMemory(megabytes);
  InitWith(number);
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
