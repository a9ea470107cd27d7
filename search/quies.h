#pragma once

namespace tarvyle {

// Resolves captures and promotions at the horizon: negamax with the static evaluation as a floor,
// without checks or transposition table, and without a limit of depth but that no move is looked at
// deeper than ply kMaxSearchPly. Returns a score from the side to move's point of view, never below
// alpha; 0 once the search is stopped. At ply 0 the root list is used as it stands.
int Quies(int alpha, int beta);

}  // namespace tarvyle
