#pragma once

// How far the game is from its ending, as each side sees it: by the opponent's material.

namespace tarvyle {

// Weight of the opponent's pieces, 14 a queen, 6 a rook, 4 a bishop, 3 a knight, uncapped.
int OpponentWeight(int colour);

// The phase seen by `colour`: 0.0 (the opponent has at most one minor piece) to 1.0 (a full set).
double Stage(int colour);

// The opponent's minor pieces on a scale of 0 to 4; a bishop pair counts one more.
// Offered to others; the engine itself never calls it.
int stage_nb_int(int colour);

}  // namespace tarvyle
