#pragma once

#include "uci/golimits.h"

namespace tarvyle::uci {

// Searches the position on the board within the limits and says the best move; an infinite search
// waits with that for "stop". The time counts from the call on.
void Think(const Limits& limits);

}  // namespace tarvyle::uci
