#pragma once

#include "position/types.h"
#include "search/nodeargs.h"

// The alpha-beta search of the principal variation.

namespace tarvyle {

// Searches a node of the principal variation, or the root (`ply` 0, whose list stands ready).
// Prunes nothing; probes each move with Search, in the way of the play style, before it commits
// itself. At the root the score of each move goes to its sort_val. Arguments and result are those
// of Search, but that `is_probe_child` and `null_allowed` have no meaning and no move is left out.
int main_search(int alpha, int beta, int depth, int in_check, Move* line, int is_probe_child,
                int on_pv, int null_allowed, Move first_move);
inline int main_search(const NodeArgs& args, Move* line) {
  return main_search(args.alpha, args.beta, args.depth, args.in_check ? 1 : 0, line, 0,
                     args.on_pv ? 1 : 0, 0, args.first_move);
}

}  // namespace tarvyle
