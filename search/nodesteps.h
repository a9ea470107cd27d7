#pragma once

#include "position/types.h"

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

}  // namespace tarvyle
