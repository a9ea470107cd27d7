// The search of the principal variation and of the root.

#include "search/mainsearch.h"

#include "base/message.h"
#include "position/attack.h"
#include "position/invariant.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/history.h"
#include "search/node.h"
#include "search/nodeargs.h"
#include "search/nodesteps.h"
#include "search/order.h"
#include "search/result.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kVerifyChildFrom = 6;  // "knowledge2" verifies children of at least this depth
constexpr int kVerifyNodeFrom = 6;   // "knowledge3" verifies at nodes of at least this depth
constexpr int kTwoProbesFrom = 3;    // "knowledge1" probes twice from this child depth on
constexpr int kHintDepth = 1;        // depth stored with a move that is meant as a hint only

// A move that is probed before it may be searched fully. `line` is for what the searches find.
struct ProbedMove {
  MadeMove made;
  Move* line;
  Move reply = 0;  // the opponent's best answer found so far
};

int Probe(ProbedMove& probed, int depth, Move first_move) {
  ClearLine(probed.line);
  gl_find_move[ply] = 0;
  NodeArgs args = FullWindow(probed.made);
  args.depth = depth;
  args.null_allowed = true;
  args.first_move = first_move;
  const int score = -Search(args, probed.line);
  probed.reply = gl_find_move[ply];
  return score;
}

// Probes at growing depths, each with the reply that the one before found, until the move fails
// low; a checking move gets all of them.
int ProbeFrom(ProbedMove& probed, int first_depth) {
  const MadeMove& made = probed.made;
  int score = made.alpha;
  for (int depth = first_depth; depth <= made.depth; ++depth) {
    score = Probe(probed, depth, probed.reply);
    if (score <= made.alpha && !made.gives_check) break;
  }
  return score;
}

// Looks with a zero window whether the move gets above alpha once the best reply is left out.
int Verify(const ProbedMove& probed, int depth, Move first_move) {
  ClearLine(probed.line);
  NodeArgs args = ZeroWindow(probed.made);
  args.depth = depth;
  args.is_probe_child = true;
  args.first_move = first_move;
  args.excluded_move = probed.reply;
  return -Search(args, probed.line);
}

int SearchFully(const ProbedMove& probed) {
  ClearLine(probed.line);
  NodeArgs args = FullWindow(probed.made);
  args.first_move = probed.reply;
  return -main_search(args, probed.line);
}

int SearchByKnowledge1(ProbedMove& probed) {
  const MadeMove& made = probed.made;
  const int score = ProbeFrom(probed, made.depth >= kTwoProbesFrom ? made.depth - 1 : made.depth);
  const bool is_root_move = ply == 1;
  return score > made.alpha || is_root_move ? SearchFully(probed) : score;
}

int SearchByKnowledge2(ProbedMove& probed) {
  const MadeMove& made = probed.made;
  int score = Probe(probed, made.depth, 0);
  if (score <= made.alpha && made.depth >= kVerifyChildFrom && probed.reply != 0) {
    score = Verify(probed, made.depth, 0);
  }
  return score > made.alpha ? SearchFully(probed) : score;
}

int SearchByKnowledge3(ProbedMove& probed, bool verifies) {
  const MadeMove& made = probed.made;
  int first_depth = made.depth - 1;
  if (made.gives_check && first_depth <= 0) first_depth = made.depth;
  int score = ProbeFrom(probed, first_depth);
  if (score <= made.alpha && verifies) score = Verify(probed, made.depth / 2, probed.reply);
  return score > made.alpha ? SearchFully(probed) : score;
}

int SearchInStyle(ProbedMove probed, bool verifies) {
  switch (PLAY_STYLE) {
    case kKnowledge1: return SearchByKnowledge1(probed);
    case kKnowledge2: return SearchByKnowledge2(probed);
    case kKnowledge3: return SearchByKnowledge3(probed, verifies);
    default:
      Message("#----> main_search(); unknow style\n");
      AbortOnBrokenInvariant();
      return 0;
  }
}

}  // namespace

int main_search(int alpha, int beta, int depth, int in_check, Move* line, int /*is_probe_child*/,
                int on_pv, int /*null_allowed*/, Move first_move) {
  // Step 1. What needs no move: mate, horizon, stop, draw, learned score.
  NodeStart start{depth, false, 0};
  if (SettleWithoutMoves(start, alpha, beta, in_check != 0)) return start.score;
  depth = start.depth;

  // Step 2. Transposition table: for its move only.
  Move tt_move = 0;
  int score = 0;
  if (ply >= 1) HashLook(alpha, beta, depth, score, tt_move);

  // Step 3. The move list; the root's stands ready, and in check step 1 has built it.
  if (ply == 0 && ListLength() == 0) return 0;
  if (in_check == 0 && ply >= 1 && SettleByGeneration(score)) return score;

  // Step 4. The moves.
  const bool list_is_legal = in_check != 0;
  MovePicker picker{.on_pv = on_pv != 0, .tt_move = tt_move, .first_move = first_move};
  Move child_line[kLineSize];
  Move best = 0;
  int count = 0;
  Move move = 0;
  while (alpha < beta && NextMove(picker, move)) {
    const bool to_seventh = IsPawnToSeventh(move);
    if (!MakeIfLegal(move, list_is_legal)) continue;
    ++count;
    const bool gives_check = Check();
    const bool is_root_move = ply == 1;  // the move stands made; the root's own are never extended
    const bool extends =
        !is_root_move && (gives_check || to_seventh || (in_check != 0 && start.single_reply));
    const MadeMove made{.alpha = alpha,
                        .beta = beta,
                        .depth = depth - 1 + (extends ? 1 : 0),
                        .gives_check = gives_check,
                        .from_pv = picker.from_pv};
    score = SearchInStyle({made, child_line}, in_check == 0 && depth >= kVerifyNodeFrom);
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
