#pragma once

#include <string_view>

// The position that the GUI has told.

namespace tarvyle::uci {

// Sets up what follows "position": "startpos" or "fen" and a FEN, then perhaps "moves" and moves.
// The FEN's half-move clock counts towards the fifty-move rule, from 0 to 100.
// A position or move that is not legal is reported, and the position before stays. Of a game longer
// than the engine's record the moves since the last one that cannot be undone are kept, or the
// latest of them.
void ObeyPosition(std::string_view words);

// Sets up the start position.
void PlaceNewGame();

// Sets up the last good position anew.
void PlaceAgain();

}  // namespace tarvyle::uci
