#pragma once

#include "position/record.h"
#include "position/types.h"

// What a node is searched with, and how that follows from the move that led to it.

namespace tarvyle {

// What a node is searched with, by name.
struct NodeArgs {
  int alpha;
  int beta;
  int depth;
  bool in_check;                // the side to move is
  bool is_probe_child = false;  // in a null-move, internal-deepening or verification search
  bool on_pv = false;           // the node lies on a stored principal variation
  bool null_allowed = false;    // the side to move may pass
  Move first_move = 0;          // to try first, 0 for none
  Move excluded_move = 0;       // not to be searched, 0 for none
};

// A move of a node's loop while it stands made: from MakeIfLegal to UnMakeMove `ply` is that of the
// node which the move led to, and so is what arrays by ply hold there.
struct MadeMove {
  int alpha;  // window of the node that the move was made at
  int beta;
  int depth;  // of the search that the move gets, any extension included
  bool gives_check;
  bool from_pv;  // the move continues a stored principal variation
};

// How the node after the move is searched, with the whole window of the node before it ...
inline NodeArgs FullWindow(const MadeMove& made) {
  return {.alpha = -made.beta,
          .beta = -made.alpha,
          .depth = made.depth,
          .in_check = made.gives_check,
          .on_pv = made.from_pv};
}

// ... or with one that only tells whether the move gets above alpha.
inline NodeArgs ZeroWindow(const MadeMove& made) {
  NodeArgs args = FullWindow(made);
  args.alpha = args.beta - 1;
  return args;
}

// Empties the line of the node at `ply` before it is searched. Many a node leaves its line alone
// (at the horizon, on a table hit, on a cut-off): that of the move tried before must not stay there
// and be taken for its own.
inline void ClearLine(Move* line) { line[ply] = 0; }

}  // namespace tarvyle
