#pragma once

#include <cstdint>

#include "position/record.h"
#include "position/types.h"

// The transposition table: one table per side to move, one entry per slot.

namespace tarvyle {

enum Bound : int { kEmpty = 0, kUpper = 1, kLower = 2, kExact = 3 };

// 52 bytes; a stored position is trusted only when all of the first six fields agree.
struct HashEntry {
  Key64 key;
  Key64 white_key;
  Key64 black_key;
  std::int32_t white_material;
  std::int32_t black_material;
  std::uint32_t ext_key;  // pos_ext_key()
  std::int32_t score;     // as searched: no adjustment for the distance to mate
  std::int32_t bound;
  std::int32_t depth;  // remaining depth that the score was searched to
  Move move;           // best move, 0 if none
};
static_assert(sizeof(HashEntry) == 52);

// By side to move: arrays of Hash_Size entries.
extern HashEntry* hash[2];

// Entries per table, a power of two.
extern int Hash_Size;

// Sizes and allocates the tables by the configured "hash size" (twice the base-two logarithm of the
// entries per table) and fills the position keys. Called once at start-up, before any position is
// set up. Prints what it does; on a size below 65536 entries, or without memory, it prints an error
// and ends the process with status 1.
void HashInit();

// Allocates tables of `entries` entries each, in place of those there are, and fills the position
// keys when that has not been done. False without memory.
bool HashAllocate(int entries);

// Empties both tables.
void HashClear();

// Probes for the current position. On a full match stores the remembered move in `move`, and when
// the remembered score was searched at least to `depth` and its bound settles the window, stores it
// in `score` and returns true.
bool HashLook(int alpha, int beta, int depth, int& score, Move& move);

// Stores the current position: without a move as an upper bound, with a score below beta as exact,
// else as a lower bound. The slot's old entry stays when its depth + 2 * bound is greater.
void HashInsert(int score, int beta, int depth, Move move);

// Ages the tables: halves all depths until none is above 2.
void HashDepthLow();

// Fill rate in percent: entries with a depth other than 0.
int HashDamp();

// Whether a search to `depth` may use the slot of a key: false when it holds that very key or a
// greater depth.
bool HashEmptyNode(int side, std::uint32_t key_lo, std::uint32_t key_hi, int depth);

// What the piece keys do not cover: en-passant square (bits 0-5, only when a capture is possible),
// king squares (6-11 White, 12-17 Black), castling rights with king and rook at home (18-21).
std::uint32_t pos_ext_key();

}  // namespace tarvyle
