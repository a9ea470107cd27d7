#include "search/hashinit.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "base/message.h"
#include "base/number.h"
#include "base/property.h"
#include "search/hashmemory.h"

namespace tarvyle {

namespace {

constexpr int kMinEntries = 0x10000;
constexpr int kMinHashSize = 32;  // a smaller number is refused, whatever the shift makes of it

// Bytes that the line about the memory counts for an entry of both tables: that line stays as it
// is, whatever an entry really takes.
constexpr std::uint32_t kToldBytes = 104;

// The configured number is twice the base-two logarithm of the entry count; odd ones round down. 0
// for a number below the least, or none at all. Large numbers wrap, and may be too few then.
int EntriesFromText(const char* text) {
  const int number = LeadingInteger(text, 0);
  return number < kMinHashSize ? 0 : static_cast<int>(1u << (number / 2 & 31));
}

}  // namespace

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
