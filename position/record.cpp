#include "position/record.h"

#include <cstring>

namespace tarvyle {

GameRecord g;
int ply = 0;
std::uint32_t repetition_set[kRepetitionMask + 1];

void ClearRepetitions() { std::memset(repetition_set, 0, sizeof repetition_set); }

}  // namespace tarvyle
