#pragma once

#include <functional>
#include <random>
#include <string>

#include "position/score.h"

// Positions for the tests of evaluation and book: set-ups, random boards and games.

namespace tarvyle::support {

// Makes `fen` the position, as a search does with its root: score tables for its material, the
// direction table of its side to move. A refused text fails the test.
void SetUpRoot(const std::string& fen);

// Bounds that no evaluation reaches, so that neither ends it early.
inline constexpr int kFar = kInfinity;

// The evaluation within these bounds.
int EvaluateFully();

using Random = std::mt19937;

// A number from 0 up to, not including, `bound`; the same on every machine for the same seed.
int Below(Random& random, int bound);

// A position that no game leads to: any number of any pieces, pawns on any row, kings anywhere.
std::string RandomBoard(Random& random);

// Plays a random game from the start position, castling whenever possible, and calls `visit` after
// each of at most `moves` moves.
void PlayRandomGame(Random& random, int moves, const std::function<void()>& visit);

// Calls `visit` with `count` positions of both kinds, half of them each, set up like a root.
void VisitRandomPositions(unsigned seed, int count, const std::function<void()>& visit);

}  // namespace tarvyle::support
