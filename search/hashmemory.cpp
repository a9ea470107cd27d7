#include "search/hashmemory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
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

constexpr std::size_t kSmallPage = 4096;
constexpr std::size_t kLargePage = std::size_t{2} << 20;  // its size and alignment
constexpr std::uint32_t kLastGeneration = 255;            // the field's greatest

bool in_parts = false;      // as HashClearInParts has been told
bool is_populated = false;  // all memory of both tables has been handed out

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
  is_populated = false;
}

// Clears the part of both tables that belongs to a generation. Each entry is cleared once in a
// round of generations and always at the same place of it, so it is gone when its own generation
// comes again.
void ClearPart(std::uint32_t generation) {
  const auto size = static_cast<std::size_t>(Hash_Size);
  const std::size_t begin = size * (generation - 1) / kLastGeneration;
  const std::size_t end = size * generation / kLastGeneration;
  for (HashEntry* table : hash) std::fill(table + begin, table + end, HashEntry{});
}

// Older systems do not know how to hand out memory when they are asked: then it is used. Where
// there is none left the searches will see how far they get, as they do without all this.
void HandOut(HashEntry* table, std::size_t bytes) {
#ifdef MADV_POPULATE_WRITE
  if (madvise(table, bytes, MADV_POPULATE_WRITE) == 0 || errno != EINVAL) return;
#endif
  for (std::size_t at = 0; at < bytes; at += kSmallPage) {
    volatile unsigned char& byte = reinterpret_cast<unsigned char*>(table)[at];
    const unsigned char same = byte;
    byte = same;
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
  if (in_parts) {
    hash_generation = hash_generation % kLastGeneration + 1;
    ClearPart(hash_generation);
    return;
  }
  if (hash_generation < kLastGeneration) {
    ++hash_generation;
    return;
  }
  Renew();
  hash_generation = 1;
}

void HashClearInParts(bool wanted) {
  if (in_parts == wanted) return;
  in_parts = wanted;
  Renew();
  hash_generation = 1;
}

void HashPopulate() {
  if (is_populated) return;
  for (HashEntry* table : hash) HandOut(table, TableBytes(Hash_Size));
  is_populated = true;
}

}  // namespace tarvyle
