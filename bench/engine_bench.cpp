// Times the engine's innermost procedures, each over the same set of positions.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <vector>

#include "bench/started.h"
#include "book/learn.h"
#include "eval/attackmap.h"
#include "eval/attacksets.h"
#include "eval/cache.h"
#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "host/engine.h"
#include "position/directions.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"
#include "position/setup.h"
#include "position/types.h"
#include "search/hash.h"
#include "search/root.h"

namespace tarvyle {

namespace {

constexpr const char* kPositions[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
    "r1b2rk1/2q1b1pp/p2ppn2/1p6/3QP3/1BN1B3/PPP3PP/R4RK1 w - -",
    "2q1rr1k/3bbnnp/p2p1pp1/2pPp3/PpP1P1P1/1P2BNNP/2BQ1PRK/7R b - -",
    "r3r1k1/ppqb1ppp/8/4p1NQ/8/2P5/PP3PPP/R3R1K1 b - -",
    "8/5p2/3k2p1/1pp4p/p3PP1P/P1KP2P1/1P6/8 w - -",
};

// Sets up the position that the benchmark's argument names.
void SetUp(const benchmark::State& state) {
  StartOnce();
  ply = 0;
  InitGame(kPositions[state.range(0)]);
  InitEvaluate();
  set_dir(g.side);
}

void EvaluateAfresh(benchmark::State& state) {
  SetUp(state);
  for (auto _ : state) {
    ForgetScores();
    benchmark::DoNotOptimize(Evaluate(-kInfinity, kInfinity));
  }
}

void EvaluateRemembered(benchmark::State& state) {
  SetUp(state);
  for (auto _ : state) benchmark::DoNotOptimize(Evaluate(-kInfinity, kInfinity));
}

void AttackWords(benchmark::State& state) {
  SetUp(state);
  for (auto _ : state) GenerateAttackes();
}

void AttackMaps(benchmark::State& state) {
  SetUp(state);
  for (auto _ : state) benchmark::DoNotOptimize(AttacksOnBoard());
}

void GenerateAll(benchmark::State& state) {
  SetUp(state);
  for (auto _ : state) benchmark::DoNotOptimize(Generate());
}

void GenerateCapturesOnly(benchmark::State& state) {
  SetUp(state);
  for (auto _ : state) benchmark::DoNotOptimize(GenerateCaptures());
}

void LegalMoves(benchmark::State& state) {
  SetUp(state);
  for (auto _ : state) benchmark::DoNotOptimize(LegalMoveList());
}

// One make and unmake of each legal move.
void MakeAndUnmake(benchmark::State& state) {
  SetUp(state);
  LegalMoveList();
  const std::vector<Move> moves(tree, tree + ListLength());
  for (auto _ : state) {
    for (const Move move : moves) {
      MakeMove(move);
      UnMakeMove(move);
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(moves.size()));
}

void HashStoreAndProbe(benchmark::State& state) {
  SetUp(state);
  for (auto _ : state) {
    HashInsert(10, 20, 5, 1);
    int score = 0;
    Move move = 0;
    benchmark::DoNotOptimize(HashLook(-kInfinity, kInfinity, 5, score, move));
  }
}

void LearnLookOfUnknown(benchmark::State& state) {
  SetUp(state);
  LearnReset();
  for (auto _ : state) {
    int score = 0;
    benchmark::DoNotOptimize(LearnLook(5, -kInfinity, kInfinity, score));
  }
}

void LearnLookOfKnown(benchmark::State& state) {
  SetUp(state);
  SaveSearchResult(10, 5);
  for (auto _ : state) {
    int score = 0;
    benchmark::DoNotOptimize(LearnLook(5, -kInfinity, kInfinity, score));
  }
}

// All that a search does before its first node, with tables of as many entries as the argument
// says; no iteration follows.
void BeginSearch(benchmark::State& state) {
  StartOnce();
  if (!HashAllocate(static_cast<int>(state.range(0)))) {
    state.SkipWithError("not enough memory");
    return;
  }
  ply = 0;
  InitGame(kPositions[1]);
  LearnReset();
  root_hooks.max_depth = 1;
  Move move = 0;
  for (auto _ : state) benchmark::DoNotOptimize(SearchMove(move));
  root_hooks = {};
  HashAllocate(kUsualEntries);
}

constexpr int kLastPosition = static_cast<int>(std::size(kPositions)) - 1;

BENCHMARK(EvaluateAfresh)->DenseRange(0, kLastPosition);
BENCHMARK(EvaluateRemembered)->DenseRange(0, kLastPosition);
BENCHMARK(AttackWords)->DenseRange(0, kLastPosition);
BENCHMARK(AttackMaps)->DenseRange(0, kLastPosition);
BENCHMARK(GenerateAll)->DenseRange(0, kLastPosition);
BENCHMARK(GenerateCapturesOnly)->DenseRange(0, kLastPosition);
BENCHMARK(LegalMoves)->DenseRange(0, kLastPosition);
BENCHMARK(MakeAndUnmake)->DenseRange(0, kLastPosition);
BENCHMARK(HashStoreAndProbe)->DenseRange(0, kLastPosition);
BENCHMARK(LearnLookOfUnknown)->DenseRange(0, kLastPosition);
BENCHMARK(LearnLookOfKnown)->DenseRange(0, kLastPosition);
BENCHMARK(BeginSearch)->Arg(kUsualEntries)->Arg(1 << 25);

}  // namespace

}  // namespace tarvyle
