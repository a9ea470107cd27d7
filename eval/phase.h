#pragma once

// How far the game is from its ending, as each side sees it: by the opponent's material.

namespace tarvyle {

inline constexpr int kFullWeight = 40;  // from here on the phase is 1.0

// Weight of the opponent's pieces, 14 a queen, 6 a rook, 4 a bishop, 3 a knight, uncapped.
int OpponentWeight(int colour);

// Phase of a weight, 0.0 (at most one minor piece) to 1.0 (a full set).
double PhaseOfWeight(int weight);

// The phase seen by `colour`.
double Stage(int colour);

// The opponent's minor pieces on a scale of 0 to 4; a bishop pair counts one more.
int stage_nb_int(int colour);

}  // namespace tarvyle
