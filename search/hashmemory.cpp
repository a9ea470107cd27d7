#include "search/hashmemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "position/hashkey.h"
#include "position/types.h"

namespace tarvyle {

HashEntry* hash[2];
int Hash_Size = 0x80000;
std::uint32_t hash_generation = 1;

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;  // its size and alignment
constexpr std::uint32_t kLastGeneration = 255;            // the field's greatest

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

// Gives both tables back to the system, which hands them out again zeroed when they are used.
void Renew() {
  // Memory from malloc may have been used before: its pages are dropped, and only written where the
  // system does not let go of them (locked memory).
  const std::size_t bytes = TableBytes(Hash_Size);
  for (HashEntry* table : hash) {
    if (madvise(table, bytes, MADV_DONTNEED) != 0) std::memset(static_cast<void*>(table), 0, bytes);
  }
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
  Renew();
  return true;
}

// Touching gigabytes for every move would cost seconds: only when the generations are used up is
// the memory really cleared.
void HashClear() {
  if (hash_generation < kLastGeneration) {
    ++hash_generation;
    return;
  }
  Renew();
  hash_generation = 1;
}

}  // namespace tarvyle
