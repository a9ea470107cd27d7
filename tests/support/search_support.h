#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "base/property.h"
#include "book/book.h"
#include "book/learn.h"
#include "eval/scoretable.h"
#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/node.h"
#include "search/root.h"
#include "search/state.h"
#include "search/status.h"
#include "search/style.h"

// What the tests of the search share: an engine in the state of a fresh process, a clock and a seed
// of their own, positions by text, and what was printed.

namespace tarvyle::tests {

inline constexpr std::string_view kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";

// Instrumented builds run a part of the long tests.
#if defined(__SANITIZE_ADDRESS__) || defined(TARVYLE_CHECK_RECORD)
inline constexpr bool kSlowBuild = true;
#else
inline constexpr bool kSlowBuild = false;
#endif
#if defined(__SANITIZE_ADDRESS__)
inline constexpr bool kAddressSanitizer = true;
#else
inline constexpr bool kAddressSanitizer = false;
#endif

inline constexpr int kReferenceEntries = 0x80000;  // "hash size" 38
inline constexpr int kNoTimeLimit = 20000000;      // 1/100 s; 95 % of it can be formed in an int
inline constexpr int kTypedMove = 1000001;

// A clock that stands still, or moves on by `step` at each reading.
struct TestClock {
  std::uint32_t milliseconds = 0;
  std::uint32_t step = 0;
  int readings = 0;
  unsigned seed = 1;
};
inline TestClock test_clock;

inline std::uint32_t ReadTestClock() {
  ++test_clock.readings;
  return test_clock.milliseconds += test_clock.step;
}
inline unsigned ReadTestSeed() { return test_clock.seed; }

// The move of the current position with that text, or 0. Rebuilds the list of this ply.
inline Move Find(std::string_view text) {
  if (!LegalMoveList()) return 0;
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
    if (MoveToStr(tree[i]) == text) return tree[i];
  }
  return 0;
}

