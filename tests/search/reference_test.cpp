// Reference searches: scores and node counts after every iteration, best moves, thinking lines.

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/build_kind.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// Instrumented builds check each tenth line only, chain.tsv's first process only.
constexpr int kEvery = kSlowBuild ? 10 : 1;

struct ReferenceLine {
  std::string root;
  std::string style;
  int depth;
  std::string line;  // whole
};

std::optional<ReferenceLine> Parse(const std::string& line) {
  if (line.empty() || line[0] == '#') return std::nullopt;
  const std::vector<std::string> fields = Fields(line);
  if (fields.size() < 5) return std::nullopt;
  return ReferenceLine{fields[0], fields[1], std::stoi(fields[2]), line};
}

std::string Join(const std::vector<std::string>& parts, const char* separator) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : separator) + part;
  return text;
}

// What a search answers, in the form of the reference files.
std::string Answer(const ReferenceLine& reference) {
  EXPECT_TRUE(load_play_style(reference.style.c_str())) << reference.style;
  EXPECT_TRUE(SetUpGame(reference.root)) << reference.root;
  const Report report = SearchToDepth(reference.depth);
  std::vector<std::string> iterations;
  for (const Iteration& iteration : report.iterations) {
    iterations.push_back(std::to_string(iteration.depth) + ":" + std::to_string(iteration.score) +
                         ":" + std::to_string(iteration.nodes));
  }
  const std::string best = report.found ? report.move + " score " + std::to_string(search_score) +
                                              " depth " + std::to_string(search_depth)
                                        : "none";
  return reference.root + "\t" + reference.style + "\t" + std::to_string(reference.depth) + "\t" +
         Join(iterations, " ") + "\t" + best + "\t" + Join(report.lines, " | ");
}

// A line without thinking lines ends in a tab, or not.
std::string WithoutEmptyEnd(std::string line) {
  while (!line.empty() && line.back() == '\t') line.pop_back();
  return line;
}

// Searches each line of a file as in a fresh process and compares.
void ExpectEqual(const char* file, const std::string& book) {
  int lines = 0;
  int compared = 0;
  for (const std::string& line : DataLines(file)) {
    const auto reference = Parse(line);
    if (!reference || lines++ % kEvery != 0) continue;
    ASSERT_TRUE(FreshProcess(book));
    EXPECT_EQ(WithoutEmptyEnd(Answer(*reference)), WithoutEmptyEnd(line));
    ++compared;
  }
  EXPECT_GT(compared, 1);
}

using Reference = SearchTest;

TEST_F(Reference, SearchesAreEqual) { ExpectEqual("searches.tsv", ""); }

TEST_F(Reference, SearchesWithAGameBeforeTheRootAreEqual) { ExpectEqual("histories.tsv", ""); }

TEST_F(Reference, SearchesWithABookAreEqual) {
  ExpectEqual("booksearches.tsv", DataFile("book.bk"));
}

TEST_F(Reference, SearchesOneAfterTheOtherAreEqual) {
  int compared = 0;
  for (const std::string& line : DataLines("chain.tsv")) {
    if (line.starts_with("# new process")) {
      if (kSlowBuild) break;
      ASSERT_TRUE(FreshProcess());
    }
    const auto reference = Parse(line);
    if (!reference) continue;
    EXPECT_EQ(WithoutEmptyEnd(Answer(*reference)), WithoutEmptyEnd(line));
    ++compared;
  }
  EXPECT_GT(compared, 5);
}

}  // namespace

}  // namespace tarvyle
