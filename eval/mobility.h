#pragma once

#include <cstdint>

#include "eval/side.h"
#include "position/types.h"

namespace tarvyle {

// What a sliding piece sees along its lines.
struct RayScan {
  int empty;  // empty squares up to the first piece of each line
  int bonus;  // for pins and x-rays
};

// Scans the lines of a sliding piece of `colour` standing on `square`, with the attack words of
// the opponent and of the own side, and writes the mobility count and the pin and x-ray bonus.
// Offered to others; the engine itself never calls it.
void Mobile_Pin_XRay(Square square, int piece, int colour, RayScan& result,
                     const std::uint32_t* opponent_attacks, const std::uint32_t* own_attacks);

// The pin and x-ray bonus of one of the side's sliders: what Mobile_Pin_XRay finds behind the first
// piece of each line.
int LineBonus(const Side& side, int piece, Square square);

}  // namespace tarvyle