inline std::vector<std::string> Words(std::string_view text) {
  std::istringstream in{std::string(text)};
  std::vector<std::string> words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

// Sets up "FEN" or "FEN moves m1 m2 ..."; the moves are played into the game.
inline bool SetUpRoot(std::string_view root) {
  constexpr std::string_view kMoves = " moves ";
  const std::size_t at = root.find(kMoves);
  if (!InitGame(std::string(root.substr(0, at)).c_str())) return false;
  if (at == std::string_view::npos) return true;
  for (const std::string& text : Words(root.substr(at + kMoves.size()))) {
    Move move = 0;
    if (!StrToMove(text, move) || !InsertMoveInGame(move, kTypedMove)) return false;
  }
  return true;
}

// Makes moves above the root, as a search does ("0" is a null move). False at the first that is
// none.
inline bool Descend(std::string_view moves) {
  for (const std::string& text : Words(moves)) {
    const Move move = text == "0" ? 0 : Find(text);
    if (move == 0 && text != "0") return false;
    treeCnt[ply + 1] = treeCnt[ply];
    MakeMove(move);
  }
  return true;
}

// Root, then moves above it.
inline void GoTo(std::string_view root, std::string_view moves = "") {
  ASSERT_TRUE(SetUpRoot(root)) << root;
  root_side = g.side;
  InitEvaluate();
  ASSERT_TRUE(Descend(moves)) << moves;
}

// Back to the root, taking every move back.
inline void Ascend() {
  while (ply > 0) UnMakeMove(g.game_moves[g.game_len + ply - 1]);
}

// What `action` writes on standard output.
template <typename Action>
std::string Printed(Action action) {
  ::testing::internal::CaptureStdout();
  action();
  return ::testing::internal::GetCapturedStdout();
}

inline std::string DataFile(std::string_view name) {
  return std::string(TESTS_DATA_DIR) + "/" + std::string(name);
}

inline std::vector<std::string> Lines(std::string_view data_file) {
  std::ifstream in(DataFile(data_file));
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

inline std::vector<std::string> Fields(const std::string& line) {
  std::istringstream in(line);
  std::vector<std::string> fields;
  for (std::string field; std::getline(in, field, '\t');) fields.push_back(field);
  return fields;
}

// What a process has right after its start with this book ("": an empty learn table and no book).
inline bool FreshProcess(const std::string& book = "") {
  LearnReset();
  ResetSearchState();
  ClearRepetitions();
  set_dir(White);
  ply = 0;
  treeCnt[0] = 0;
  return InitNewGame() && (book.empty() || ReadLibFile(book.c_str()));
}

// Score and node count after one iteration.
struct Iteration {
  int depth;
  int score;
  std::uint64_t nodes;
};

// What a search left behind and told.
struct Report {
  bool found = false;
  std::string move;
  std::vector<Iteration> iterations;
  std::vector<std::string> lines;  // thinking lines without their time
};
inline Report* running_report = nullptr;

inline void NoteIteration(int depth, int score) {
  running_report->iterations.push_back({depth, score, cnt_nodes});
}

inline void NoteLine(const SearchStatus& status) {
  std::string line = StatusLine(status.line);
  if (!line.empty()) line.pop_back();
  running_report->lines.push_back(std::to_string(status.depth) + " " +
                                  std::to_string(ShownScore(status.score)) + " " +
                                  std::to_string(status.nodes) + " " + line);
}

// Searches the current position, iterations up to `depth`, and tells what happened.
inline Report SearchToDepth(int depth) {
  Report report;
  running_report = &report;
  root_hooks = {depth, NoteIteration};
  status_sink = NoteLine;
  Move move = 0;
  report.found = SearchMove(move);
  if (report.found) report.move = MoveToStr(move);
  root_hooks = {};
  status_sink = nullptr;
  return report;
}

// Arguments of the two node searches, by name. Both write their line to `node_line`.
struct NodeArguments {
  int alpha = -kInfinity;
  int beta = kInfinity;
  int depth = 2;
  int is_probe_child = 0;
  int on_pv = 0;
  int null_allowed = 0;
  Move first_move = 0;
  Move excluded_move = 0;
};
inline Move node_line[kLineSize];

inline int SearchOffPv(const NodeArguments& a) {
  return Search(a.alpha, a.beta, a.depth, Check() ? 1 : 0, node_line, a.is_probe_child, a.on_pv,
                a.null_allowed, a.first_move, a.excluded_move);
}

inline int SearchOnPv(const NodeArguments& a) {
  return main_search(a.alpha, a.beta, a.depth, Check() ? 1 : 0, node_line, a.is_probe_child,
                     a.on_pv, a.null_allowed, a.first_move);
}

// The table's entry of the current position, or null.
inline const HashEntry* StoredEntry() {
  const HashEntry& entry = HashSlot(g.side, g.key.low);
  return entry.generation == hash_generation && entry.key == g.key ? &entry : nullptr;
}

// The depth stored for the position after a move, or -1 when nothing is.
inline int StoredDepthAfter(Move move) {
  MakeMove(move);
  const HashEntry* entry = StoredEntry();
  const int depth = entry != nullptr ? static_cast<int>(entry->depth) : -1;
  UnMakeMove(move);
  return depth;
}

// Kings behind walls that nothing moves: tiny trees of any depth.
inline constexpr std::string_view kFortress =
    "4k3/1p1p1p1p/1P1P1P1P/8/8/1p1p1p1p/1P1P1P1P/4K3 w - -";

// Reversible, repeating moves by which a game grows: knights go out and back.
inline bool PlayKnightMoves(int count) {
  const char* const cycle[4] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  for (int i = 0; i < count; ++i) {
    Move move = 0;
    if (!StrToMove(cycle[i % 4], move) || !InsertMoveInGame(move, kTypedMove)) return false;
  }
  return true;
}

// An engine as a fresh process has it, at the start position, with empty tables, style
// "knowledge3", seed 1 and a clock that stands still. All of it is back for the next test.
class SearchTest : public ::testing::Test {
 protected:
  SearchTest() {
    static const bool started = (InitAtk(), true);
    static_cast<void>(started);
    if (Hash_Size != kReferenceEntries || hash[White] == nullptr) HashAllocate(kReferenceEntries);
    FreshProcess();
    InitEvaluate();
    HashClear();
    property_clear();
    test_clock = {};
    world = {ReadTestClock, ReadTestSeed};
    limit_time = kNoTimeLimit;
    PLAY_STYLE = 2;
    s_depth = 50;  // horizon far away for tests that search single nodes
    TimeReset();
    test_clock.readings = 0;
  }

  ~SearchTest() override {
    world = {RealMilliseconds, RealSeed};
    root_hooks = {};
    status_sink = nullptr;
    is_rnd_search = 0;
    property_clear();
    FreshProcess();
  }
};

}  // namespace tarvyle::tests
