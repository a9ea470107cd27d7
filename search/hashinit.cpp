// Sizing and allocating the transposition tables.

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "base/property.h"
#include "position/hashkey.h"
#include "search/hash.h"

namespace tarvyle {

namespace {

constexpr int kMinEntries = 0x10000;

// The configured number is twice the base-two logarithm of the entry count; odd ones round down.
int EntriesFromText(const char* text) {
  const int number = std::atoi(text);
  return static_cast<int>(1u << (number / 2 & 31));
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
  if (HashRnd(White, Pawn, A8) != 0) return;
  FillKeys(White);
  FillKeys(Black);
}

}  // namespace

bool HashAllocate(int entries) {
  FillKeysOnce();
  const std::size_t bytes = static_cast<std::size_t>(entries) * sizeof(HashEntry);
  if (!FitsIntoMachine(2 * bytes)) return false;
  for (HashEntry*& table : hash) {
    std::free(table);
    table = static_cast<HashEntry*>(std::malloc(bytes));
    if (table == nullptr) return false;
  }
  Hash_Size = entries;
  return true;
}

void HashInit() {
  std::puts("# hash table init: ");
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
  const std::uint32_t bytes = static_cast<std::uint32_t>(entries) * 104u;
  std::printf("# get mem %d byte(s) \n", static_cast<int>(bytes));
}

}  // namespace tarvyle
