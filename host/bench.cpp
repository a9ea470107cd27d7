#include "host/bench.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

#include "base/formatted.h"
#include "host/benchpositions.h"
#include "host/engine.h"
#include "search/style.h"

namespace tarvyle {

namespace {

constexpr unsigned kSeed = 1;

struct Totals {
  std::uint64_t nodes = 0;
  double seconds = 0.0;
};

std::string PositionText(const char* fen, const SearchReport& report, double seconds, bool json,
                         bool last) {
  const auto nodes = static_cast<unsigned long long>(report.nodes);
  if (json) {
    return Formatted(
        "    {\"fen\": \"%s\", \"move\": \"%s\", \"score\": %d, \"nodes\": %llu, "
        "\"seconds\": %.4f}%s\n",
        fen, report.best_move.c_str(), report.score, nodes, seconds, last ? "" : ",");
  }
  return Formatted("%-76s %-6s %8d %10llu\n", fen, report.best_move.c_str(), report.score, nodes);
}

Totals SearchAll(const BenchOptions& options, const BenchReader& reader) {
  Totals totals;
  for (std::size_t i = 0; i < kBenchPositions.size(); ++i) {
    const char* fen = kBenchPositions[i];
    FreshProcess();
    if (!SetUpRoot(fen)) throw std::runtime_error(std::string("position refused: ") + fen);
    const auto begin = std::chrono::steady_clock::now();
    const SearchReport report = SearchToDepth(options.depth, kSeed);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    totals.nodes += report.nodes;
    totals.seconds += taken.count();
    const bool last = i + 1 == kBenchPositions.size();
    reader(PositionText(fen, report, taken.count(), options.json, last));
  }
  return totals;
}

std::string TotalsText(const Totals& totals, bool json) {
  const auto nodes = static_cast<unsigned long long>(totals.nodes);
  const double speed = totals.seconds > 0 ? static_cast<double>(totals.nodes) / totals.seconds : 0;
  if (json) {
    return Formatted(
        "  ],\n  \"nodes\": %llu,\n  \"seconds\": %.3f,\n  \"nodes_per_second\": %.0f\n}\n", nodes,
        totals.seconds, speed);
  }
  return Formatted("\nnodes %llu\nseconds %.3f\nnodes/second %.0f\n%llu nodes %.0f nps\n", nodes,
                   totals.seconds, speed, nodes, speed);
}

}  // namespace

void RunBench(const BenchOptions& options, const BenchReader& reader) {
  if (!load_play_style(options.style.c_str())) {
    throw std::runtime_error("unknown style " + options.style);
  }
  if (options.json) {
    reader(Formatted("{\n  \"depth\": %d,\n  \"style\": \"%s\",\n  \"positions\": [\n",
                     options.depth, options.style.c_str()));
  }
  reader(TotalsText(SearchAll(options, reader), options.json));
}

}  // namespace tarvyle
