#include "eval/cache.h"

#include "position/directions.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/types.h"

namespace tarvyle {

namespace {

constexpr std::uint64_t kCacheSlots = std::uint64_t{1} << 16;
constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;  // spreads small numbers over all bits

CachedScore cache[kCacheSlots];

// Differs from table to table of piece-square values, so that no older score is ever met.
std::uint64_t generation = kSpread;

}  // namespace

// `state`: the rights of both colours in bits 0-3, who has castled in 4 and 5, the direction table
// in 6.
std::uint64_t EvaluationKey() {
  const std::uint64_t state = (g.castle & 15) | (g.castled[White] != 0 ? 16u : 0u) |
                              (g.castled[Black] != 0 ? 32u : 0u) | (dir == dir_black ? 64u : 0u);
  return g.key ^ board_sets.slot_key ^ state * kSpread ^ generation;
}

CachedScore& CacheSlot(std::uint64_t key) { return cache[key & (kCacheSlots - 1)]; }

void ForgetScores() { generation = (generation + 1) * kSpread; }

}  // namespace tarvyle
