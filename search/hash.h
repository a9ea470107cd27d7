#pragma once

#include <cstdint>

#include "position/record.h"
#include "position/types.h"
#include "search/hashmemory.h"  // IWYU pragma: export

// What the search remembers of positions, and what it looks up there.

namespace tarvyle {

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

// Fetches the slot of the current position, which will be probed soon, into the cache.
inline void HashPrefetch() { __builtin_prefetch(&HashSlot(g.side, g.key.low)); }

}  // namespace tarvyle
