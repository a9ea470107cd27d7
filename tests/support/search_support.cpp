#include "tests/support/search_support.h"

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <sstream>

#include "host/engine.h"
#include "host/nodelimit.h"

namespace tarvyle::support {

Move Find(std::string_view text) {
  if (!LegalMoveList()) return 0;
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
    if (MoveToStr(tree[i]) == text) return tree[i];
  }
  return 0;
}

std::vector<std::string> Words(std::string_view text) {
  std::istringstream in{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

bool SetUpGame(std::string_view root) { return tarvyle::SetUpRoot(root); }

bool Descend(std::string_view moves) {
  for (const std::string& text : Words(moves)) {
    const Move move = text == "0" ? 0 : Find(text);
    if (move == 0 && text != "0") return false;
    treeCnt[ply + 1] = treeCnt[ply];
    MakeMove(move);
  }
  return true;
}

std::string Nulls(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "0 ";
  return text;
}

void GoTo(std::string_view root, std::string_view moves) {
  ASSERT_TRUE(SetUpGame(root)) << root;
  root_side = g.side;
  InitEvaluate();
  ASSERT_TRUE(Descend(moves)) << moves;
}

void Ascend() {
  while (ply > 0) UnMakeMove(g.game_moves[g.game_len + ply - 1]);
}

bool IsSameGame(const GameRecord& before) {
  GameRecord after = g;
  for (int i = g.game_len; i < kRecordMoves; ++i) after.undo[i] = before.undo[i];
  return std::memcmp(&after, &before, sizeof before) == 0;
}

bool PlayKnightMoves(int count) {
  const char* const cycle[4] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  for (int i = 0; i < count; ++i) {
    Move move = 0;
    if (!StrToMove(cycle[i % 4], move) || !InsertMoveInGame(move, kTypedMove)) return false;
  }
  return true;
}

std::uint32_t ReadTestClock() {
  ++test_clock.readings;
  return test_clock.milliseconds += test_clock.step;
}
unsigned ReadTestSeed() { return test_clock.seed; }

void Start(int entries) { ASSERT_TRUE(StartEngine(entries)); }

bool FreshProcess(const std::string& book) { return tarvyle::FreshProcess(book); }

void EndSearchesAfter(int nodes) {
  static int bound = 0;
  bound = nodes;
  world = NodeBoundWorld([] { return bound; }, ReadTestSeed);
}

void SayAloud() {
  dup2(STDERR_FILENO, STDOUT_FILENO);
  std::setvbuf(stdout, nullptr, _IONBF, 0);
}

void Forget() {
  HashClear();
  ForgetSearches();
  s_depth = 50;
  root_side = ply % 2 == 0 ? g.side : g.xside;
  TimeReset();
}

Report SearchToDepth(int depth, void (*after_iteration)(int, int)) {
  const SearchReport told =
      SearchAndReport({world, limit_time, {depth, after_iteration}, status_sink});
  Report report;
  report.move = told.best_move;
  report.found = !told.best_move.empty();
  report.lines = told.lines;
  for (const tarvyle::Iteration& one : told.iterations) {
    report.iterations.push_back({one.depth, one.score, one.nodes});
  }
  return report;
}

NodeArguments Depth(int depth) {
  NodeArguments arguments;
  arguments.depth = depth;
  return arguments;
}

NodeArguments ZeroWindow(int beta, int depth) {
  NodeArguments arguments = Depth(depth);
  arguments.alpha = beta - 1;
  arguments.beta = beta;
  return arguments;
}

int SearchOffPv(const NodeArguments& a) {
  return Search(a.alpha, a.beta, a.depth, Check() ? 1 : 0, node_line, a.is_probe_child, a.on_pv,
                a.null_allowed, a.first_move, a.excluded_move);
}

int SearchOnPv(const NodeArguments& a) {
  return main_search(a.alpha, a.beta, a.depth, Check() ? 1 : 0, node_line, a.is_probe_child,
                     a.on_pv, a.null_allowed, a.first_move);
}

std::uint64_t NodesOf(const NodeArguments& arguments) {
  Forget();
  SearchOffPv(arguments);
  return cnt_nodes;
}

const HashEntry* StoredEntry() {
  const HashEntry& entry = HashSlot(g.side, g.key.low);
  return entry.generation == hash_generation && entry.key == g.key ? &entry : nullptr;
}

int StoredDepthAfter(Move move) {
  MakeMove(move);
  const HashEntry* entry = StoredEntry();
  const int depth = entry != nullptr ? static_cast<int>(entry->depth) : -1;
  UnMakeMove(move);
  return depth;
}

}  // namespace tarvyle::support
