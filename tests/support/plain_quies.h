#pragma once

// The quiescence search as one would write it down first, for tests to compare the engine's with.

namespace tarvyle::support {

// What Quies(alpha, beta) must return, count and leave in the game record: here every capture and
// promotion is made, searched and taken back, and nothing is said of a position before it has been
// reached. Moves are generated and positions evaluated by the engine; all else is written anew.
int PlainQuies(int alpha, int beta);

}  // namespace tarvyle::support
