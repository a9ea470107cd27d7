#pragma once

#include <cstdint>
#include <functional>

#include "position/movestack.h"
#include "position/types.h"

// Counts the legal leaf nodes below the current position: the test of a move generator.

namespace tarvyle {

inline constexpr int kDeepestPerft = 90;  // plies
static_assert(kDeepestPerft <= kMaxPly, "the lists of all plies but the last are held at once");

// Asked now and then; true ends the count, which is of no use then.
using StopQuestion = bool (*)();

// Leaf nodes at that depth, 1 at depth 0. The last ply is counted by the lengths of its lists.
std::uint64_t Perft(int depth, StopQuestion should_stop = nullptr);

// The same for a depth of 1 or more, telling the leaf nodes below each root move as it goes; those
// of a count that was ended are not told. `tell` leaves the position and its lists alone.
std::uint64_t DividedPerft(int depth, const std::function<void(Move, std::uint64_t)>& tell,
                           StopQuestion should_stop = nullptr);

}  // namespace tarvyle
