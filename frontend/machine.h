#pragma once

namespace tarvyle {

// Lets the machine move: searches, plays the move into the game, announces it, and then resigns,
// declares the end of the game or announces check when that is due. Returns whether a move was
// played; without one "the end" is printed.
bool move_machine();

// Length of the run of falling scores that ends at move `index`, counted over every other move:
// each below the one before, and that one not above `limit`. 0 when the run does not even start.
int Resigns(int index, int limit);

}  // namespace tarvyle
