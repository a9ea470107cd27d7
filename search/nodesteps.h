#pragma once

#include "position/record.h"
#include "position/types.h"
#include "search/node.h"

// What both node searches do alike.

namespace tarvyle {

// A node before its moves are looked at.
struct NodeStart {
  int depth;          // remaining depth, adjusted at the start
  bool single_reply;  // in check with exactly one legal move
  int score;          // of a node that needs no move loop
};

// Deals with what needs no move loop: mate, horizon (where it runs the quiescence search), stop,
// greatest ply, draw, learned score. True when that settles the node, with `start.score`. In check
// above the root the legal list is built, and stands when the node is not settled.
bool SettleWithoutMoves(NodeStart& start, int alpha, int beta, bool in_check);

// Builds the list of a node that is not in check, illegal moves among it. True when that settles
// the node: the king could be captured, or there is no move at all.
bool SettleByGeneration(int& score);

// Makes a move of the list and returns true, or returns false when it is illegal; with
// `list_is_legal`, as every list built in check is, no move is.
bool MakeIfLegal(Move move, bool list_is_legal);

// Whether the side to move advances a pawn to its seventh row by `move`.
bool IsPawnToSeventh(Move move);

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
