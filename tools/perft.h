#pragma once

#include <cstdint>
#include <functional>

#include "position/types.h"

// Counting the legal leaf nodes below the current position.

namespace tarvyle::tools {

inline constexpr int kDeepestPerft = 90;  // as deep as the engine has lists of moves

// Asked now and then; true ends the count, which is of no use then.
using StopQuestion = bool (*)();

// Leaf nodes at that depth.
std::uint64_t Perft(int depth, StopQuestion should_stop = nullptr);

// The same for a depth of 1 or more, telling the leaf nodes below each root move as it goes.
std::uint64_t DividedPerft(int depth, const std::function<void(Move, std::uint64_t)>& tell,
                           StopQuestion should_stop = nullptr);

}  // namespace tarvyle::tools
