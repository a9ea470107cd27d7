#include "search/hashinit.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/message.h"
#include "base/number.h"
#include "base/property.h"
#include "position/hashkey.h"
#include "position/types.h"
#include "search/hash.h"

namespace tarvyle {

namespace {

constexpr int kMinEntries = 0x10000;
constexpr int kMinHashSize = 32;  // a smaller number is refused, whatever the shift makes of it
constexpr std::size_t kLargePage = std::size_t{2} << 20;  // its size and alignment

// Bytes that the line about the memory counts for an entry of both tables: that line stays as it
// is, whatever an entry really takes.
constexpr std::uint32_t kToldBytes = 104;

// The configured number is twice the base-two logarithm of the entry count; odd ones round down. 0
// for a number below the least, or none at all. Large numbers wrap, and may be too few then.
int EntriesFromText(const char* text) {
  const int number = LeadingInteger(text, 0);
  return number < kMinHashSize ? 0 : static_cast<int>(1u << (number / 2 & 31));
}

// Tables beyond the machine's memory would be granted now and end the process when they are used.
bool FitsIntoMachine(std::size_t bytes) {
  const long pages = sysconf(_SC_PHYS_PAGES);
  const long page_size = sysconf(_SC_PAGESIZE);
  if (pages <= 0 || page_size <= 0) return true;
  return bytes <= static_cast<std::size_t>(pages) * static_cast<std::size_t>(page_size);
}

// The generator starts from its fixed seed, and all keys are drawn once, White's first.
void FillKeysOnce() {
  if (PieceKey(Pawn, White, A8) != 0) return;
  FillKeys(White);
  FillKeys(Black);
}

// Bytes of one table in whole large pages. A table of a configured size fills them.
std::size_t TableBytes(int entries) {
  const std::size_t bytes = static_cast<std::size_t>(entries) * sizeof(HashEntry);
  return (bytes + kLargePage - 1) / kLargePage * kLargePage;
}

// Large pages save address look-ups. Refused, the small ones serve as well.
HashEntry* AllocateTable(int entries) {
  void* table = std::aligned_alloc(kLargePage, TableBytes(entries));
  if (table != nullptr) madvise(table, TableBytes(entries), MADV_HUGEPAGE);
  return static_cast<HashEntry*>(table);
}

}  // namespace

bool HashAllocate(int entries) {
  FillKeysOnce();
  if (!FitsIntoMachine(2 * TableBytes(entries))) return false;
  HashEntry* const white = AllocateTable(entries);
  HashEntry* const black = AllocateTable(entries);
  if (white == nullptr || black == nullptr) {
    std::free(white);
    std::free(black);
    return false;
  }
  std::free(hash[White]);
  std::free(hash[Black]);
  hash[White] = white;
  hash[Black] = black;
  Hash_Size = entries;
  HashRenew();
  return true;
}

void HashRenew() {
  // Memory from malloc may have been used before: its pages are dropped, and only written where the
  // system does not let go of them (locked memory).
  const std::size_t bytes = TableBytes(Hash_Size);
  for (HashEntry* table : hash) {
    if (madvise(table, bytes, MADV_DONTNEED) != 0) std::memset(static_cast<void*>(table), 0, bytes);
  }
}

void HashInit() {
  Message("# hash table init: \n");
  const char* text = property_get("hash size");
  const int entries = EntriesFromText(text);
  if (entries < kMinEntries) {
    std::fprintf(stderr, "# error: \"hash size\"=%s   \n", text);
    std::exit(1);
  }
  if (!HashAllocate(entries)) {
    std::fputs("# error: HashInit: out of memory \n", stderr);
    std::exit(1);
  }
  // A 32-bit number that wraps for the largest tables.
  const std::uint32_t bytes = static_cast<std::uint32_t>(entries) * kToldBytes;
  Message("# get mem %d byte(s) \n", static_cast<int>(bytes));
}

}  // namespace tarvyle
