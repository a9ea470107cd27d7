// The search of all nodes off the principal variation.

#include "search/node.h"

#include <algorithm>

#include "eval/evaluate.h"
#include "position/attack.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"
#include "pv/tree.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/nodeargs.h"
#include "search/nodesteps.h"
#include "search/order.h"
#include "search/result.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kNullMargin = 500;   // below beta a null move is not worth trying
constexpr int kNullShallow = 4;    // but for depths below this
constexpr int kNullReduction = 3;  // the ply of the null move itself included
constexpr int kDeepenAbove = 3;    // internal deepening from depth 4 on
constexpr int kDeepenMargin = 30;
constexpr int kFullWindowMoves = 3;  // searched with the full window before any reduction

enum class NullOutcome { kNone, kStopped, kCutOff, kMateThreat };

bool NullMoveIsPromising(int beta, int depth) {
  return depth < kNullShallow ||
         Evaluate(beta - kNullMargin - 1, beta - kNullMargin) >= beta - kNullMargin;
}

// Lets the opponent move twice. No null move follows at once, but deeper down one may. The line
// found goes into the node's own, where a new best move overwrites it.
NullOutcome TryNullMove(int beta, int depth, Move* line) {
  const int outer = doNull;
  doNull = 1;
  treeCnt[ply + 1] = treeCnt[ply];
  MakeMove(0);
  const int score = -Search({.alpha = -beta,
                             .beta = 1 - beta,
                             .depth = depth - kNullReduction,
                             .in_check = false,
                             .is_probe_child = true},
                            line);
  UnMakeMove(0);
  doNull = outer;
  if (is_stop_search != 0) return NullOutcome::kStopped;
  if (score >= beta) {
    cut_forse[ply] = kNullMoveCut;
    return NullOutcome::kCutOff;
  }
  // A pass runs into mate. Where beta lies as low, every move may: then that tells nothing.
  return IsMated(score) && beta > -kMateWindow ? NullOutcome::kMateThreat : NullOutcome::kNone;
}

bool HasStoredContinuation() {
  PvNode** link = pvFindNodeTree(pv_tree, g.game_moves + g.game_len, ply);
  return link != nullptr && *link != nullptr;
}

// Finds a move to try first by a shallower search of the same node. The node's move list and line
// stay as this search leaves them.
Move DeepenInternally(NodeArgs node, Move* line) {
  node.alpha = std::max(-kInfinity, node.alpha - kDeepenMargin);
  node.depth /= 2;
  node.is_probe_child = true;
  const Move outer = gl_find_move[ply];
  gl_find_move[ply] = 0;
  Search(node, line);
  const Move found = gl_find_move[ply];
  gl_find_move[ply] = outer;
  return found;
}

// Searches the first moves with the full window. A later one must first get above alpha in a search
// with a zero window, which is reduced for a quiet move. `number` counts the node's moves from 1.
int SearchInTurn(const MadeMove& made, int number, bool reduces, Move* line) {
  ClearLine(line);
  NodeArgs full = FullWindow(made);
  if (number <= kFullWindowMoves || made.depth < 1) {
    full.null_allowed = true;
    return -Search(full, line);
  }
  NodeArgs scout = ZeroWindow(made);
  scout.null_allowed = true;
  doReduction = reduces ? 1 : 0;
  scout.depth -= doReduction;
  const int score = -Search(scout, line);
  doReduction = 0;
  if (score <= made.alpha) return score;
  ClearLine(line);
  return -Search(full, line);
}

}  // namespace

int Search(int alpha, int beta, int depth, int in_check, Move* line, int is_probe_child, int on_pv,
           int null_allowed, Move first_move, Move excluded_move) {
  // Step 1. What needs no move: mate, horizon, stop, draw, learned score. Adjusts `depth`.
  NodeStart start{depth, false, 0};
  if (SettleWithoutMoves(start, alpha, beta, in_check != 0)) return start.score;
  depth = start.depth;

  // Step 2. Transposition table. On a stored line, or with a move left out, only its move is used.
  Move tt_move = 0;
  int score = 0;
  if (HashLook(alpha, beta, depth, score, tt_move) && on_pv == 0 && excluded_move == 0) {
    cut_forse[ply] = kTableCut;
    if (tt_move != 0) gl_find_move[ply] = tt_move;
    return score;
  }

  // Step 3. Null move: a side that may pass and still stands above beta needs no further look.
  bool mate_threat = false;
  if (null_allowed != 0 && is_probe_child == 0 && search_tree_width_null_move_cut != 0 &&
      in_check == 0 && ply >= 1 && NullMoveIsPromising(beta, depth)) {
    switch (TryNullMove(beta, depth, line)) {
      case NullOutcome::kStopped: return 0;
      case NullOutcome::kCutOff: return beta;
      case NullOutcome::kMateThreat: mate_threat = true; break;
      case NullOutcome::kNone: break;
    }
  }

  // Step 4. The move list; in check step 1 has built it.
  if (in_check == 0 && ply >= 1 && SettleByGeneration(score)) return score;

  // Step 5. Internal deepening, for want of a move to try first.
  if (depth > kDeepenAbove && first_move == 0 && tt_move == 0 && ply >= 1 &&
      (on_pv == 0 || doNull != 0 || !HasStoredContinuation())) {
    first_move = DeepenInternally({.alpha = alpha,
                                   .beta = beta,
                                   .depth = depth,
                                   .in_check = in_check != 0,
                                   .on_pv = on_pv != 0,
                                   .excluded_move = excluded_move},
                                  line);
  }

  // Step 6. The moves.
  const bool list_is_legal = in_check != 0;
  MovePicker picker{.on_pv = on_pv != 0, .tt_move = tt_move, .first_move = first_move};
  Move child_line[kLineSize];
  Move best = 0;
  int count = 0;
  Move move = 0;
  while (alpha < beta && NextMove(picker, move)) {
    if (move == excluded_move) {
      ++count;  // there is a move: neither mate nor stalemate
      continue;
    }
    const bool to_seventh = IsPawnToSeventh(move);
    if (!MakeIfLegal(move, list_is_legal)) continue;
    const bool gives_check = Check();
    const bool extends =
        gives_check || to_seventh || mate_threat || (in_check != 0 && start.single_reply);
    const bool reduces = PLAY_STYLE != kKnowledge1 && !gives_check && !to_seventh;
    score = SearchInTurn({.alpha = alpha,
                          .beta = beta,
                          .depth = depth - 1 + (extends ? 1 : 0),
                          .gives_check = gives_check,
                          .from_pv = picker.from_pv},
                         ++count, reduces, child_line);
    UnMakeMove(move);
    if (is_stop_search != 0) return 0;
    if (score <= alpha) continue;
    alpha = score;
    best = move;
    SaveNewBest(move, score, beta, depth, line, child_line);
  }

  // Step 7. No legal move.
  if (count == 0) {
    cut_forse[ply] = kNoMoveLeft;
    return in_check != 0 ? ply + kMated : 0;
  }

  // Step 8. Remember the best move; a node whose moves all failed low leaves nothing.
  if (best != 0) {
    if (excluded_move == 0 && ply >= 1) HashInsert(alpha, beta, depth, best);
    SaveHist(best, alpha, beta);
  }
  return alpha;
}

}  // namespace tarvyle
