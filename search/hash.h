#pragma once

#include <cstdint>

#include "position/record.h"
#include "position/types.h"

// The transposition table: one table per side to move, one entry per slot.

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

// Empties both tables. Costs nothing, but for every 255th time.
void HashClear();

// Probes for the current position. On a full match stores the remembered move in `move`, and when
// the remembered score was searched at least to `depth` and its bound settles the window, stores it
// in `score` and returns true.
bool HashLook(int alpha, int beta, int depth, int& score, Move& move);

// Stores the current position: without a move as an upper bound, with a score below beta as exact,
// else as a lower bound. The slot's old entry stays when its depth + 2 * bound is greater. Takes
// depths of 0..1023; the search stores from 1 up.
void HashInsert(int score, int beta, int depth, Move move);

// Ages the tables: halves all depths, once at least, until none is above 2.
void HashDepthLow();

// Fill rate in percent: entries with a depth other than 0.
// Offered to others; the engine itself never calls it.
int HashDamp();

// Whether a search to `depth` may use the slot of a key: false when it holds that very key or a
// greater depth.
bool HashEmptyNode(int side, std::uint32_t key_lo, std::uint32_t key_hi, int depth);

// What the piece keys do not cover: en-passant square (bits 0-5, only when a capture is possible),
// king squares (6-11 White, 12-17 Black), castling rights with king and rook at home (18-21).
std::uint32_t pos_ext_key();

// Where a position with this low half of its key is looked for.
inline HashEntry& HashSlot(int side, std::uint32_t key_lo) {
  return hash[side][key_lo & static_cast<std::uint32_t>(Hash_Size - 1)];
}

// Fetches the slot of the current position, which will be probed soon, into the cache.
inline void HashPrefetch() { __builtin_prefetch(&HashSlot(g.side, g.key.low)); }

}  // namespace tarvyle
