#include "search/nodesteps.h"

#include <algorithm>

#include "book/learn.h"
#include "book/learnfilter.h"
#include "eval/evaluate.h"
#include "position/attack.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/record.h"
#include "position/score.h"
#include "search/clock.h"
#include "search/draw.h"
#include "search/hash.h"
#include "search/quies.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kContempt = -8;       // a draw, for the side that moved at the root
constexpr int kLearnedFromPly = 5;  // learned scores count from this ply on
constexpr int kPliesPerDepth = 3;   // of the iteration; beyond these every node is at the horizon

bool Settle(NodeStart& start, int score) {
  start.score = score;
  return true;
}

// In check above the root: mate, or the legal list and no quiescence.
bool SettledInCheck(NodeStart& start) {
  if (!LegalMoveList()) return Settle(start, kCaptureKing - ply);
  const int replies = ListLength();
  if (replies == 0) {
    cut_forse[ply] = kCheckmated;
    return Settle(start, ply + kMated);
  }
  start.single_reply = replies == 1;
  return false;
}

}  // namespace

bool SettleWithoutMoves(NodeStart& start, int alpha, int beta, bool in_check) {
  cut_forse[ply] = kNoCut;
  if (in_check) {
    if (ply >= 1 && SettledInCheck(start)) return true;
    start.depth = std::max(start.depth, 1);
  } else if (ply > kPliesPerDepth * s_depth) {
    start.depth = 0;
  }
  if (start.depth < 1) return Settle(start, Quies(alpha, beta));
  if (StopSearch() != 0) return Settle(start, 0);
  if (ply > kMaxSearchPly) return Settle(start, Evaluate(alpha, beta));
  if (ply >= 1 && DrawByRule()) {
    cut_forse[ply] = kDrawByRule;
    return Settle(start, g.side == root_side ? kContempt : 0);
  }
  return ply >= kLearnedFromPly && LearnLook(start.depth, alpha, beta, start.score);
}

bool SettleByGeneration(int& score) {
  if (!Generate()) {
    score = kCaptureKing - ply;
    return true;
  }
  score = 0;
  return ListLength() == 0;
}

bool MakeIfLegal(Move move, bool list_is_legal) {
  if (!list_is_legal && (move & kCastling) != 0 && !LegalCastl(move)) return false;
  MakeMove(move);
  // The child will look the position up soon; what it reads is fetched meanwhile.
  HashPrefetch();
  PrefetchLearned(g.key.low, g.key.high);
  if (list_is_legal || !SqAttack(g.king_sq[g.xside], g.side)) return true;
  UnMakeMove(move);
  return false;
}

bool IsPawnToSeventh(Move move) {
  return PieceOf(move) == Pawn && RowOf(TargetOf(move)) == SeventhRow(g.side);
}

}  // namespace tarvyle
