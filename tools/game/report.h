#pragma once

#include <string>

#include "tools/game/gamereader.h"

namespace tarvyle::tools {

// A game as one HTML page that needs nothing else: the board to step through, the moves with their
// scores, and a graph of the scores.
std::string GameAsPage(const SavedGame& game);

}  // namespace tarvyle::tools
