#include "host/boundedsearch.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "host/engine.h"
#include "host/positiontext.h"
#include "search/clock.h"
#include "search/root.h"
#include "search/state.h"
#include "search/status.h"

namespace tarvyle {

namespace {

struct Leader {
  Move move = 0;
  int depth = 0;
  double seconds = 0;
};

std::chrono::steady_clock::time_point search_begin;
Leader leader;  // of the search that runs

double SecondsTaken() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - search_begin).count();
}

void NoteLeader(const SearchStatus& status) {
  if (status.line[0] != leader.move) leader = {status.line[0], status.depth, SecondsTaken()};
}

unsigned FixedSeed() { return 1; }

int Hundredths(const SearchBounds& bounds) {
  if (bounds.seconds <= 0) return kNoTimeLimit;
  return static_cast<int>(std::min(bounds.seconds * 100, static_cast<double>(kNoTimeLimit)));
}

BoundedResult SearchCurrent(const SearchBounds& bounds) {
  SearchSetting setting;
  setting.world = world;
  setting.world.seed = FixedSeed;
  if (bounds.seconds <= 0) setting.world.milliseconds = [] { return 0u; };
  setting.allowance = Hundredths(bounds);
  setting.hooks = {bounds.depth};
  setting.on_line = NoteLeader;
  leader = {};
  search_begin = std::chrono::steady_clock::now();
  BoundedResult result;
  if (!SearchWith(setting, result.move)) result.move = 0;
  result.seconds = SecondsTaken();
  result.score = search_score;
  result.depth = search_depth;
  result.nodes = cnt_nodes;
  result.settled_depth = leader.depth;
  result.settled_seconds = leader.seconds;
  return result;
}

}  // namespace

BoundedResult SearchPosition(const std::string& text, const SearchBounds& bounds) {
  FreshProcess();
  const std::string refusal = SetUpText(text);
  if (!refusal.empty()) throw std::runtime_error(refusal + ": " + text);
  return SearchCurrent(bounds);
}

}  // namespace tarvyle
