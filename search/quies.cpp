#include "search/quies.h"

#include <algorithm>

#include "eval/evaluate.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/limits.h"
#include "search/order.h"

namespace tarvyle {

namespace {

// Lists are selected from move by move up to this length. A longer one is sorted at once when it is
// hopeless: then no cut-off is in sight, and selecting would go through all of it for each move.
constexpr int kSelectedUpTo = 20;

constexpr int kNoVictim = -1000000;

// What stands on the target square, which for an en-passant capture is nothing.
int VictimValue(Move move) { return value[g.board[TargetOf(move)]]; }

// What a move changes in the mover's material. En passant is met at the root only, whose list is
// not GenerateCaptures'.
int MaterialGain(Move move) {
  int gain = (move & kCapture) != 0 ? VictimValue(move) : 0;
  if ((move & kEnPassant) != 0) gain = value[Pawn];
  if ((move & kPromotion) != 0) gain += value[PieceOf(move)] - value[Pawn];
  return gain;
}

// What the moves of a list could win at most.
struct ListGains {
  int victim;  // greatest value on the target square of a capture, or kNoVictim
  int gain;    // greatest gain in material, promotions included
};

// Writes the ordering values of the list and finds its greatest gains.
ListGains ScoreList(int first, int end) {
  const Move last_move = LastMove();
  ListGains greatest{kNoVictim, 0};
  for (int i = first; i < end; ++i) {
    const Move move = tree[i];
    sort_val[i] = CaptureValue(move, last_move);
    if ((move & kCapture) != 0) greatest.victim = std::max(greatest.victim, VictimValue(move));
    greatest.gain = std::max(greatest.gain, MaterialGain(move));
  }
  return greatest;
}

// Does for moves that need not be searched what making them, searching and taking them back would
// do: counts the nodes and leaves a trace in the record, which is part of a saved game.
void CountRefuted(int moves) {
  for (; moves > 0; --moves) StopSearch();
  LeaveTrace();
}

}  // namespace

// A move need not be searched when even with its gain the mover's material falls short of `best`.
// Proof. The opponent would be searched with the window (-beta, -best), and evaluated first of all.
// The position being winnable, Evaluate begins with material alone; his is -(material + gain),
// which is so far above -best that it stands for the evaluation. He would stand pat on it and
// return it before any list is made. For the mover that is material + gain, less than `best`:
// nothing changes. What is left of such a move is a node that is counted and a trace. This holds
// for the root's list as well, quiet moves and en passant among it, since it asks of a move nothing
// but its exact gain.
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
  // Sorted ascending: the worst captures come first. That is meant.
  const bool presorted = end - first > kSelectedUpTo && hopeless;
  if (presorted) QSort(first, end - 1);

  const bool may_refute = WinnableAfterAnyMove();
  for (int i = first; i < end; ++i) {
    if (may_refute && MaterialFallsShort(material + greatest.gain, best)) {
      CountRefuted(end - i);
      return best;
    }
    if (!presorted) Pick(i, end - 1);
    const Move move = tree[i];
    if (may_refute && MaterialFallsShort(material + MaterialGain(move), best)) {
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
