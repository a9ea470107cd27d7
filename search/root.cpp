#include "search/root.h"

#include "book/book.h"
#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"
#include "pv/line.h"
#include "pv/tree.h"
#include "search/clock.h"
#include "search/history.h"
#include "search/lifetimes.h"
#include "search/mainsearch.h"
#include "search/order.h"
#include "search/randomroot.h"
#include "search/result.h"
#include "search/rootentry.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kStopFrom = 6;  // no iteration before this one ends the search
constexpr double kNextIterationCost = 1.2;

// Highest value first in the list; the tree's root list gets the lowest first, on purpose.
void OrderRootMoves(int count) {
  for (int i = 0; i < count; ++i) {
    Pick(i, count - 1);
    PvNode* node = pvNewNode(pv_tree, tree[i]);
    if (node != nullptr) pvInsertToFront(pv_tree, &pv_tree.root, node);
  }
}

// Takes over what the last search has left. When that was of this very root, the history is kept in
// part, and the line predicted then goes into the tree, to be searched first.
void TakeOverLastSearch() {
  const Move* played = EndGameLine();
  const bool same_root = g.key == search_start_pos_key;
  HistoryInit(!same_root);
  if (same_root && LineInCnt(search_list, played) == g.game_len) {
    pvInsertLine(pv_tree, search_list + g.game_len);
  }
}

int SearchWindow(int alpha, int beta, int depth) {
  return main_search(
      {.alpha = alpha, .beta = beta, .depth = depth, .in_check = Check(), .on_pv = true}, pv_line);
}

// One iteration; a mate score is searched again with a window that holds it.
int Iterate(int depth) {
  BeginIteration(depth);
  int score = SearchWindow(-kMateWindow, kMateWindow, depth);
  if (is_stop_search == 0 && score <= -kMateWindow) {
    score = SearchWindow(-kInfinity, kMateWindow, depth);
  }
  if (is_stop_search == 0 && score >= kMateWindow) {
    score = SearchWindow(-kMateWindow, kInfinity, depth);
  }
  return score;
}

bool EnoughSearched(int depth, int score) {
  if (depth < kStopFrom) return false;
  if (IsMating(score)) return true;
  // A side that is mated gets one iteration more, in which it may still find a way out.
  if (IsMated(score) && depth != kStopFrom) return true;
  return (curr_time - start_time) * kNextIterationCost > limit_time;
}

void DeepenIteratively() {
  for (int depth = root_hooks.first_depth; depth <= root_hooks.max_depth; ++depth) {
    if (StopSearch() != 0) return;
    const int score = Iterate(depth);
    MergeLines();
    if (root_hooks.after_iteration != nullptr) root_hooks.after_iteration(depth, score);
    if (EnoughSearched(depth, score)) return;
  }
}

}  // namespace

bool SearchMove(Move& move) {
  const RedoGuard guard;  // the search writes its moves where those for "redo" stand
  if (is_rnd_search != 0) return Rnd_Root_Search(move);

  SeedRandom();
  BeginSearch();
  if (!ListRootMoves()) return false;
  const int count = ListLength();
  RndMovesWithLib(0, count - 1);
  OrderRootMoves(count);
  if (TakeBookMove(count, move)) return true;
  TakeOverLastSearch();
  DeepenIteratively();

  move = search_mv;
  if (search_mv == 0) return false;
  LearnResult(search_score, search_depth);
  return true;
}

}  // namespace tarvyle
