#include "search/reset.h"

#include <algorithm>
#include <initializer_list>

#include "book/learn.h"
#include "position/directions.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/types.h"
#include "pv/tree.h"
#include "search/history.h"
#include "search/rootentry.h"
#include "search/state.h"

namespace tarvyle {

void ResetSearchState() {
  for (Move* moves : {gl_find_move, killer, pv_killer}) std::fill_n(moves, kPlyArray, 0);
  std::fill_n(cut_forse, kPlyArray, 0);
  std::fill_n(search_list, kRecordMoves + 1, 0);
  std::fill_n(pv_line, kLineSize, 0);
  std::fill_n(root_mtl, 2, 0);
  doNull = 0;
  doReduction = 0;
  search_tree_width_null_move_cut = 1;
  s_depth = 0;
  root_side = White;
  search_mv = 0;
  search_score = 0;
  search_depth = 0;
  search_start_pos_key = 0;
  DropLines();
  pvReset(pv_tree);
  HistoryInit(true);
}

void ResetEngine() {
  LearnReset();
  ResetSearchState();
  ClearRepetitions();
  set_dir(White);
  ply = 0;
  treeCnt[0] = 0;
  treeCnt[1] = 0;
  InitNewGame();
}

}  // namespace tarvyle
