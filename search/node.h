#pragma once

#include "position/types.h"
#include "search/nodeargs.h"

// The alpha-beta search of nodes off the principal variation.

namespace tarvyle {

// Searches a node with all pruning. Returns a score from the side to move's point of view, in
// 1/1000 pawn; 0 once the search is stopped. `line` receives the principal variation from this ply
// on (kLineSize words, by ply); it is left alone where there is none. The other arguments are those
// of NodeArgs.
int Search(int alpha, int beta, int depth, int in_check, Move* line, int is_probe_child, int on_pv,
           int null_allowed, Move first_move, Move excluded_move);
inline int Search(const NodeArgs& args, Move* line) {
  return Search(args.alpha, args.beta, args.depth, args.in_check ? 1 : 0, line,
                args.is_probe_child ? 1 : 0, args.on_pv ? 1 : 0, args.null_allowed ? 1 : 0,
                args.first_move, args.excluded_move);
}

}  // namespace tarvyle
