#pragma once

#include <span>

#include "position/types.h"

// The randomised root search: not always the best move, but one that comes close to it.

namespace tarvyle {

// Chooses a move by the randomised root search: half the allowance for the best move, most of the
// allowance for candidates within two pawns of it, and, when the leaders are near-equal, a tenth
// for random play-outs. Reports its stages (base/message.h). Writes the move and returns true, or
// returns false when there is none. `limit_time` is the same afterwards.
bool Rnd_Root_Search(Move& move);

// A move that may be played, with its score and what play-outs add to it.
struct Candidate {
  Move move;
  int value;
};

// Plays random games after each candidate in turn, while the time lasts, and adds their results to
// its value. A game that the stop cuts short adds nothing. Ends at once with a value that comes
// near the end of an int's range.
void AddPlayouts(std::span<Candidate> candidates);

// Plays random moves to the end from the current position. The result is the side to move's: -1
// when it is the one that is checkmated in the end, 1 when the other is, 0 for everything else, a
// stopped search included.
int RndSearch();

}  // namespace tarvyle
