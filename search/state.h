#pragma once

#include "position/record.h"
#include "position/types.h"
#include "pv/line.h"
#include "search/limits.h"  // IWYU pragma: export

// What the searches remember: a record for each lifetime. Every field is also known by its plain
// name, a reference that costs nothing.

namespace tarvyle {

enum CutReason : int {
  kNoCut,
  kNullMoveCut,
  kTableCut,
  kCheckmated,
  kDrawByRule,
  kNoMoveLeft,
};

// What searches leave for later ones. Begun with the process, or when it is told to forget.
struct SearchMemory {
  // By ply, 0 = root; written by the node searches.
  Move gl_find_move[kPlyArray] = {};  // best move of the latest search of a node there
  int cut_forse[kPlyArray] = {};      // why the node ended (CutReason); nothing reads it

  // Counters by (colour * 8 + piece) * 64 + target square, 0..MAX_HIST; codes 0 and 7 stay 0. A
  // search begins by clearing or compressing them (history.h).
  int history[1024] = {};

  // The prediction, set with the result and kept for the next search: the game's moves followed by
  // the best line, cut after min(depth, 10) moves of it, ended by 0.
  Move search_list[kRecordMoves + 1] = {};
  Key64 search_start_pos_key = 0;  // key of the root that the prediction belongs to

  // Lines published since an ordinary search has last merged them into its tree, oldest first:
  // those of one iteration, and before its first one those of the randomised searches since.
  Queue pv_table = nullptr;

  bool operator==(const SearchMemory&) const = default;
};
inline SearchMemory search_memory;

inline constexpr auto& gl_find_move = search_memory.gl_find_move;
inline constexpr auto& cut_forse = search_memory.cut_forse;
inline constexpr auto& history = search_memory.history;
inline constexpr auto& search_list = search_memory.search_list;
inline constexpr auto& search_start_pos_key = search_memory.search_start_pos_key;
inline constexpr auto& pv_table = search_memory.pv_table;

// What belongs to one search, from its beginning to that of the next.
struct SearchState {
  // By ply, 0 = root; written by the node searches.

  // Last move that raised alpha, unless it landed on the target of the move before. Where no move
  // was played before, or a null move, that target is a8.
  Move killer[kPlyArray] = {};
  Move pv_killer[kPlyArray] = {};  // last move that raised alpha without a cut-off

  // What is being searched; written by the search off the principal variation.
  int doNull = 0;       // 1 while a null-move child is searched
  int doReduction = 0;  // reduction of the current child; no other node reads it

  // The root, as BeginSearch finds it.
  int root_side = White;                    // side to move at the root
  int root_mtl[2] = {};                     // material at the root by colour; nothing reads it
  int search_tree_width_null_move_cut = 1;  // 1: the null move is on, for both sides have a queen

  // The result, set by each root move that raises alpha; of a book move `search_mv` alone.
  Move search_mv = 0;    // best root move, 0 before there is one
  int search_score = 0;  // its score
  int search_depth = 0;  // the iteration that found it

  Move pv_line[kLineSize] = {};  // the root's principal variation, index 0 = the root move

  bool operator==(const SearchState&) const = default;
};
inline SearchState search_state;

inline constexpr auto& killer = search_state.killer;
inline constexpr auto& pv_killer = search_state.pv_killer;
inline constexpr auto& doNull = search_state.doNull;
inline constexpr auto& doReduction = search_state.doReduction;
inline constexpr auto& root_side = search_state.root_side;
inline constexpr auto& root_mtl = search_state.root_mtl;
inline constexpr auto& search_tree_width_null_move_cut =
    search_state.search_tree_width_null_move_cut;
inline constexpr auto& search_mv = search_state.search_mv;
inline constexpr auto& search_score = search_state.search_score;
inline constexpr auto& search_depth = search_state.search_depth;
inline constexpr auto& pv_line = search_state.pv_line;

// What belongs to one iteration, until the next begins.
struct IterationState {
  int s_depth = 0;  // depth of the iteration

  bool operator==(const IterationState&) const = default;
};
inline IterationState iteration_state;

inline constexpr auto& s_depth = iteration_state.s_depth;

}  // namespace tarvyle
