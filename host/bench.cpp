#include "host/bench.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <stdexcept>

#include "host/benchpositions.h"
#include "host/engine.h"
#include "search/style.h"

namespace tarvyle {

namespace {

struct Totals {
  std::uint64_t nodes = 0;
  double seconds = 0.0;
};

void PrintPosition(const char* fen, const SearchReport& report, double seconds, bool json,
                   bool last) {
  const auto nodes = static_cast<unsigned long long>(report.nodes);
  if (json) {
    std::printf(
        "    {\"fen\": \"%s\", \"move\": \"%s\", \"score\": %d, \"nodes\": %llu, "
        "\"seconds\": %.4f}%s\n",
        fen, report.best_move.c_str(), report.score, nodes, seconds, last ? "" : ",");
  } else {
    std::printf("%-76s %-6s %8d %10llu\n", fen, report.best_move.c_str(), report.score, nodes);
  }
}

Totals SearchAll(const BenchOptions& options) {
  Totals totals;
  for (std::size_t i = 0; i < kBenchPositions.size(); ++i) {
    const char* fen = kBenchPositions[i];
    FreshProcess();
    if (!SetUpRoot(fen)) throw std::runtime_error(std::string("position refused: ") + fen);
    const auto begin = std::chrono::steady_clock::now();
    const SearchReport report = SearchToDepth(options.depth, 1);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    totals.nodes += report.nodes;
    totals.seconds += taken.count();
    PrintPosition(fen, report, taken.count(), options.json, i + 1 == kBenchPositions.size());
    std::fflush(stdout);
  }
  return totals;
}

}  // namespace

void RunBench(const BenchOptions& options) {
  if (!load_play_style(options.style.c_str())) {
    throw std::runtime_error("unknown style " + options.style);
  }
  if (options.json) {
    std::printf("{\n  \"depth\": %d,\n  \"style\": \"%s\",\n  \"positions\": [\n", options.depth,
                options.style.c_str());
  }
  const Totals totals = SearchAll(options);
  const auto nodes = static_cast<unsigned long long>(totals.nodes);
  const double speed = totals.seconds > 0 ? static_cast<double>(totals.nodes) / totals.seconds : 0;
  if (options.json) {
    std::printf("  ],\n  \"nodes\": %llu,\n  \"seconds\": %.3f,\n  \"nodes_per_second\": %.0f\n}\n",
                nodes, totals.seconds, speed);
  } else {
    std::printf("\nnodes %llu\nseconds %.3f\nnodes/second %.0f\n", nodes, totals.seconds, speed);
    std::printf("%llu nodes %.0f nps\n", nodes, speed);
  }
}

}  // namespace tarvyle
