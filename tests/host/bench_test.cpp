// The fixed set of positions whose node count is the signature.

#include "host/bench.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "host/benchpositions.h"
#include "host/positiontext.h"
#include "tests/support/captured.h"
#include "tests/support/data_rows.h"
#include "tests/support/host_support.h"

namespace tarvyle {

using namespace support;

namespace {

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// What stands behind a label in a line, up to a comma, a brace or a quotation mark.
std::string ValueOf(const std::string& line, const std::string& label) {
  const std::size_t at = line.find(label);
  if (at == std::string::npos) return "missing";
  const std::size_t begin = at + label.size();
  return line.substr(begin, line.find_first_of(",\"}", begin) - begin);
}

std::string RunBenchText(const BenchOptions& options) {
  std::string told;
  RunBench(options, [&told](std::string_view text) { told += text; });
  return told;
}

using Bench = HostTest;

TEST_F(Bench, HasPositionsOfEveryPhaseThatAreLegal) {
  EXPECT_EQ(kBenchPositions.size(), 40u);
  for (const char* fen : kBenchPositions) EXPECT_EQ(SetUpText(fen), "") << fen;
}

// The tree of a build that searches as it always has. A change of these numbers is a change of
// play.
TEST_F(Bench, VisitsTheSameNodesInEveryBuild) {
  constexpr int kDeepest = 4;  // deeper ones are for the program itself
  HashAllocate(kUsualEntries);
  int compared = 0;
  for (const auto& row : DataRows("signature.tsv")) {
    const BenchOptions options{std::stoi(row[1]), row[0], false};
    if (options.depth > kDeepest) continue;
    const auto lines = LinesOf(RunBenchText(options));
    ASSERT_EQ(lines.size(), 45u);
    EXPECT_EQ(lines[41], "nodes " + row[2]) << row[0] << " " << row[1];
    ++compared;
  }
  EXPECT_GE(compared, 3);
}

TEST_F(Bench, PrintsALineForEachPositionThenTheTotals) {
  const auto lines = LinesOf(RunBenchText({2, "knowledge3", false}));
  ASSERT_EQ(lines.size(), 45u);
  std::uint64_t total = 0;
  for (std::size_t i = 0; i < 40; ++i) {
    FreshProcess();
    ASSERT_TRUE(SetUpRoot(kBenchPositions[i]));
    const SearchReport report = SearchToDepth(2, 1);
    std::istringstream row(lines[i].substr(76));
    std::string move;
    int score = 0;
    std::uint64_t nodes = 0;
    row >> move >> score >> nodes;
    const std::string fen = kBenchPositions[i];
    EXPECT_EQ(lines[i].substr(0, 77), fen + std::string(77 - fen.size(), ' '));
    EXPECT_EQ(move, report.best_move) << fen;
    EXPECT_EQ(score, report.score) << fen;
    EXPECT_EQ(nodes, report.nodes) << fen;
    total += nodes;
  }
  const std::string nodes = std::to_string(total);
  EXPECT_EQ(lines[40], "");
  EXPECT_EQ(lines[41], "nodes " + nodes);
  EXPECT_TRUE(lines[42].starts_with("seconds ")) << lines[42];
  EXPECT_LT(std::stod(lines[42].substr(8)), 60);
  const std::string speed = lines[43].substr(lines[43].find(' ') + 1);
  EXPECT_EQ(lines[43], "nodes/second " + speed);
  EXPECT_GT(std::stoll(speed), 0);
  EXPECT_EQ(lines[44], nodes + " nodes " + speed + " nps");
}

TEST_F(Bench, PrintsTheSameAsJson) {
  const auto text = LinesOf(RunBenchText({2, "knowledge1", false}));
  const auto lines = LinesOf(RunBenchText({2, "knowledge1", true}));
  ASSERT_EQ(lines.size(), 4 + 40 + 5u);
  EXPECT_EQ(lines[0], "{");
  EXPECT_EQ(lines[1], "  \"depth\": 2,");
  EXPECT_EQ(lines[2], "  \"style\": \"knowledge1\",");
  EXPECT_EQ(lines[3], "  \"positions\": [");
  for (std::size_t i = 0; i < 40; ++i) {
    const std::string& line = lines[4 + i];
    std::istringstream row(text[i].substr(76));
    std::string move;
    std::string score;
    std::string nodes;
    row >> move >> score >> nodes;
    EXPECT_TRUE(line.starts_with("    {\"fen\": \"")) << line;
    EXPECT_EQ(ValueOf(line, "\"fen\": \""), kBenchPositions[i]);
    EXPECT_EQ(ValueOf(line, "\"move\": \""), move);
    EXPECT_EQ(ValueOf(line, "\"score\": "), score);
    EXPECT_EQ(ValueOf(line, "\"nodes\": "), nodes);
    EXPECT_GE(std::stod(ValueOf(line, "\"seconds\": ")), 0);
    EXPECT_TRUE(line.ends_with(i == 39 ? "}" : "},")) << line;
  }
  EXPECT_EQ(lines[44], "  ],");
  EXPECT_EQ("nodes " + ValueOf(lines[45], "  \"nodes\": "), text[41]);
  EXPECT_GE(std::stod(ValueOf(lines[46], "  \"seconds\": ")), 0);
  EXPECT_GT(std::stoll(ValueOf(lines[47], "  \"nodes_per_second\": ")), 0);
  EXPECT_EQ(lines[48], "}");
}

TEST_F(Bench, RefusesAnUnknownStyleBeforeItTellsAnything) {
  try {
    RunBench({2, "knowledge4", true}, [](std::string_view text) { ADD_FAILURE() << text; });
    ADD_FAILURE() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "unknown style knowledge4");
  }
}

TEST_F(Bench, TellsEachPositionInItsTurnAndPrintsNothing) {
  std::vector<std::string> told;
  const std::string printed = Printed([&] {
    RunBench({2, "knowledge3", false}, [&told](std::string_view text) { told.emplace_back(text); });
  });
  EXPECT_EQ(printed, "");
  ASSERT_EQ(told.size(), kBenchPositions.size() + 1);
  for (std::size_t i = 0; i < kBenchPositions.size(); ++i) {
    EXPECT_TRUE(told[i].starts_with(kBenchPositions[i])) << told[i];
    EXPECT_EQ(told[i].find('\n'), told[i].size() - 1);
  }
}

TEST_F(Bench, IsNotTouchedByWhatWasBefore) {
  const auto first = LinesOf(RunBenchText({3, "knowledge3", false}));
  // The first position is begun with what was found in it before, unless that is forgotten.
  ASSERT_TRUE(SetUpRoot(kBenchPositions[0]));
  SearchToDepth(5, 9);
  EXPECT_EQ(LinesOf(RunBenchText({3, "knowledge3", false}))[41], first[41]);
}

}  // namespace

}  // namespace tarvyle
