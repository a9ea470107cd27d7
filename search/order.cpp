#include "search/order.h"

#include <utility>

#include "position/movestack.h"
#include "position/record.h"
#include "search/history.h"
#include "search/state.h"

namespace tarvyle {

namespace {

// Parts of ordering values, in the unit of the pieces' values.
constexpr int kEnPassantValue = 2000;
constexpr int kRecaptureBonus = 5000;
constexpr int kTableMoveBonus = 20000;
constexpr int kKillerBonus = 1990;
constexpr int kPvKillerBonus = 990;

// Tactical moves are selected one by one up to this many, since an early one mostly cuts off; more
// than that are sorted at once.
constexpr int kTacticalSelectedUpTo = 30;

void SwapEntries(int a, int b) {
  std::swap(tree[a], tree[b]);
  std::swap(sort_val[a], sort_val[b]);
}

void Open(MovePicker& picker) {
  picker.next = treeCnt[ply];
  picker.end = treeCnt[ply + 1];
  picker.killer_move = killer[ply];
  picker.pv_killer_move = pv_killer[ply];
  if (doNull == 0) picker.line_move = pv_line[ply];
}

bool TakeNext(MovePicker& picker, Move& move) {
  move = tree[picker.next++];
  return true;
}

// Offers `wanted` if it is among the untried moves.
bool TakeNamed(MovePicker& picker, Move wanted, Move& move) {
  if (!PickMove(wanted, picker.next, picker.end - 1)) return false;
  picker.from_pv = true;
  return TakeNext(picker, move);
}

void FindContinuations(MovePicker& picker) {
  if (!picker.on_pv || doNull != 0) return;
  PvNode** link = pvFindNodeTree(pv_tree, g.game_moves + g.game_len, ply);
  if (link != nullptr) picker.pv_children = *link;
}

bool TakeContinuation(MovePicker& picker, Move& move) {
  while (picker.pv_children != nullptr) {
    const Move wanted = picker.pv_children->move;
    picker.pv_children = picker.pv_children->next;
    if (TakeNamed(picker, wanted, move)) return true;
  }
  return false;
}

int TacticalValue(const MovePicker& picker, Move move, Move last_move) {
  int score = CaptureValue(move, last_move);
  if (move == picker.tt_move) score += kTableMoveBonus;
  if (move == picker.killer_move) score += kKillerBonus;
  if (move == picker.pv_killer_move) score += kPvKillerBonus;
  return score;
}

// Gathers the moves with a value above 0 in a front segment, in list order. A long segment is
// sorted at once, ascending, and walked as it is.
void ScoreTactical(MovePicker& picker) {
  const Move last_move = LastMove();
  int segment_end = picker.next;
  for (int i = picker.next; i < picker.end; ++i) {
    const int score = TacticalValue(picker, tree[i], last_move);
    if (score <= 0) continue;
    std::swap(tree[i], tree[segment_end]);
    sort_val[segment_end++] = score;
  }
  picker.end = segment_end;
  if (segment_end - picker.next > kTacticalSelectedUpTo) {
    QSort(picker.next, segment_end - 1);
    picker.presorted = true;
  }
}

bool TakeBest(MovePicker& picker, Move& move) {
  if (picker.next >= picker.end) return false;
  if (!picker.presorted) Pick(picker.next, picker.end - 1);
  return TakeNext(picker, move);
}

// The last stage; from its end on there is none.
bool TakeRest(MovePicker& picker, Move& move) {
  picker.stage = kRest;
  if (TakeBest(picker, move)) return true;
  picker.stage = kExhausted;
  return false;
}

// By history, then by how far the move leads forward (1 to 127), then by where it starts: each in a
// range that the next cannot fill.
int QuietValue(Move move) {
  const int from = OriginOf(move);
  const int to = TargetOf(move);
  const int advance = (g.side == White ? from - to : to - from) + 64;
  const int tie = g.side == White ? from : 63 - from;
  return History(g.side, move) * 16384 + advance * 64 + tie;
}

void ScoreQuiet(MovePicker& picker) {
  picker.end = treeCnt[ply + 1];
  picker.presorted = false;
  for (int i = picker.next; i < picker.end; ++i) sort_val[i] = QuietValue(tree[i]);
}

}  // namespace

int CaptureValue(Move move, Move last_move) {
  int score = 0;
  if ((move & kCapture) != 0) {
    score =
        (move & kEnPassant) != 0 ? kEnPassantValue : value[g.board[TargetOf(move)]] - MoverOf(move);
    if (TargetOf(move) == TargetOf(last_move)) score += kRecaptureBonus;
  }
  if ((move & kPromotion) != 0) score += value[PieceOf(move)];
  return score;
}

bool NextMove(MovePicker& picker, Move& move) {
  switch (picker.stage) {
    case kFirstMove:
      Open(picker);
      picker.stage = kFindContinuations;
      if (picker.first_move != 0 && TakeNamed(picker, picker.first_move, move)) return true;
      [[fallthrough]];
    case kFindContinuations:
      FindContinuations(picker);
      picker.stage = kContinuations;
      [[fallthrough]];
    case kContinuations:
      if (TakeContinuation(picker, move)) return true;
      picker.from_pv = false;
      // The root's moves carry their scores of the iteration before, which stand for all stages.
      if (ply == 0) return TakeRest(picker, move);
      [[fallthrough]];
    case kScoreTactical:
      ScoreTactical(picker);
      picker.stage = kTactical;
      [[fallthrough]];
    case kTactical:
      if (TakeBest(picker, move)) return true;
      [[fallthrough]];
    case kScoreQuiet: ScoreQuiet(picker); [[fallthrough]];
    case kRest: return TakeRest(picker, move);
    case kExhausted: break;
  }
  return false;
}

void QSort(int first, int last) {
  const int pivot = sort_val[(first + last) / 2];
  int i = first;
  int j = last;
  while (i <= j) {
    while (sort_val[i] < pivot) ++i;
    while (sort_val[j] > pivot) --j;
    if (i <= j) SwapEntries(i++, j--);
  }
  if (first < j) QSort(first, j);
  if (i < last) QSort(i, last);
}

void Pick(int first, int last) {
  int best = first;
  for (int i = first + 1; i <= last; ++i) {
    if (sort_val[i] > sort_val[best]) best = i;
  }
  SwapEntries(first, best);
}

bool PickMove(Move move, int first, int last) {
  for (int i = last; i >= first; --i) {
    if (tree[i] != move) continue;
    SwapEntries(first, i);
    return true;
  }
  return false;
}

}  // namespace tarvyle
