#include "search/root.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/property.h"
#include "book/book.h"
#include "book/learn.h"
#include "eval/scoretable.h"
#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"
#include "pv/line.h"
#include "pv/tree.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/node.h"
#include "search/order.h"
#include "search/randomroot.h"
#include "search/state.h"
#include "search/status.h"

namespace tarvyle {

RootHooks root_hooks;

namespace {

constexpr int kFirstIteration = 2;
constexpr int kStopFrom = 6;  // no iteration before this one ends the search
constexpr int kMateFound = 999900;
constexpr double kNextIterationCost = 1.2;

bool IsAsked(Move move) {
  const Move* end = root_hooks.only + LineLen(root_hooks.only);
  return std::find(root_hooks.only, end, move) != end;
}

// What every kind of root search starts from.
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

// Highest value first in the list; the tree's root list gets the lowest first, on purpose.
void OrderRootMoves(int count) {
  for (int i = 0; i < count; ++i) {
    Pick(i, count - 1);
    PvNode* node = pvNewNode(pv_tree, tree[i]);
    if (node != nullptr) pvInsertToFront(pv_tree, &pv_tree.root, node);
  }
}

// When this root has been searched last, the history is kept in part and the line predicted then
// is searched first.
void PrepareHistory() {
  const Move* played = GameLine();
  const bool same_root = g.key == search_start_pos_key;
  HistoryInit(!same_root);
  if (same_root && LineInCnt(search_list, played) == g.game_len) {
    pvInsertLine(pv_tree, search_list + g.game_len);
  }
}

int SearchWindow(int alpha, int beta, int depth) {
  return main_search(alpha, beta, depth, Check() ? 1 : 0, pv_line, 0, 1, 0, 0);
}

// One iteration; a mate score is searched again with a window that holds it.
int Iterate(int depth) {
  s_depth = depth;
  int score = SearchWindow(-kMateWindow, kMateWindow, depth);
  if (is_stop_search == 0 && score < -kMateWindow + 1) {
    score = SearchWindow(-kInfinity, kMateWindow, depth);
  }
  if (is_stop_search == 0 && score > kMateWindow - 1) {
    score = SearchWindow(-kMateWindow, kInfinity, depth);
  }
  return score;
}

bool EnoughSearched(int depth, int score) {
  if (depth < kStopFrom) return false;
  if (score > kMateFound) return true;
  if (score < -kMateFound && depth != kStopFrom) return true;
  return (curr_time - start_time) * kNextIterationCost > limit_time;
}

void DeepenIteratively() {
  for (int depth = kFirstIteration; depth <= root_hooks.max_depth; ++depth) {
    if (StopSearch() != 0) return;
    const int score = Iterate(depth);
    MergeLines();
    if (root_hooks.after_iteration != nullptr) root_hooks.after_iteration(depth, score);
    if (EnoughSearched(depth, score)) return;
  }
}

}  // namespace

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

bool ListRootMoves() {
  if (!LegalMoveList()) return false;
  if (root_hooks.only != nullptr) {
    Move* end = std::remove_if(tree, tree + treeCnt[1], [](Move move) { return !IsAsked(move); });
    treeCnt[1] = static_cast<int>(end - tree);
  }
  return ListLength() > 0;
}

void LearnResult(int score, int depth) {
  if (root_hooks.only == nullptr) SaveSearchResult(score, depth);
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

bool SearchMove(Move& move) {
  const KeptMoves kept;
  SeedRandom();
  if (is_rnd_search != 0) return Rnd_Root_Search(move);

  PrepareRoot();
  if (!ListRootMoves()) return false;
  const int count = ListLength();
  RndMovesWithLib(0, count - 1);
  pvReset(pv_tree);
  OrderRootMoves(count);
  if (BookAnswers(count, move)) return true;
  PrepareHistory();
  DeepenIteratively();

  move = search_mv;
  if (search_mv == 0) return false;
  LearnResult(search_score, search_depth);
  return true;
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

int SweepCnt(int side) {
  return g.piece_cnt[side][Bishop] + g.piece_cnt[side][Rook] + g.piece_cnt[side][Queen];
}

void set_rep() {}

int tree_is_good(const PhaseInfo& phase) { return phase.flags[0]; }

void PhaseInfoReset(PhaseInfo& phase, int amount) {
  phase = {};
  phase.amount = amount;
}

}  // namespace tarvyle
