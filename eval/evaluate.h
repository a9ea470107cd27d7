#pragma once

namespace tarvyle {

// A material difference further than this outside the window stands for the evaluation.
inline constexpr int kLazyMargin = 499;

// Static evaluation from the side to move's point of view, in 1/1000 pawn. The window is used only
// to answer with the bare material difference when that lies at least half a pawn outside it.
// Hidden inputs besides the position: `score_table` and the direction table in use.
int Evaluate(int alpha, int beta);

// Highest value[] among each side's hanging pieces, as of the last Evaluate. Nothing reads it.
extern int maxHungValue[2];

}  // namespace tarvyle
