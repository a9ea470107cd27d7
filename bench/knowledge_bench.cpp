// Times the learn table and the book at the size that years of play would give them, and the search
// beside such a table.

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>

#include "bench/started.h"
#include "book/bookfile.h"
#include "book/learn.h"
#include "book/learnfile.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/lifetimes.h"
#include "search/root.h"
#include "search/status.h"

namespace tarvyle {

namespace {

// A size for trying that a benchmark works, and the size that counts.
constexpr int kFew = 1000;
constexpr int kMillion = 1000000;
constexpr int kGameLength = 60;  // half-moves of a random game
constexpr int kLineLength = 20;  // of a book line

constexpr const char* kMiddleGame = "r2q1rk1/4bppp/p2p4/2pP4/3pP3/3Q4/PP1B1PPP/R3R1K1 w - -";

// Plays a random game of at most `length` half-moves from the start position and calls `after` with
// each move made. The start position is on the board afterwards.
template <typename After>
void PlayRandomGame(std::mt19937& random, int length, After after) {
  ply = 0;
  InitNewGame();
  while (ply < length && LegalMoveList() && ListLength() > 0) {
    const Move move =
        tree[treeCnt[ply] + static_cast<int>(random() % static_cast<unsigned>(ListLength()))];
    MakeMove(move);
    after(move);
  }
  while (ply > 0) UnMakeMove(LastMove());
}

// Fills the learn table with that many positions.
void Learn(int records) {
  LearnReset();
  std::mt19937 random(1);
  int learned = 0;
  while (learned < records) {
    PlayRandomGame(random, kGameLength, [&](Move) {
      if (learned == records || FindCurrentNode() != nullptr) return;
      SaveSearchResult(0, 1);
      ++learned;
    });
  }
}

std::string TemporaryFile(const char* name) {
  return (std::filesystem::temp_directory_path() / name).string();
}

// A learn file of that many records.
std::string LearnFile(int records) {
  std::string path = TemporaryFile("bench.lrn");
  Learn(records);
  if (!SaveLearnTable(path.c_str())) std::abort();
  return path;
}

std::string BookFile(int half_moves) {
  std::string path = TemporaryFile("bench.bk");
  std::ofstream file(path);
  std::mt19937 random(2);
  for (int written = 0; written < half_moves; file << '\n') {
    PlayRandomGame(random, kLineLength, [&](Move move) {
      file << MoveToStr(move) << ' ';
      ++written;
    });
  }
  return path;
}

void LoadLearnFile(benchmark::State& state) {
  StartOnce();
  const std::string path = LearnFile(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    LearnReset();
    if (!LoadLearnTable(path.c_str())) state.SkipWithError("learn file refused");
  }
  std::remove(path.c_str());
}

void WriteLearnFile(benchmark::State& state) {
  StartOnce();
  Learn(static_cast<int>(state.range(0)));
  const std::string path = TemporaryFile("bench-written.lrn");
  for (auto _ : state) {
    if (!SaveLearnTable(path.c_str())) state.SkipWithError("learn file not written");
  }
  std::remove(path.c_str());
}

void ReadBook(benchmark::State& state) {
  StartOnce();
  const std::string path = BookFile(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    LearnReset();
    if (!ReadLibFile(path.c_str())) state.SkipWithError("book refused");
  }
  std::remove(path.c_str());
}

// Searches at fixed depth beside a learn table of as many records as the argument says.
void SearchBesideLearnTable(benchmark::State& state) {
  StartOnce();
  Learn(static_cast<int>(state.range(0)));
  const World outside = world;
  world = {[] { return 0u; }, [] { return 1u; }};
  root_hooks.max_depth = 7;
  status_sink = [](const SearchStatus&) {};
  std::uint64_t nodes = 0;
  for (auto _ : state) {
    ply = 0;
    InitGame(kMiddleGame);
    ForgetSearches();
    Move move = 0;
    if (!SearchMove(move)) state.SkipWithError("no move");
    nodes += cnt_nodes;
  }
  root_hooks = {};
  status_sink = nullptr;
  world = outside;
  state.counters["nodes/s"] =
      benchmark::Counter(static_cast<double>(nodes), benchmark::Counter::kIsRate);
}

BENCHMARK(LoadLearnFile)->Arg(kFew)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(WriteLearnFile)->Arg(kFew)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadBook)->Arg(kFew)->Arg(kMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(SearchBesideLearnTable)->Arg(0)->Arg(kMillion)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tarvyle
