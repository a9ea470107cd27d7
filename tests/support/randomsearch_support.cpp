#include "tests/support/randomsearch_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace tarvyle::support {

namespace {

std::uint32_t ReadStageClock() {
  const int stage = StageOf(limit_time);
  if (stage >= 0) stage_clock.now += stage_clock.steps[stage];
  if (stage == 0 && stage_clock.values_before_stage1.empty()) {
    stage_clock.values_before_stage1.assign(sort_val, sort_val + treeCnt[1]);
  }
  if (stage == 1) stage_clock.set_aside_at_stop = treeCnt[0];
  stage_clock.readings.push_back({limit_time, static_cast<int>(stage_clock.now / 10)});
  return stage_clock.now;
}

std::vector<std::string> SplitLines(const std::string& text) {
  std::istringstream in(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::vector<Told> TellingLines(const Outcome& run, const char* format, int fields) {
  std::vector<Told> told;
  for (const std::string& line : run.lines) {
    char move[16];
    Told one;
    if (std::sscanf(line.c_str(), format, move, &one.score, &one.depth) != fields) continue;
    one.move = move;
    told.push_back(one);
  }
  return told;
}

std::string Seconds(int hundredths) {
  char text[32];
  std::snprintf(text, sizeof text, "%02f", hundredths / 100.0);
  return text;
}

}  // namespace

int StageOf(int limit) {
  if (limit == stage_clock.allowance / 2) return 0;
  if (limit == stage_clock.allowance * 90 / 100) return 1;
  return limit == stage_clock.allowance / 10 ? 2 : -1;
}

Outcome RunSearch(int allowance) {
  Outcome run;
  stage_clock.allowance = allowance;
  stage_clock.readings.clear();
  stage_clock.values_before_stage1.clear();
  world = {ReadStageClock, ReadTestSeed, nullptr,
           [] { return kNodesPerPoll - static_cast<std::uint64_t>(stage_clock.first_poll); }};
  is_rnd_search = 1;
  limit_time = allowance;
  const GameRecord before = g;
  Move move = 0;
  const std::string text = Printed([&] { run.found = SearchMove(move); });
  EXPECT_EQ(text.empty() ? '\n' : text.back(), '\n') << "whole lines";
  EXPECT_EQ(limit_time, allowance) << "the allowance is as before";
  EXPECT_EQ(ply, 0);
  EXPECT_TRUE(IsSameGame(before));
  run.lines = SplitLines(text);
  if (run.found) run.move = MoveToStr(move);
  return run;
}

bool Contains(const Outcome& run, const std::string& line) {
  return std::find(run.lines.begin(), run.lines.end(), line) != run.lines.end();
}

std::vector<Told> BestMoveOf(const Outcome& run) {
  return TellingLines(run, "#----> find best move %5[^,],    score %d, depth %d", 3);
}
std::vector<Told> CandidatesOf(const Outcome& run) {
  return TellingLines(run, "#----> find kandidat move %5[^,], score %d, depth %d", 3);
}
std::vector<Told> ResultsOf(const Outcome& run) {
  return TellingLines(run, "#move %5[^,], score %d", 2);
}
std::vector<Told> SelectedOf(const Outcome& run) {
  return TellingLines(run, "# select move: %5[^,], %d ", 2);
}

std::string SearchTimeLine() {
  const int spent =
      stage_clock.readings.back().hundredths - stage_clock.readings.front().hundredths;
  return "#search time " + Seconds(spent) + " ";
}

}  // namespace tarvyle::support
