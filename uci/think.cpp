#include "uci/think.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "book/book.h"
#include "book/learn.h"
#include "host/engine.h"
#include "position/attack.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"
#include "position/text.h"
#include "position/types.h"
#include "pv/line.h"
#include "search/clock.h"
#include "search/root.h"
#include "search/state.h"
#include "search/status.h"
#include "uci/firstguess.h"
#include "uci/infolines.h"
#include "uci/input.h"
#include "uci/knowledge.h"
#include "uci/optionvalues.h"
#include "uci/output.h"
#include "uci/polyglotbook.h"
#include "uci/scorewords.h"
#include "uci/timerule.h"

namespace tarvyle::uci {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::int64_t kSignOfLife = 1000;  // milliseconds between two
constexpr double kRandomSearchTakes = 1.5;  // of the time that it is given

// The stages of a search by their clocks: an ordinary one has the first alone. The randomised one
// goes on with three more, whose shares of the nodes are as those of the time.
enum Stage : int { kWholeSearch, kBestMove, kCandidates, kPlayouts };

// The search that runs.
struct Thinking {
  Limits limits;
  Allowance allowance;
  Clock::time_point begin;
  int stage = kWholeSearch - 1;
  std::uint64_t before = 0;                          // nodes of the stages before
  std::uint64_t first_count = 0;                     // where the counter of this stage began
  std::uint64_t (*first_count_outside)() = nullptr;  // what the world had in its place
  std::int64_t last_sign = 0;  // milliseconds: when the GUI was told last how far the search is
  bool result_was_told = false;
  bool one_reply = false;
  bool enough = false;  // some limit has been reached
};
Thinking thinking;

std::int64_t Milliseconds(Clock::duration time) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
}

std::int64_t Elapsed() { return Milliseconds(Clock::now() - thinking.begin); }

std::uint64_t Nodes() {
  const std::uint64_t counted = thinking.before + cnt_nodes - thinking.first_count;
  // Unwinding counts on.
  return thinking.limits.nodes > 0 ? std::min(counted, thinking.limits.nodes) : counted;
}

Effort EffortSoFar() { return {Nodes(), Elapsed()}; }

bool ReachedLimit() {
  const Limits& limits = thinking.limits;
  return Elapsed() >= thinking.allowance.most || (limits.nodes > 0 && Nodes() >= limits.nodes);
}

// How many nodes the stages up to this one may have.
std::uint64_t NodesOfStages() {
  const std::uint64_t nodes = thinking.limits.nodes;
  switch (thinking.stage) {
    case kBestMove: return nodes / 3;
    case kCandidates: return nodes - nodes / 15;
    default: return nodes;
  }
}

// Play-outs know no end but a clock's: where there is none, they end at the first look.
bool StageIsOver() {
  if (thinking.limits.nodes > 0) return Nodes() >= NodesOfStages();
  return thinking.stage == kPlayouts && thinking.allowance.most == kNoLimit;
}

// The move that stands made at the root, and which one of the list it is: those that are searched
// are brought to its front one by one.
void TellProgress() {
  thinking.last_sign = Elapsed();
  const Move move = ply > 0 ? g.game_moves[g.game_len] : 0;
  const Move* const first = tree + treeCnt[0];
  const auto number = std::find(first, static_cast<const Move*>(tree + treeCnt[1]), move) - first;
  SayProgress(s_depth, move, static_cast<int>(number) + 1, EffortSoFar());
}

bool ShouldStop() {
  HearWhileThinking();
  if (Elapsed() - thinking.last_sign >= kSignOfLife) TellProgress();
  thinking.enough = thinking.enough || interruption.stop || ReachedLimit();
  return thinking.enough || StageIsOver();
}

// The clock is read every so many nodes: lets it be read at the last node that is allowed, and at
// once when the search has had enough.
std::uint64_t FirstCount() {
  if (thinking.enough) return kNodesPerPoll - 1;
  if (thinking.limits.nodes == 0) {
    return thinking.first_count_outside != nullptr ? thinking.first_count_outside() : 0;
  }
  const std::uint64_t allowed = NodesOfStages();
  if (allowed <= thinking.before) return kNodesPerPoll - 1;
  return (kNodesPerPoll - (allowed - thinking.before) % kNodesPerPoll) % kNodesPerPoll;
}

// Each stage counts its nodes anew.
std::uint64_t BeginStage() {
  if (thinking.stage >= kWholeSearch) thinking.before = Nodes();
  ++thinking.stage;
  thinking.first_count = FirstCount();
  return thinking.first_count;
}

void Enough() {
  thinking.enough = true;
  StopNow();
}

// A mate at the window's end has no length yet: the next search of the root finds it.
void NoteLine(const SearchStatus& status) {
  thinking.result_was_told = status.score != kMateWindow;
  if (!thinking.result_was_told) return;
  SayLine(status, EffortSoFar());
  const int mates_in = MatesIn(status.score, LineLen(status.line));
  if (mates_in > 0 && mates_in <= thinking.limits.mate) Enough();
}

