#pragma once

#include "position/record.h"

namespace tarvyle {

// Whether board, piece lists, counters and keys of `record` agree, every index lies inside its
// table and each colour has exactly one king. Says nothing of the moves of the game.
bool RecordIsSound(const GameRecord& record);

}  // namespace tarvyle
