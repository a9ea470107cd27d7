#pragma once

#include <string>

#include "tools/game/gamereader.h"

namespace tarvyle::tools {

// A game as PGN; scores stand as "[%eval 0.35]" (pawns, for White; "#3" is a mate in 3), which most
// programs show, and moves that were taken back in a comment at the end.
std::string GameAsPgn(const SavedGame& game);

// A score for White as PGN comments have it.
std::string EvalText(int score);

}  // namespace tarvyle::tools
