#pragma once

#include "search/clock.h"

// Searches that end after a number of nodes, the same on every machine.

namespace tarvyle {

// To be called by a clock of one's own in `world`: when a search, or a stage of one, has just begun
// to count its nodes, it will look at that clock again after `nodes` of them, 1..kNodesPerPoll, and
// not after kNodesPerPoll. At any other reading nothing happens.
void LookAgainAfter(int nodes);

// A world that ends every search, and every stage of a randomised one, at its first look at the
// clock: after as many nodes as `allot` says when it begins to count (brought
// into 1..kNodesPerPoll).
World NodeBoundWorld(int (*allot)(), unsigned (*seed)());

}  // namespace tarvyle