void NoteIteration(int /*depth*/, int /*score*/) {
  if (is_stop_search != 0) return;
  const bool by_clock = thinking.limits.time[g.side] >= 0;
  if (Elapsed() >= thinking.allowance.last_start || (by_clock && thinking.one_reply)) Enough();
}

std::uint32_t SteadyMilliseconds() { return static_cast<std::uint32_t>(Elapsed()); }

unsigned SearchSeed() { return settings.seed != 0 ? settings.seed : RealSeed(); }

// The engine's own clock stands still: all limits are kept by ShouldStop. Only the randomised
// search divides its time by that clock.
SearchSetting SettingOf(const std::vector<Move>& only) {
  const int depth = thinking.limits.depth > 0 ? thinking.limits.depth : kMaxIteration;
  SearchSetting setting;
  setting.world = {[] { return 0u; }, SearchSeed, ShouldStop, BeginStage};
  setting.hooks = {.max_depth = std::min(depth, kMaxIteration),
                   .after_iteration = NoteIteration,
                   .only = only.size() > 1 ? only.data() : nullptr,
                   .first_depth = std::min(depth, kFirstIteration)};
  setting.on_line = NoteLine;
  if (is_rnd_search == 0) return setting;
  const double planned = static_cast<double>(thinking.allowance.last_start) / kRandomSearchTakes;
  setting.world.milliseconds = SteadyMilliseconds;
  setting.allowance = static_cast<int>(std::min(planned / 10, static_cast<double>(kNoTimeLimit)));
  return setting;
}

// Runs the search within the limits. False when it found no move.
bool RunSearch(Move& move) {
  std::vector<Move> only = thinking.limits.only;
  only.push_back(0);
  return SearchWith(SettingOf(only), move);
}

// A single reply leaves no depth in the randomised search.
bool WasSearched() { return search_depth > 0; }

// The result, unless its line has been told, and all the effort that was made. The randomised
// search has not shown its lines.
void SayResult(Move move) {
  if (thinking.result_was_told) return SayEffort(EffortSoFar());
  const LearnNode* node = is_rnd_search != 0 ? FindCurrentNode() : nullptr;
  const Move random_line[] = {move, 0};
  const SearchStatus result = node != nullptr
                                  ? SearchStatus{node->depth, node->score, 0, 0, random_line}
                                  : SearchStatus{search_depth, search_score, 0, 0, pv_line};
  SayLine(result, EffortSoFar());
  SayEffort(EffortSoFar());
}

void SayBestMove(Move move) { Say(std::string("bestmove ") + MoveToStr(move)); }

void TellFound(Move move) {
  if (!WasSearched()) {
    SayInfo("not searched: the only move");
    return;
  }
  SayResult(move);
  if (thinking.limits.only.empty()) PutDownResult();
}

void FindBestMove(const std::vector<Move>& moves) {
  Move move = 0;
  if (RunSearch(move)) {
    TellFound(move);
  } else {
    move = FirstGuess(moves);
    SayInfo("no move was searched in time: the best at first sight");
  }
  if (thinking.limits.infinite) WaitForStop();
  SayBestMove(move);
}

// Whoever analyses wants to know what the engine thinks.
bool BookMayAnswer(const Limits& limits) {
  return settings.own_book && !limits.infinite && limits.mate == 0 && limits.only.empty();
}

// Draws one of the book's moves by their weights; 0 when it has none. The moves are listed. The
// engine's own question for the book, which comes after a draw of its own, is never asked: no
// configuration says so.
Move BookMove() {
  std::srand(SearchSeed());
  if (HoldsPolyglotBook()) return PolyglotMove(static_cast<unsigned>(std::rand()));
  return MoveFromLib(0, ListLength() - 1);
}

bool AnswerFromBook(const Limits& limits) {
  const Move move = BookMayAnswer(limits) ? BookMove() : 0;
  if (move == 0) return false;
  SayInfo("the book's move");
  SayBestMove(move);
  return true;
}

void SayGameIsOver() {
  Say(Check() ? "info depth 0 score mate 0" : "info depth 0 score cp 0");
  if (thinking.limits.infinite) WaitForStop();
  Say("bestmove 0000");
}

}  // namespace

void Think(const Limits& limits) {
  thinking = {};
  thinking.limits = limits;
  thinking.allowance = AllowanceFor(limits, g.side, settings.move_overhead);
  thinking.begin = Clock::now();
  thinking.first_count_outside = world.first_count;
  interruption = {};
  LegalMoveList();
  if (ListLength() == 0) {
    SayGameIsOver();
    return;
  }
  if (AnswerFromBook(limits)) return;
  thinking.one_reply = ListLength() == 1;
  FindBestMove(limits.only.empty() ? std::vector<Move>(tree, tree + ListLength()) : limits.only);
}

}  // namespace tarvyle::uci
