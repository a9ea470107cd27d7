#pragma once

#include "search/clock.h"

// Searches that end after a number of nodes, the same on every machine.

namespace tarvyle {

// A world that ends every search, and every stage of a randomised one, at its first look at the
// clock: after as many nodes as `allot` says when it begins to count (brought into
// 1..kNodesPerPoll).
World NodeBoundWorld(int (*allot)(), unsigned (*seed)());

}  // namespace tarvyle
