#pragma once

#include "position/types.h"

// The tree of principal variations of one move choice: each path from the root is a line of play,
// the newest line always first among its siblings. It lives in one fixed pool.

namespace tarvyle {

// One move of the tree, linked to its alternatives and its replies.
struct PvNode {
  Move move;      // never 0 in a used node
  PvNode* next;   // next alternative at the same ply, or null
  PvNode* child;  // first reply, or null
};

inline constexpr int kPvNodes = 10000;
inline constexpr int kPvLineMoves = 80;  // moves of a line that the tree takes in

// A tree with the pool that its nodes come from.
struct PvTree {
  PvNode nodes[kPvNodes];  // handed out in order
  int used;                // nodes handed out
  PvNode* root;            // first node of the root's list
};

// The tree of the current move choice; emptied when a search begins.
extern PvTree pv_tree;

// Empties the tree.
void pvReset(PvTree& tree);

// The next node of the pool, or null when all are in use. pvNewNode also sets its move.
PvNode* pvNew(PvTree& tree);
PvNode* pvNewNode(PvTree& tree, Move move);

// The link (list head or a node's `next`) that points at the node holding `move`, or null.
PvNode** pvFindMove(PvNode** head, Move move);

// Moves the node that `link` points at to the front of the list, unless it is there already;
// returns the head link.
PvNode** pvToFront(PvNode** link, PvNode** head);

// Puts a node in front of the list, unless it is there already. This and the next take the tree as
// the others do, but the list is all that they need.
void pvInsertToFront(PvTree& tree, PvNode** head, PvNode* node);

// Appends a node at the end of the list, unless it is its first; returns the link that points at
// it.
// Offered to others; the engine itself never calls it.
PvNode** pvInsertToEnd(PvTree& tree, PvNode** head, PvNode* node);

// Merges a line into the tree, bringing each of its moves to the front of its list. Moves beyond
// the first kPvLineMoves, or beyond the end of the pool, are dropped.
void pvInsertLine(PvTree& tree, const Move* line);

// Follows the first `count` moves of `line` from the root. Returns the link to the list of replies
// there (the root link for count < 1 or an empty tree), or null when a move is missing on the way.
PvNode** pvFindNodeTree(PvTree& tree, const Move* line, int count);

}  // namespace tarvyle
