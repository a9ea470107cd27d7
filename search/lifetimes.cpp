#include "search/lifetimes.h"

#include <algorithm>

#include "book/learn.h"
#include "eval/scoretable.h"
#include "position/directions.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/types.h"
#include "pv/tree.h"
#include "search/clock.h"
#include "search/hashmemory.h"
#include "search/history.h"
#include "search/result.h"
#include "search/state.h"

namespace tarvyle {

namespace {

void ClearSearch() {
  search_state = {};
  pvReset(pv_tree);
}

// Without queens a side may be better off not to move.
bool NullMoveIsSound() { return g.piece_cnt[White][Queen] > 0 && g.piece_cnt[Black][Queen] > 0; }

}  // namespace

void BeginProcess() {
  search_settings = {};
  ForgetAll();
}

void ForgetAll() {
  LearnReset();
  ForgetSearches();
  ClearRepetitions();
  BeginGame();
}

void ForgetSearches() {
  DropLines();
  search_memory = {};
  ClearSearch();
  search_clock = {};
  iteration_state = {};
}

void BeginGame() {
  ply = 0;
  EmptyRootList();
  set_dir(White);
  InitNewGame();
}

void BeginSearch() {
  set_dir(g.side);
  TimeReset();
  InitEvaluate();
  HashClear();
  ClearSearch();
  iteration_state = {};
  root_side = g.side;
  root_mtl[White] = g.material[White];
  root_mtl[Black] = g.material[Black];
  search_tree_width_null_move_cut = NullMoveIsSound() ? 1 : 0;
}

void init_search() {
  EmptyRootList();
  SeedRandom();
  BeginSearch();
  set_rep();
  HistoryInit(true);
  std::fill_n(sort_val, kTreeSize, 0);
}

void set_rep() {}

void BeginIteration(int depth) { iteration_state = {.s_depth = depth}; }

}  // namespace tarvyle
