#pragma once

#include "position/record.h"

namespace tarvyle {

// Makes a saved record the game, as it stands, when its tag is right and it can do no harm: board,
// lists, counters and keys agree, and every move of the game can be taken back to the start and
// every recorded one made again to the end. Otherwise returns false and changes nothing.
// Repetition counters are left as they are.
bool RestoreImage(const GameRecord& image);

// Stamps the record with the tag of a saved game.
void TagRecord();

}  // namespace tarvyle
