#pragma once

#include "position/record.h"
#include "position/score.h"  // IWYU pragma: export
#include "position/types.h"
#include "pv/line.h"
#include "search/limits.h"  // IWYU pragma: export

// Records that the node searches, the root search and move ordering share.

namespace tarvyle {

enum CutReason : int {
  kNoCut,
  kNullMoveCut,
  kTableCut,
  kCheckmated,
  kDrawByRule,
  kNoMoveLeft,
};

// By ply, 0 = root; written by the node searches. They live on across iterations and moves; the
// root searches clear the killers.
extern Move gl_find_move[kPlyArray];  // best move of the latest search of a node there
// Last move that raised alpha, unless it landed on the target of the move before. Where no move was
// played before, or a null move, that target is a8.
extern Move killer[kPlyArray];
extern Move pv_killer[kPlyArray];  // last move that raised alpha without a cut-off
extern int cut_forse[kPlyArray];   // why the node ended (CutReason); nothing reads it

extern int doNull;       // 1 while a null-move child is searched
extern int doReduction;  // reduction of the current child; nothing reads it

// 1: the randomised root search is on; set by the configuration and by "rnd".
extern int is_rnd_search;

// Set by the root searches: the depth for each iteration, the others before the first.
extern int s_depth;                          // depth of the current iteration
extern int root_side;                        // side to move at the root
extern int root_mtl[2];                      // material at the root by colour; nothing reads it
extern int search_tree_width_null_move_cut;  // 1: the null move is on, for both sides have a queen

// The result: cleared by the root searches, set by each root move that raises alpha.
extern Move search_mv;    // best root move, 0 before there is one
extern int search_score;  // its score
extern int search_depth;  // the iteration that found it

// The prediction, set with the result and kept for the next search: the game's moves followed by
// the best line, cut after min(depth, 10) moves of it, ended by 0; and the root that it belongs to.
extern Move search_list[kRecordMoves + 1];
extern Key64 search_start_pos_key;

extern Move pv_line[kLineSize];  // the root's principal variation, index 0 = the root move

// Lines published since an ordinary search has last merged them into its tree, oldest first: those
// of one iteration, and before its first one those of the randomised searches since.
extern Queue pv_table;

}  // namespace tarvyle
