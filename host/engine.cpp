#include "host/engine.h"

#include <cstddef>

#include "base/token.h"
#include "book/bookfile.h"
#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "position/attack.h"
#include "position/directions.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/score.h"
#include "position/setup.h"
#include "position/text.h"
#include "search/hashmemory.h"
#include "search/lifetimes.h"
#include "search/root.h"
#include "search/state.h"

namespace tarvyle {

namespace {

unsigned fixed_seed = 1;

// Of the search that runs: where it is written down, and who is told besides.
SearchReport* running_report = nullptr;
SearchSetting asked;

void RecordIteration(int depth, int score) {
  running_report->iterations.push_back({depth, score, cnt_nodes});
  if (asked.hooks.after_iteration != nullptr) asked.hooks.after_iteration(depth, score);
}

void RecordLine(const SearchStatus& status) {
  std::string line = StatusLine(status.line);
  if (!line.empty()) line.pop_back();
  running_report->lines.push_back(std::to_string(status.depth) + " " +
                                  std::to_string(ShownScore(status.score)) + " " +
                                  std::to_string(status.nodes) + " " + line);
  if (asked.on_line != nullptr) asked.on_line(status);
}

bool PlayMoves(std::string_view moves) {
  for (std::string_view text = NextToken(moves, " "); !text.empty(); text = NextToken(moves, " ")) {
    Move move = 0;
    if (!StrToMove(text, move) || !InsertMoveInGame(move, kTypedMove)) return false;
  }
  return true;
}

}  // namespace

bool StartEngine(int entries) {
  static bool attacks_are_known = false;
  if (!attacks_are_known) InitAtk();
  attacks_are_known = true;
  const bool fits = hash[White] != nullptr && Hash_Size == entries;
  if (!fits && !HashAllocate(entries)) return false;
  ForgetAll();
  InitEvaluate();
  return true;
}

bool FreshProcess(const std::string& book_file) {
  ForgetAll();
  return book_file.empty() || ReadLibFile(book_file.c_str());
}

bool SetUpRoot(std::string_view root) {
  constexpr std::string_view kMoves = " moves ";
  const std::size_t at = root.find(kMoves);
  const std::string fen(root.substr(0, at));
  if (!InitGame(fen.c_str())) return false;
  return at == std::string_view::npos || PlayMoves(root.substr(at + kMoves.size()));
}

int StaticScore() {
  InitEvaluate();
  set_dir(g.side);
  return Evaluate(-kInfinity, kInfinity);
}

bool SearchWith(const SearchSetting& setting, Move& move) {
  const World outside = world;
  const AllowanceGuard guard;
  const RootHooks hooks = root_hooks;
  const auto sink = status_sink;
  world = setting.world;
  SetAllowance(setting.allowance);
  root_hooks = setting.hooks;
  status_sink = setting.on_line;
  const bool found = SearchMove(move);
  status_sink = sink;
  root_hooks = hooks;
  world = outside;
  return found;
}

SearchReport SearchAndReport(SearchSetting setting) {
  SearchReport result;
  running_report = &result;
  asked = setting;
  setting.hooks.after_iteration = RecordIteration;
  setting.on_line = RecordLine;
  Move move = 0;
  if (SearchWith(setting, move)) result.best_move = MoveToStr(move);
  running_report = nullptr;
  result.score = search_score;
  result.depth = search_depth;
  result.nodes = cnt_nodes;
  return result;
}

SearchReport SearchToDepth(int depth, unsigned seed) {
  fixed_seed = seed;
  SearchSetting setting;
  setting.world = {[] { return 0u; }, [] { return fixed_seed; }, world.should_stop};
  setting.hooks = {depth};
  return SearchAndReport(setting);
}

}  // namespace tarvyle
