#pragma once

namespace tarvyle {

// A material difference further than this outside the window stands for the evaluation.
inline constexpr int kLazyMargin = 499;

// Whether a side whose material difference is `material` is too far below `bound` for anything else
// to be looked at.
inline bool MaterialFallsShort(int material, int bound) { return material + kLazyMargin < bound; }

// Whether pieces enough to win stand on the board now and after any one move, so that the draw for
// want of them cannot apply. May be false of a position where it cannot.
bool WinnableAfterAnyMove();

// Static evaluation from the side to move's point of view, in 1/1000 pawn. The window is used only
// to answer with the bare material difference when that lies at least half a pawn outside it: when
// MaterialFallsShort(material, alpha) or, seen from the other side, MaterialFallsShort(-material,
// -beta), and nothing but a draw for want of pieces comes before. The quiescence search relies on
// that. Hidden inputs besides the position: `score_table` and the direction table in use.
int Evaluate(int alpha, int beta);

// Highest value[] among each side's hanging pieces, as of the last Evaluate. Nothing reads it.
extern int maxHungValue[2];

}  // namespace tarvyle
