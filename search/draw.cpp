#include "search/draw.h"

#include <cstdint>

#include "position/record.h"
#include "position/types.h"

namespace tarvyle {

namespace {

constexpr int kTooFewToRepeat = 2;  // reversible half-moves, which cannot lead back

// Walks the key history back. The entry of the last move is the current position itself and always
// the first match. `left` is how many positions may still be found: when it is used up, or at a
// move that cannot be undone, the walk ends.
bool HasRepeated() {
  std::uint32_t left = repetition_set[g.key.low & kRepetitionMask];
  if (left <= 1) return false;
  int matches = 0;
  for (int i = g.game_len + ply - 1; i >= 0; --i) {
    if (g.game_keys[i] == g.key) {
      ++matches;
      if (matches == 3 || (matches == 2 && i >= g.game_len - 1)) return true;
      if (--left == 0) return false;
    }
    if (!IsReversible(g.game_moves[i])) return false;
  }
  return false;
}

}  // namespace

bool DrawByRule() {
  if (g.fifty <= kTooFewToRepeat) return false;
  return g.fifty >= kFiftyMoves || HasRepeated();
}

}  // namespace tarvyle
