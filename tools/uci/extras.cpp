#include "tools/uci/extras.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "base/token.h"
#include "book/epd.h"
#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "frontend/display.h"
#include "position/attack.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/text.h"
#include "search/clock.h"
#include "search/root.h"
#include "search/state.h"
#include "search/style.h"
#include "tools/bench.h"
#include "tools/uci/input.h"
#include "tools/uci/knowledge.h"
#include "tools/uci/numbers.h"
#include "tools/uci/output.h"
#include "tools/uci/place.h"

namespace tarvyle::tools {

namespace {

constexpr int kDeepestPerft = 90;
constexpr std::uint64_t kListsPerLook = 1024;  // move lists between two looks at the input

// A number from `least` on, or `usual` when there is none. False, with a report, for all else.
bool ReadDepth(std::string_view words, int least, int usual, int& depth) {
  const std::string_view word = NextToken(words, " \t\r");
  depth = usual;
  if (word.empty() || (ReadInteger(word, depth) && depth >= least && depth <= kDeepestPerft)) {
    return true;
  }
  SayInfo("a depth from " + std::to_string(least) + " to " + std::to_string(kDeepestPerft) +
          " was expected");
  return false;
}

std::uint64_t lists = 0;

// Leaf nodes below the position, or fewer once it has been stopped.
std::uint64_t CountLeaves(int depth) {
  if (depth == 0) return 1;
  if (++lists % kListsPerLook == 0) HearWhileThinking();
  LegalMoveList();
  if (depth == 1) return static_cast<std::uint64_t>(ListLength());
  std::uint64_t leaves = 0;
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1] && !interruption.stop; ++i) {
    const Move move = tree[i];
    MakeMove(move);
    leaves += CountLeaves(depth - 1);
    UnMakeMove(move);
  }
  return leaves;
}

bool StopBench() {
  HearWhileThinking();
  return interruption.stop;
}

}  // namespace

void ObeyPerft(std::string_view words) {
  int depth = 0;
  if (!ReadDepth(words, 0, 1, depth)) return;
  interruption = {};
  LegalMoveList();
  const std::vector<Move> moves(tree, tree + treeCnt[1]);
  std::uint64_t sum = depth == 0 ? 1 : 0;
  for (std::size_t i = 0; depth > 0 && i < moves.size() && !interruption.stop; ++i) {
    MakeMove(moves[i]);
    const std::uint64_t leaves = CountLeaves(depth - 1);
    UnMakeMove(moves[i]);
    if (interruption.stop) break;
    sum += leaves;
    Say(MoveToStr(moves[i]) + (": " + std::to_string(leaves)));
  }
  Say(interruption.stop ? "info string perft was stopped" : "nodes " + std::to_string(sum));
}

void ObeyEval(std::string_view /*words*/) {
  InitEvaluate();
  set_dir(g.side);
  const int score = Evaluate(-kInfinity, kInfinity);
  char text[40];
  std::snprintf(text, sizeof text, "evaluation %+.3f (White's side)",
                (g.side == White ? score : -score) / 1000.0);
  Say(text);
}

void ObeyShow(std::string_view /*words*/) {
  show_board();
  PassOnWords(Say);
  char text[kEpdSize];
  MakeEpd(text);
  Say(std::string("text:  ") + text);
}

void ObeyBench(std::string_view words) {
  BenchOptions options;
  if (!ReadDepth(words, 2, options.depth, options.depth)) return;
  options.style = print_play_str();
  interruption = {};
  const World outside = world;
  world.should_stop = StopBench;
  RunBench(options);
  world = outside;
  if (interruption.stop) {
    DropWords();
    SayInfo("the bench was stopped");
  } else {
    PassOnWords(Say);
  }
  KnowledgeIsStale();
  PlaceAgain();
}

}  // namespace tarvyle::tools
