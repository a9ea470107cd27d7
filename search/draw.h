#pragma once

namespace tarvyle {

inline constexpr int kFiftyMoves = 100;  // so many reversible half-moves in a row are a draw

// Whether the current position is a draw by the fifty-move rule or by repetition. The first earlier
// occurrence counts when it is the search root or lies inside the search, the second anywhere. Only
// positions that a move led to count: of a root that was set up, with no move before it, nothing is
// recorded, so that its first return is no draw.
bool DrawByRule();

}  // namespace tarvyle
