#pragma once

#include <string>

// Search scores (1/1000 pawn) in the forms that people and other programs expect.

namespace tarvyle {

inline constexpr double kPawn = 1000.0;  // what a pawn scores

// Whether a score is that of a mate, given or suffered.
bool IsMateScore(int score);

// In centipawns as EPD has it: mates as 32767 less the plies to it.
int EpdScore(int score);

// As a person reads it: "+0.35", "-#3" (mated in 3).
std::string ScoreText(int score);

}  // namespace tarvyle
