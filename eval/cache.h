#pragma once

#include <cstdint>

// Remembers evaluations within one search: the same position is often reached in quiescence.

namespace tarvyle {

// What an evaluation gives besides material.
struct CachedScore {
  std::uint64_t key;
  std::int32_t positional;  // White's positional total minus Black's
  std::uint8_t hanging[2];  // code of the dearest hanging piece by colour, 0 for none
};

// Key of everything that the evaluation reads: board, slots of the pieces, castling, the direction
// table in use, and the piece-square tables.
std::uint64_t EvaluationKey();

// The place of a key. It holds the score of that key when its `key` field says so.
CachedScore& CacheSlot(std::uint64_t key);

// Forgets all scores; called whenever the piece-square tables change.
void ForgetScores();

}  // namespace tarvyle
