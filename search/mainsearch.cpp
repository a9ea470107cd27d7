// The search of the principal variation and of the root.

#include "base/message.h"
#include "position/attack.h"
#include "position/invariant.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/entry.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/node.h"
#include "search/order.h"
#include "search/result.h"
#include "search/state.h"
#include "search/style.h"

namespace tarvyle {

namespace {

constexpr int kVerifyChildFrom = 6;  // "knowledge2" verifies children of at least this depth
constexpr int kVerifyNodeFrom = 6;   // "knowledge3" verifies at nodes of at least this depth
constexpr int kTwoProbesFrom = 3;    // "knowledge1" probes twice from this child depth on
constexpr int kHintDepth = 1;        // depth stored with a move that is meant as a hint only

// One move of the loop, already made; `reply` is the opponent's best answer found so far.
struct Child {
  int alpha;
  int beta;
  int depth;
  int gives_check;
  int from_pv;
  Move* line;
  Move reply;
};

int Probe(Child& child, int depth, Move first_move) {
  child.line[ply] = 0;
  gl_find_move[ply] = 0;
  const int score = -Search(-child.beta, -child.alpha, depth, child.gives_check, child.line, 0,
                            child.from_pv, 1, first_move, 0);
  child.reply = gl_find_move[ply];
  return score;
}

// Probes at growing depths, each with the reply that the one before found, until the move fails
// low; a checking move gets all of them.
int ProbeFrom(Child& child, int first_depth) {
  int score = child.alpha;
  for (int depth = first_depth; depth <= child.depth; ++depth) {
    score = Probe(child, depth, child.reply);
    if (score <= child.alpha && child.gives_check == 0) break;
  }
  return score;
}

// Looks with a zero window whether the move gets above alpha once the best reply is left out.
int Verify(const Child& child, int depth, Move first_move) {
  child.line[ply] = 0;
  return -Search(-child.alpha - 1, -child.alpha, depth, child.gives_check, child.line, 1,
                 child.from_pv, 0, first_move, child.reply);
}

int SearchFully(const Child& child) {
  child.line[ply] = 0;
  return -main_search(-child.beta, -child.alpha, child.depth, child.gives_check, child.line, 0,
                      child.from_pv, 0, child.reply);
}

int SearchByKnowledge1(Child& child) {
  const int score = ProbeFrom(child, child.depth >= kTwoProbesFrom ? child.depth - 1 : child.depth);
  return score > child.alpha || ply == 1 ? SearchFully(child) : score;
}

int SearchByKnowledge2(Child& child) {
  int score = Probe(child, child.depth, 0);
  if (score <= child.alpha && child.depth >= kVerifyChildFrom && child.reply != 0) {
    score = Verify(child, child.depth, 0);
  }
  return score > child.alpha ? SearchFully(child) : score;
}

int SearchByKnowledge3(Child& child, bool verifies) {
  int first_depth = child.depth - 1;
  if (child.gives_check != 0 && first_depth <= 0) first_depth = child.depth;
  int score = ProbeFrom(child, first_depth);
  if (score <= child.alpha && verifies) score = Verify(child, child.depth / 2, child.reply);
  return score > child.alpha ? SearchFully(child) : score;
}

int SearchChild(Child child, bool verifies) {
  switch (PLAY_STYLE) {
    case kKnowledge1: return SearchByKnowledge1(child);
    case kKnowledge2: return SearchByKnowledge2(child);
    case kKnowledge3: return SearchByKnowledge3(child, verifies);
    default:
      Message("#----> main_search(); unknow style\n");
      (assert)(false);
      return 0;
  }
}

}  // namespace

int main_search(int alpha, int beta, int depth, int in_check, Move* line, int /*is_probe_child*/,
                int on_pv, int /*null_allowed*/, Move first_move) {
  // Step 1. What needs no move: mate, horizon, stop, draw, learned score.
  NodeEntry entry{depth, false, 0};
  if (SettledAtEntry(entry, alpha, beta, in_check != 0)) return entry.score;
  depth = entry.depth;

  // Step 2. Transposition table: for its move only.
  Move tt_move = 0;
  int score = 0;
  if (ply >= 1) HashLook(alpha, beta, depth, score, tt_move);

  // Step 3. The move list; the root's stands ready, and in check the entry has built it.
  if (ply == 0 && ListLength() == 0) return 0;
  if (in_check == 0 && ply >= 1 && SettledByGeneration(score)) return score;

  // Step 4. The moves.
  MovePicker picker{.on_pv = on_pv != 0, .tt_move = tt_move, .first_move = first_move};
  Move child_line[kLineSize];
  Move best = 0;
  int count = 0;
  Move move = 0;
  while (alpha < beta && NextMove(picker, move)) {
    const bool to_seventh = IsPawnToSeventh(move);
    if (!MakeIfLegal(move, in_check != 0)) continue;
    ++count;
    const bool gives_check = Check();
    // The root's own moves, which lead to ply 1, are never extended.
    const bool extends =
        ply > 1 && (gives_check || to_seventh || (in_check != 0 && entry.single_reply));
    score = SearchChild({alpha, beta, depth - 1 + (extends ? 1 : 0), gives_check ? 1 : 0,
                         picker.from_pv ? 1 : 0, child_line, 0},
                        in_check == 0 && depth >= kVerifyNodeFrom);
    UnMakeMove(move);
    if (is_stop_search != 0) return 0;
    if (ply == 0) sort_val[picker.next - 1] = score;
    if (score <= alpha) continue;
    alpha = score;
    best = move;
    SaveNewBest(move, score, beta, depth, line, child_line);
  }

  // Step 5. No legal move.
  if (count == 0) {
    cut_forse[ply] = kNoMoveLeft;
    return in_check != 0 ? ply + kMated : 0;
  }

  // Step 6. Remember the best move. But for "knowledge2", nodes of the principal variation leave a
  // hint only: later iterations shall search them anew.
  if (best != 0) {
    if (ply >= 1) HashInsert(alpha, beta, PLAY_STYLE == kKnowledge2 ? depth : kHintDepth, best);
    SaveHist(best, alpha, beta);
  }
  return alpha;
}

}  // namespace tarvyle
