#include "book/book.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "book/learn.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/score.h"

namespace tarvyle {

namespace {

constexpr int kBookSpread = 50;      // range of a book move's random ordering value
constexpr int kOrdinarySpread = 20;  // range of any other's

constexpr int kPlainRange = 21;     // range that a candidate with the least value draws from
constexpr int kMaxWeight = 70;      // what a good score may add to it
constexpr int kAlwaysUsable = 500;  // values up to this are played, whatever their positional part
constexpr int kWorstUsable = -29;   // least positional part that a greater value is played with
constexpr int kNoDraw = -1000000;
constexpr int kNoMinimum = 1000000;

// The book node that `move` leads to, or null.
LearnNode* BookNodeAfter(Move move) {
  MakeMove(move);
  LearnNode* node = FindCurrentNode();
  UnMakeMove(move);
  return node != nullptr && IsBookNode(*node) ? node : nullptr;
}

struct Candidates {
  LearnNode* nodes[kMaxListMoves];
  Move moves[kMaxListMoves];
  int count;
};

// Value of a candidate for the side that plays it; the stored score is the opponent's. The least
// number of all, which only a learn file could bring in, has no negative: it stays as it is.
int ValueOf(const Candidates& candidates, int i) {
  return static_cast<int>(0u - static_cast<unsigned>(candidates.nodes[i]->score));
}

// Reduces a value to its positional part. Returns false when the move is not to be played.
bool ReduceValue(int v, int& reduced) {
  if (IsMated(v)) return false;
  reduced = extract_strateg_score(v);
  return v <= kAlwaysUsable || IsMating(v) || reduced >= kWorstUsable;
}

// Weight of a candidate. A value below 0 weighs as much as a mate; a reduced value may be negative.
int WeightOf(int v, int reduced) {
  return IsMating(v) || v < 0 ? kMaxWeight : std::min(reduced, kMaxWeight);
}

// Range that plain candidates draw from, set by the least value of all.
int BaseRange(const Candidates& candidates) {
  int minimum = kNoMinimum;
  for (int i = 0; i < candidates.count; ++i) {
    int reduced = 0;
    if (ReduceValue(ValueOf(candidates, i), reduced)) minimum = std::min(minimum, reduced);
  }
  return minimum + kPlainRange;
}

}  // namespace

bool ListLibMoves(int first, int last, LearnNode** nodes, Move* moves, int& count) {
  count = 0;
  for (int i = first; i <= last; ++i) {
    LearnNode* node = BookNodeAfter(tree[i]);
    if (node == nullptr) continue;
    nodes[count] = node;
    moves[count++] = tree[i];
  }
  return count > 0;
}

Move MoveFromLib(int first, int last) {
  static Candidates candidates;
  if (!ListLibMoves(first, last, candidates.nodes, candidates.moves, candidates.count)) return 0;
  const int base = BaseRange(candidates);
  Move choice = 0;
  int best_draw = kNoDraw;
  for (int i = 0; i < candidates.count; ++i) {
    const int v = ValueOf(candidates, i);
    int reduced = 0;
    if (!ReduceValue(v, reduced)) continue;
    const int range = WeightOf(v, reduced) + base;
    if (range <= 0) {
      std::fputs("# ----> error: MoveFromLib() \n", stderr);
      continue;
    }
    const int draw = std::rand() % range;
    if (draw > best_draw) {
      best_draw = draw;
      choice = candidates.moves[i];
    }
  }
  return choice;
}

void RndMovesWithLib(int first, int last) {
  for (int i = first; i <= last; ++i) {
    const int spread = BookNodeAfter(tree[i]) != nullptr ? kBookSpread : kOrdinarySpread;
    sort_val[i] = std::rand() % spread;
  }
}

}  // namespace tarvyle
