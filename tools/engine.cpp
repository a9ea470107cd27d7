#include "tools/engine.h"

#include "base/token.h"
#include "book/book.h"
#include "eval/scoretable.h"
#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/reset.h"
#include "search/root.h"
#include "search/state.h"
#include "search/status.h"

namespace tarvyle::tools {

namespace {

constexpr int kEntries = 0x80000;
constexpr int kNoTimeLimit = 20000000;  // 1/100 s; 95 % of it can be formed in an int
constexpr int kTypedMove = 1000001;

unsigned fixed_seed = 1;
SearchReport* report = nullptr;  // of the search that runs

void NoteIteration(int depth, int score) {
  report->iterations.push_back({depth, score, cnt_nodes});
}

void NoteLine(const SearchStatus& status) {
  std::string line = StatusLine(status.line);
  if (!line.empty()) line.pop_back();
  report->lines.push_back(std::to_string(status.depth) + " " +
                          std::to_string(ShownScore(status.score)) + " " +
                          std::to_string(status.nodes) + " " + line);
}

bool PlayMoves(std::string_view moves) {
  for (std::string_view text = NextToken(moves, " "); !text.empty(); text = NextToken(moves, " ")) {
    Move move = 0;
    if (!StrToMove(text, move) || !InsertMoveInGame(move, kTypedMove)) return false;
  }
  return true;
}

}  // namespace

bool StartEngine() {
  InitAtk();
  if (!HashAllocate(kEntries)) return false;
  InitEvaluate();
  return FreshProcess();
}

bool FreshProcess(const std::string& book_file) {
  ResetEngine();
  return book_file.empty() || ReadLibFile(book_file.c_str());
}

bool SetUpRoot(std::string_view root) {
  constexpr std::string_view kMoves = " moves ";
  const std::size_t at = root.find(kMoves);
  const std::string fen(root.substr(0, at));
  if (!InitGame(fen.c_str())) return false;
  return at == std::string_view::npos || PlayMoves(root.substr(at + kMoves.size()));
}

SearchReport SearchToDepth(int depth, unsigned seed) {
  SearchReport result;
  report = &result;
  fixed_seed = seed;
  const World outside = world;
  world = {[] { return 0u; }, [] { return fixed_seed; }, outside.should_stop};
  limit_time = kNoTimeLimit;
  root_hooks = {depth, NoteIteration};
  status_sink = NoteLine;
  Move move = 0;
  if (SearchMove(move)) result.best_move = MoveToStr(move);
  root_hooks = {};
  status_sink = nullptr;
  report = nullptr;
  world = outside;
  result.score = search_score;
  result.depth = search_depth;
  result.nodes = cnt_nodes;
  return result;
}

}  // namespace tarvyle::tools
