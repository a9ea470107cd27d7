#pragma once

#include <cstdint>

#include "position/types.h"

// The transposition tables and their memory: one table per side to move, one entry per slot.

namespace tarvyle {

enum Bound : int { kEmpty = 0, kUpper = 1, kLower = 2, kExact = 3 };

// One position in 32 bytes, so that two entries fill a cache line and none crosses one. A stored
// position is trusted only when both keys, both sides' material and the extra key agree. Nothing
// that identifies a position is left out: Black's key is the position key without White's, and
// material is a whole number of pawns below 2^11.
struct HashEntry {
  std::uint64_t key;               // position key
  std::uint64_t white_key;         // White's pieces only
  std::int32_t score;              // as searched: no adjustment for the distance to mate
  Move move;                       // best move, 0 if none
  std::uint32_t ext_key : 22;      // pos_ext_key()
  std::uint32_t bound : 2;         // Bound, never kEmpty once stored
  std::uint32_t generation : 8;    // hash_generation when it was stored
  std::uint32_t white_pawns : 11;  // material in pawns
  std::uint32_t black_pawns : 11;
  std::uint32_t depth : 10;  // remaining depth that the score was searched to
};
static_assert(sizeof(HashEntry) == 32);

// By side to move: arrays of Hash_Size entries.
extern HashEntry* hash[2];

// Entries per table, a power of two.
extern int Hash_Size;

// Number of the search whose entries count, 1..255; an entry with any other is empty. Fresh memory
// has 0.
extern std::uint32_t hash_generation;

// Where a position with this low half of its key is looked for.
inline HashEntry& HashSlot(int side, std::uint32_t key_lo) {
  return hash[side][key_lo & static_cast<std::uint32_t>(Hash_Size - 1)];
}

// Allocates tables of `entries` entries each, in place of those there are, and fills the position
// keys when that has not been done. False without memory: the tables that there are stay.
bool HashAllocate(int entries);

// Empties both tables. Costs nothing, but for every 255th time: then their memory goes back to the
// system, which clears each page of it when it is used again.
void HashClear();

// For those who can have no search wait for that: from now on (or no longer) HashClear clears a
// 255th of the memory each time instead, and never gives any of it back. Empties the tables when
// that changes anything.
void HashClearInParts(bool wanted);

// Has the system hand out all memory of both tables now, and not page by page while they are used.
// Takes its time, once for each allocation.
void HashPopulate();

}  // namespace tarvyle
