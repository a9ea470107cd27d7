#include "search/quies.h"

#include <algorithm>

#include "eval/evaluate.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/order.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kPresortAbove = 20;  // longer lists may be sorted once
constexpr int kNoVictim = -1000000;

int MaterialGain(Move move) {
  int gain = (move & kCapture) != 0 ? value[g.board[TargetOf(move)]] : 0;
  if ((move & kPromotion) != 0) gain += value[PieceOf(move)] - value[Pawn];
  return gain;
}

// What the moves of a list could win at most.
struct ListGains {
  int victim;  // greatest value of a captured piece, or kNoVictim
  int gain;    // greatest gain in material, promotions included
};

// Writes the ordering values of the list and finds its greatest gains.
ListGains ScoreList(int first, int end) {
  const Move last_move = LastMove();
  ListGains greatest{kNoVictim, 0};
  for (int i = first; i < end; ++i) {
    const Move move = tree[i];
    sort_val[i] = CaptureValue(move, last_move);
    if ((move & kCapture) != 0) {
      greatest.victim = std::max(greatest.victim, value[g.board[TargetOf(move)]]);
    }
    greatest.gain = std::max(greatest.gain, MaterialGain(move));
  }
  return greatest;
}

// Whether heavy pieces and pawns are left after any one move, so that the evaluation's draw rule
// cannot apply.
bool DrawRuleIsFar() {
  SquareSet fighters = 0;
  for (const auto& own : board_sets.of) fighters |= own[Pawn] | own[Rook] | own[Queen];
  return CountOf(fighters) > 2;
}

// Does for moves whose gain leaves the opponent standing pat on material alone what making them,
// searching and taking them back would do: count the nodes and leave a trace in the record, which
// is part of a saved game.
void CountRefuted(int moves) {
  for (; moves > 0; --moves) StopSearch();
  LeaveTrace();
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

  const ListGains greatest = ScoreList(first, end);
  const int material = g.material[g.side] - g.material[g.xside];
  const bool hopeless = greatest.victim + material < best;
  // A long hopeless list is sorted once, ascending: its worst captures come first. That is meant.
  const bool presorted = end - first > kPresortAbove && hopeless;
  if (presorted) QSort(first, end - 1);

  // A gain below this leaves the opponent above his bound by material alone: the evaluation's lazy
  // exit would say so at once, and nothing of that node would be kept. (A root list may hold an
  // en-passant capture, which gains what does not stand on its target square.)
  const bool may_refute = ply > 0 && DrawRuleIsFar();
  for (int i = first; i < end; ++i) {
    const int needed = best - kLazyMargin - material;
    if (may_refute && greatest.gain < needed) {
      CountRefuted(end - i);
      return best;
    }
    if (!presorted) Pick(i, end - 1);
    const Move move = tree[i];
    if (may_refute && MaterialGain(move) < needed) {
      CountRefuted(1);
      continue;
    }
    MakeMove(move);
    const int score = -Quies(-beta, -best);
    UnMakeMove(move);
    best = std::max(best, score);
    if (best >= beta) return best;
  }
  return best;
}

}  // namespace tarvyle
