#include "search/rootentry.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/property.h"
#include "book/book.h"
#include "book/learn.h"
#include "eval/scoretable.h"
#include "position/directions.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"
#include "pv/line.h"
#include "pv/tree.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/roothooks.h"
#include "search/state.h"

namespace tarvyle {

namespace {

bool IsAsked(Move move) {
  const Move* end = root_hooks.only + LineLen(root_hooks.only);
  return std::find(root_hooks.only, end, move) != end;
}

}  // namespace

void PrepareRoot() {
  set_dir(g.side);
  TimeReset();
  InitEvaluate();
  HashClear();
  std::fill_n(killer, kPlyArray, 0);
  std::fill_n(pv_killer, kPlyArray, 0);
  std::fill_n(pv_line, kLineSize, 0);
  search_mv = 0;
  search_score = 0;
  search_depth = 0;
  root_side = g.side;
  root_mtl[White] = g.material[White];
  root_mtl[Black] = g.material[Black];
  // Without queens a side may be better off not to move.
  search_tree_width_null_move_cut =
      g.piece_cnt[White][Queen] > 0 && g.piece_cnt[Black][Queen] > 0 ? 1 : 0;
}

void init_search() {
  treeCnt[0] = 0;
  treeCnt[1] = 0;
  SeedRandom();
  PrepareRoot();
  set_rep();
  HistoryInit(true);
  pvReset(pv_tree);
  std::fill_n(sort_val, kTreeSize, 0);
}

void set_rep() {}

bool ListRootMoves() {
  if (!LegalMoveList()) return false;
  if (root_hooks.only != nullptr) {
    Move* end = std::remove_if(tree, tree + treeCnt[1], [](Move move) { return !IsAsked(move); });
    treeCnt[1] = static_cast<int>(end - tree);
  }
  return ListLength() > 0;
}

bool BookAnswers(int count, Move& move) {
  if (std::strcmp(property_get("book move"), "auto") != 0) return false;
  if (std::rand() % 101 >= 51) return false;
  const Move found = MoveFromLib(0, count - 1);
  if (found == 0) return false;
  search_mv = found;
  move = found;
  return true;
}

void LearnResult(int score, int depth) {
  if (root_hooks.only == nullptr) SaveSearchResult(score, depth);
}

void MergeLines() {
  while (pv_table != nullptr) {
    Move* line = reinterpret_cast<Move*>(pvt_pop_first(&pv_table));
    pvInsertLine(pv_tree, line);
    LineFree(line);
  }
}

void DropLines() {
  while (pv_table != nullptr) LineFree(reinterpret_cast<Move*>(pvt_pop_first(&pv_table)));
}

}  // namespace tarvyle
