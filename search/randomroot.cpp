#include "search/randomroot.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <span>
#include <utility>

#include "base/message.h"
#include "position/attack.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"
#include "position/text.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/lifetimes.h"
#include "search/mainsearch.h"
#include "search/order.h"
#include "search/rootentry.h"
#include "search/roothooks.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kLastIteration = 39;      // of the search for the best move
constexpr int kCandidateMargin = 2000;  // two pawns below the best move
constexpr int kNearEqual = 5;

// Values beyond these leave the range of an int after one play-out or two more.
constexpr int kLeastValue = std::numeric_limits<int>::min() + 2;
constexpr int kGreatestValue = std::numeric_limits<int>::max() - 2;

// What the first stage found; no move when the clock stopped before any was resolved.
struct BestMove {
  Move move;
  int score;
  int depth;
};

// The best move and, behind it, what comes close to it, in the order found.
struct Candidates {
  Candidate moves[kMaxListMoves];
  int count = 0;

  std::span<Candidate> All() { return {moves, moves + count}; }
};

double Seconds(int hundredths) { return hundredths / 100.0; }

// Each stage has its own part of the allowance and a clock started anew.
void StartStage(int allowance) {
  SetAllowance(allowance);
  TimeReset();
}

// Root moves set aside lie before treeCnt[0]; searches see those from there on.
int RemainingMoves() { return treeCnt[1] - treeCnt[0]; }

void SetAside(Candidates& candidates, Candidate one) {
  PickMove(one.move, treeCnt[0], treeCnt[1] - 1);
  ++treeCnt[0];
  candidates.moves[candidates.count++] = one;
}

// The move found last is tried first. The lines that are published stay in `pv_table`: the next
// ordinary search takes them into its tree after its first iteration.
int SearchRoot(int alpha, int depth) {
  BeginIteration(depth);
  return main_search({.alpha = alpha,
                      .beta = kInfinity,
                      .depth = depth,
                      .in_check = Check(),
                      .first_move = search_mv},
                     pv_line);
}

// The last root result that was published counts, be it of an interrupted iteration.
BestMove FindBestMove() {
  const int last = std::min(kLastIteration, root_hooks.max_depth);
  for (int depth = root_hooks.first_depth; depth <= last && StopSearch() == 0; ++depth) {
    SearchRoot(-kInfinity, depth);
  }
  return {search_mv, search_score, search_depth};
}

// One pass over the remaining moves, in search of one that scores above `floor` at the depth of the
// best move. True when it has set a candidate aside.
bool FindCandidate(const BestMove& best, int floor, Candidates& candidates) {
  // Scores of the passes before shall not settle nodes of this one; their moves still guide it.
  HashDepthLow();
  for (int depth = root_hooks.first_depth; depth <= best.depth && StopSearch() == 0; ++depth) {
    const int score = SearchRoot(floor, depth);
    if (is_stop_search != 0) return false;  // half an iteration proves nothing
    // The result published last is one of this pass that is not deep enough yet. Where the pass has
    // published none so far, it is that of the move set aside last, which is: then nothing has got
    // above the floor even in a shallow search, and the next line ends the pass.
    if (search_depth < best.depth) continue;
    if (score <= floor) return false;
    SetAside(candidates, {search_mv, search_score});
    Message("#----> find kandidat move %s, score %d, depth %d\n", MoveToStr(search_mv),
            search_score, search_depth);
    return true;
  }
  return false;
}

// Each pass finds the best of what remains, so the first that finds nothing is the last.
void FindCandidates(const BestMove& best, Candidates& candidates) {
  Message("#----> search kandidate's moves ...  time = %02f \n", Seconds(limit_time));
  const int floor = std::max(best.score - kCandidateMargin, -kInfinity);
  while (RemainingMoves() > 0 && FindCandidate(best, floor, candidates)) {
  }
}

// Brings the candidate of the greatest value to the front, the first of equals. The one that stood
// there takes its place.
void BringGreatest(std::span<Candidate> candidates) {
  const auto less = [](const Candidate& a, const Candidate& b) { return a.value < b.value; };
  std::swap(candidates.front(), *std::max_element(candidates.begin(), candidates.end(), less));
}

void PrintInOrder(std::span<Candidate> candidates) {
  Message("# ----> result of search \n");
  for (; !candidates.empty(); candidates = candidates.subspan(1)) {
    BringGreatest(candidates);
    const Candidate& one = candidates.front();
    Message("#move %s, score %d\n", MoveToStr(one.move), one.value);
  }
}

// A candidate may have come out above the best move, having been searched later. By a little, that
// is chance as well; when the best move is the better one it stays so.
bool LeadersAreNearEqual(std::span<const Candidate> candidates) {
  const int lead = candidates[1].value - candidates[0].value;
  return lead >= 0 && lead <= kNearEqual;
}

Candidate DecideAmong(std::span<Candidate> candidates) {
  if (LeadersAreNearEqual(candidates)) {
    Message("#-----> stage2: assign additional random score,  time = %02f \n", Seconds(limit_time));
    AddPlayouts(candidates);
    PrintInOrder(candidates);
  } else {
    Message("#skip random score (result undefined) \n");
    BringGreatest(candidates);
  }
  return candidates.front();
}

// The stages after the first.
Candidate ChooseAmong(const BestMove& best, int allowance) {
  StartStage(allowance * 90 / 100);
  const Candidate first{best.move, best.score};
  Candidates candidates;
  SetAside(candidates, first);
  Message("#----> find best move %s,    score %d, depth %d\n", MoveToStr(best.move), best.score,
          best.depth);
  if (IsMating(best.score)) return first;  // nothing can come close
  FindCandidates(best, candidates);
  if (candidates.count == 1) {
    Message("# find search. one move only \n");
    return first;
  }
  StartStage(allowance / 10);
  treeCnt[0] = 0;  // nothing is set aside any more: play-outs list their moves behind the root's
  return DecideAmong(candidates.All());
}

// The search proper, for a root with several moves. Returns the chosen move, or 0.
Move SearchStages(int allowance) {
  const AllowanceGuard guard;  // each stage has a share
  StartStage(allowance / 2);
  Message("#------> stage1 - search best move, time = %02f \n", Seconds(limit_time));
  const BestMove best = FindBestMove();
  Candidate chosen{0, 0};
  if (best.move != 0) {
    chosen = ChooseAmong(best, allowance);
    Message("# select move: %s, %d \n", MoveToStr(chosen.move), chosen.value);
    LearnResult(chosen.value, best.depth);  // the depth of the stage that all were compared at
  } else {
    Message("# move not fond ?!! \n");
  }
  EmptyRootList();
  return chosen.move;
}

}  // namespace

void AddPlayouts(std::span<Candidate> candidates) {
  while (StopSearch() == 0) {
    for (Candidate& one : candidates) {
      MakeMove(one.move);
      one.value -= RndSearch();  // the result of the opponent, who is to move
      UnMakeMove(one.move);
      if (one.value < kLeastValue || one.value > kGreatestValue) return;
    }
  }
}

bool Rnd_Root_Search(Move& move) {
  const std::uint32_t begin = TICK_COUNT();
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
  if (TakeBookMove(count, move)) {
    Message("# find move from open. book \n");
    return true;
  }
  // Chance decides in what order the first iteration takes them.
  for (int i = 0; i < count; ++i) sort_val[i] = std::rand() & 15;
  move = SearchStages(limit_time);
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
