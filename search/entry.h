#pragma once

#include "position/types.h"

// What both node searches do alike.

namespace tarvyle {

// A node before its moves are looked at.
struct NodeEntry {
  int depth;          // remaining depth, adjusted at the entry
  bool single_reply;  // in check with exactly one legal move
  int score;          // of a node that is settled at the entry
};

// Decides what needs no move loop: mate, horizon, stop, greatest ply, draw, learned score. True
// when the node is settled with `entry.score`. In check the legal list is built.
bool SettledAtEntry(NodeEntry& entry, int alpha, int beta, bool in_check);

// Builds the list of a node that is not in check. True when the node is settled: the king could be
// captured, or there is no move at all.
bool SettledByGeneration(int& score);

// Makes a move of the list unless it is illegal; a list built in check is legal already.
bool MakeIfLegal(Move move, bool list_is_legal);

// Whether the side to move advances a pawn to its seventh row by `move`.
bool IsPawnToSeventh(Move move);

}  // namespace tarvyle
