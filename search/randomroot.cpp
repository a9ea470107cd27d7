#include "search/randomroot.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "base/message.h"
#include "position/attack.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/text.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/mainsearch.h"
#include "search/order.h"
#include "search/rootentry.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kDeepestStage1 = 39;
constexpr int kCandidateMargin = 2000;  // two pawns below the best move
constexpr int kNearEqual = 5;
constexpr int kLeastValue = std::numeric_limits<int>::min() + 2;
constexpr int kGreatestValue = std::numeric_limits<int>::max() - 2;

// What stage 1 found; no move when the clock stopped before any was resolved.
struct BestMove {
  Move move;
  int score;
  int depth;
};

double Seconds(int hundredths) { return hundredths / 100.0; }

void StartStage(int allowance) {
  limit_time = allowance;
  TimeReset();
}

// Root moves set aside lie before treeCnt[0]; searches see those from there on.
int RemainingMoves() { return treeCnt[1] - treeCnt[0]; }

void SetAside(Move move, int score) {
  PickMove(move, treeCnt[0], treeCnt[1] - 1);
  sort_val[treeCnt[0]] = score;
  ++treeCnt[0];
}

// The lines that are published stay in `pv_table`: the next ordinary search takes them into its
// tree after its first iteration.
int SearchRoot(int alpha, int depth) {
  s_depth = depth;
  return main_search({.alpha = alpha,
                      .beta = kInfinity,
                      .depth = depth,
                      .in_check = Check(),
                      .first_move = search_mv},
                     pv_line);
}

// The last root result that was published counts, be it of an interrupted iteration.
BestMove FindBestMove() {
  for (int depth = 2; depth <= kDeepestStage1 && StopSearch() == 0; ++depth) {
    SearchRoot(-kInfinity, depth);
  }
  return {search_mv, search_score, search_depth};
}

// One pass over the remaining moves. True when it has set a candidate aside.
bool FindCandidate(const BestMove& best, int floor) {
  HashDepthLow();
  for (int depth = 2; depth <= best.depth && StopSearch() == 0; ++depth) {
    const int score = SearchRoot(floor, depth);
    if (is_stop_search != 0) return false;
    if (search_depth < best.depth) continue;
    if (score <= floor) return false;
    SetAside(search_mv, search_score);
    Message("#----> find kandidat move %s, score %d, depth %d\n", MoveToStr(search_mv),
            search_score, search_depth);
    return true;
  }
  return false;
}

void FindCandidates(const BestMove& best) {
  Message("#----> search kandidate's moves ...  time = %02f \n", Seconds(limit_time));
  const int floor = std::max(best.score - kCandidateMargin, -kInfinity);
  while (RemainingMoves() > 0 && FindCandidate(best, floor)) {
  }
}

// Random play-outs after each of the first `count` root moves in turn, while the time lasts. Those
// that the stop cuts short change nothing: their result is 0.
void AddPlayouts(int count) {
  while (StopSearch() == 0) {
    for (int i = 0; i < count; ++i) {
      MakeMove(tree[i]);
      sort_val[i] -= RndSearch();
      UnMakeMove(tree[i]);
      if (sort_val[i] < kLeastValue || sort_val[i] > kGreatestValue) return;
    }
  }
}

void PrintResult(int count) {
  Message("# ----> result of search \n");
  for (int i = 0; i < count; ++i) {
    Pick(i, count - 1);
    Message("#move %s, score %d\n", MoveToStr(tree[i]), sort_val[i]);
  }
}

// Brings the move to play to the front of the `count` moves set aside.
void DecideAmong(int count) {
  if (sort_val[0] > sort_val[1] || sort_val[1] - sort_val[0] > kNearEqual) {
    Message("#skip random score (result undefined) \n");
    Pick(0, count - 1);
    return;
  }
  Message("#-----> stage2: assign additional random score,  time = %02f \n", Seconds(limit_time));
  AddPlayouts(count);
  PrintResult(count);
}

// Runs the stages and leaves the chosen move, with its value, first in the root list.
void ChooseAmong(const BestMove& best, int allowance) {
  StartStage(allowance * 90 / 100);
  SetAside(best.move, best.score);
  Message("#----> find best move %s,    score %d, depth %d\n", MoveToStr(best.move), best.score,
          best.depth);
  if (IsMating(best.score)) return;
  FindCandidates(best);
  const int count = treeCnt[0];
  if (count == 1) {
    Message("# find search. one move only \n");
    return;
  }
  StartStage(allowance / 10);
  treeCnt[0] = 0;
  treeCnt[1] = count;
  DecideAmong(count);
}

void Report(Move move, int score, int depth) {
  if (move == 0) {
    Message("# move not fond ?!! \n");
    return;
  }
  Message("# select move: %s, %d \n", MoveToStr(move), score);
  LearnResult(score, depth);
}

// The search proper, for a root with several moves. Returns the chosen move, or 0.
Move SearchStages(int allowance) {
  StartStage(allowance / 2);
  Message("#------> stage1 - search best move, time = %02f \n", Seconds(limit_time));
  const BestMove best = FindBestMove();
  if (best.move != 0) ChooseAmong(best, allowance);
  const Move chosen = best.move != 0 ? tree[0] : 0;
  Report(chosen, sort_val[0], best.depth);
  treeCnt[0] = 0;
  treeCnt[1] = 0;
  return chosen;
}

}  // namespace

bool Rnd_Root_Search(Move& move) {
  const std::uint32_t begin = TICK_COUNT();
  const int allowance = limit_time;
  Message("search move ... \n");
  init_search();
  if (!ListRootMoves()) {
    Message("#cap. king - illegal move \n");
    return false;
  }
  const int count = ListLength();
  if (count == 1) {
    Message("# one reply \n");
    move = tree[0];
    return true;
  }
  if (BookAnswers(count, move)) {
    Message("# find move from open. book \n");
    return true;
  }
  for (int i = 0; i < count; ++i) sort_val[i] = std::rand() & 15;
  move = SearchStages(allowance);
  limit_time = allowance;
  Message("#search time %02f \n", Seconds(static_cast<int>(TICK_COUNT() - begin)));
  return move != 0;
}

int RndSearch() {
  if (StopSearch() != 0 || ply >= kDeepestNode || !LegalMoveList()) return 0;
  const int count = ListLength();
  if (count == 0) return Check() ? -1 : 0;
  const Move move = tree[treeCnt[ply] + (count > 1 ? std::rand() % count : 0)];
  MakeMove(move);
  const int result = RndSearch();
  UnMakeMove(move);
  return -result;
}

}  // namespace tarvyle
