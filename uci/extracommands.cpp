#include "uci/extracommands.h"

#include <cstdint>
#include <cstdio>
#include <string>

#include "base/number.h"
#include "book/epd.h"
#include "frontend/display.h"
#include "host/bench.h"
#include "host/engine.h"
#include "host/scoretext.h"
#include "position/perft.h"
#include "position/record.h"
#include "position/text.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/root.h"
#include "search/style.h"
#include "uci/input.h"
#include "uci/knowledge.h"
#include "uci/output.h"
#include "uci/place.h"
#include "uci/words.h"

namespace tarvyle::uci {

namespace {

// Reads a number from `least` to `most`; `depth` stays as it is when there is none. False, with a
// report, for all else.
bool ReadDepth(std::string_view words, int least, int most, int& depth) {
  const std::string_view word = NextWord(words);
  if (word.empty() || (ReadInteger(word, depth) && depth >= least && depth <= most)) return true;
  SayInfo("a depth from " + std::to_string(least) + " to " + std::to_string(most) +
          " was expected");
  return false;
}

bool StopWasSaid() {
  HearWhileThinking();
  return interruption.stop;
}

void CountLeaves(std::string_view words, const std::string& before_sum) {
  int depth = 1;
  if (!ReadDepth(words, 0, kDeepestPerft, depth)) return;
  interruption = {};
  const auto tell = [](Move move, std::uint64_t leaves) {
    Say(MoveToStr(move) + (": " + std::to_string(leaves)));
  };
  const std::uint64_t sum = depth > 0 ? DividedPerft(depth, tell, StopWasSaid) : Perft(depth);
  Say(interruption.stop ? "info string perft was stopped" : before_sum + std::to_string(sum));
}

}  // namespace

void ObeyPerft(std::string_view words) { CountLeaves(words, "nodes "); }

void ObeyGoPerft(std::string_view words) { CountLeaves(words, "Nodes searched: "); }

void ObeyEval(std::string_view /*words*/) {
  const int score = StaticScore();
  char text[40];
  std::snprintf(text, sizeof text, "evaluation %+.3f (White's side)",
                (g.side == White ? score : -score) / kPawn);
  Say(text);
}

void ObeyShow(std::string_view /*words*/) {
  std::string board = BoardDiagram();
  board.pop_back();  // the last line's end
  Say(board);
  char text[kEpdSize];
  MakeEpd(text);
  Say(std::string("text:  ") + text);
}

void ObeyBench(std::string_view words) {
  BenchOptions options;
  if (!ReadDepth(words, 2, kMaxIteration, options.depth)) return;
  options.style = print_play_str();
  interruption = {};
  const World outside = world;
  world.should_stop = StopWasSaid;
  std::string told;
  RunBench(options, [&told](std::string_view text) { told += text; });
  world = outside;
  if (interruption.stop) {
    SayInfo("the bench was stopped");
  } else {
    told.pop_back();  // the last line's end
    Say(told);
  }
  KnowledgeIsStale();
  PlaceAgain();
}

}  // namespace tarvyle::uci
