#include "search/quies.h"

#include <algorithm>

#include "eval/evaluate.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "search/clock.h"
#include "search/order.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kPresortAbove = 20;  // longer lists may be sorted once
constexpr int kNoVictim = -1000000;

// Writes the ordering values of the list and returns the greatest value of a captured piece.
int ScoreList(int first, int end) {
  const Move last_move = LastMove();
  int greatest = kNoVictim;
  for (int i = first; i < end; ++i) {
    const Move move = tree[i];
    sort_val[i] = CaptureValue(move, last_move);
    if ((move & kCapture) != 0) greatest = std::max(greatest, value[g.board[TargetOf(move)]]);
  }
  return greatest;
}

}  // namespace

int Quies(int alpha, int beta) {
  if (StopSearch() != 0) return 0;
  const int stand_pat = Evaluate(alpha, beta);
  int best = std::max(alpha, stand_pat);
  if (stand_pat >= beta || ply > kMaxSearchPly) return best;
  if (ply > 0 && !GenerateCaptures()) return kCaptureKing - ply;
  const int first = treeCnt[ply];
  const int end = treeCnt[ply + 1];
  if (first == end) return best;

  const int victim = ScoreList(first, end);
  const bool hopeless = victim + g.material[g.side] - g.material[g.xside] < best;
  // A long hopeless list is sorted once, ascending: its worst captures come first. That is meant.
  const bool presorted = end - first > kPresortAbove && hopeless;
  if (presorted) QSort(first, end - 1);

  for (int i = first; i < end; ++i) {
    if (!presorted) Pick(i, end - 1);
    const Move move = tree[i];
    MakeMove(move);
    const int score = -Quies(-beta, -best);
    UnMakeMove(move);
    best = std::max(best, score);
    if (best >= beta) return best;
  }
  return best;
}

}  // namespace tarvyle
