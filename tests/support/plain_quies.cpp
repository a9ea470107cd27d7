#include "tests/support/plain_quies.h"

#include <algorithm>
#include <utility>

#include "eval/evaluate.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/types.h"
#include "search/clock.h"

namespace tarvyle::support {

namespace {

constexpr int kWorth[7] = {0, 1000, 3000, 3000, 5000, 10000, 1000000};
constexpr int kNothingToTake = -1000000;

bool HasBit(Move move, int bit) { return (move >> bit & 1) != 0; }
bool IsEnPassant(Move move) { return HasBit(move, 29); }
bool IsCapture(Move move) { return HasBit(move, 30); }
bool IsPromotion(Move move) { return HasBit(move, 31); }

Square ToSquare(Move move) { return static_cast<Square>(move & 63); }

// A promoting pawn's move names the new piece.
int PieceField(Move move) { return static_cast<int>(move >> 12 & 7); }
int MovingPiece(Move move) { return IsPromotion(move) ? 1 : PieceField(move); }

int VictimWorth(Move move) {
  return IsCapture(move) ? kWorth[g.board[ToSquare(move)]] : kNothingToTake;
}

int OrderingValue(Move move) {
  const int moves_made = g.game_len + ply;
  const Move previous = moves_made > 0 ? g.game_moves[moves_made - 1] : 0;
  int worth = 0;
  if (IsCapture(move)) {
    worth = IsEnPassant(move) ? 2000 : VictimWorth(move) - MovingPiece(move);
    if (ToSquare(move) == ToSquare(previous)) worth += 5000;
  }
  if (IsPromotion(move)) worth += kWorth[PieceField(move)];
  return worth;
}

void SwapPlaces(int a, int b) {
  std::swap(tree[a], tree[b]);
  std::swap(sort_val[a], sort_val[b]);
}

void SortAscending(int first, int last) {
  const int middle = sort_val[(first + last) / 2];
  int left = first;
  int right = last;
  while (left <= right) {
    while (sort_val[left] < middle) ++left;
    while (sort_val[right] > middle) --right;
    if (left > right) break;
    SwapPlaces(left, right);
    ++left;
    --right;
  }
  if (first < right) SortAscending(first, right);
  if (left < last) SortAscending(left, last);
}

void SelectGreatest(int first, int end) {
  int greatest = first;
  for (int i = first; i < end; ++i) {
    if (sort_val[i] > sort_val[greatest]) greatest = i;
  }
  SwapPlaces(first, greatest);
}

}  // namespace

int PlainQuies(int alpha, int beta) {
  if (StopSearch() != 0) return 0;
  const int stand_pat = Evaluate(alpha, beta);
  int best = std::max(alpha, stand_pat);
  if (stand_pat >= beta) return best;
  if (ply > 96) return best;
  if (ply > 0 && !GenerateCaptures()) return 1000000 - ply;

  const int first = treeCnt[ply];
  const int end = treeCnt[ply + 1];
  int greatest_victim = kNothingToTake;
  for (int i = first; i < end; ++i) {
    sort_val[i] = OrderingValue(tree[i]);
    greatest_victim = std::max(greatest_victim, VictimWorth(tree[i]));
  }
  const bool sorted =
      end - first > 20 && greatest_victim + g.material[g.side] - g.material[g.xside] < best;
  if (sorted) SortAscending(first, end - 1);
  for (int i = first; i < end; ++i) {
    if (!sorted) SelectGreatest(i, end);
    const Move move = tree[i];
    MakeMove(move);
    const int score = -PlainQuies(-beta, -best);
    UnMakeMove(move);
    best = std::max(best, score);
    if (best >= beta) return best;
  }
  return best;
}

}  // namespace tarvyle::support
