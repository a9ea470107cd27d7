#include "tools/suite/solve.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "base/token.h"
#include "host/positiontext.h"
#include "host/scoretext.h"
#include "position/types.h"
#include "tools/epdfile.h"
#include "tools/failure.h"
#include "tools/progress.h"
#include "tools/san.h"

namespace tarvyle::tools {

namespace {

// A position of a suite and what is asked there.
struct Problem {
  std::string epd;
  std::string id;
  std::string asked;  // "bm Qd2 Qe1"
  std::vector<Move> best;
  std::vector<Move> avoid;
};

// The operations of an EPD line, at semicolons outside quotation marks.
std::vector<std::string> OperationsOf(std::string_view text) {
  std::vector<std::string> operations(1);
  bool quoted = false;
  for (const char letter : text) {
    if (letter == '"') quoted = !quoted;
    if (letter == ';' && !quoted) {
      operations.emplace_back();
    } else if (letter != ' ' || !operations.back().empty()) {
      operations.back() += letter;
    }
  }
  return operations;
}

std::vector<Move> MovesOf(std::string_view texts) {
  std::vector<Move> moves;
  for (auto text = NextToken(texts, " "); !text.empty(); text = NextToken(texts, " ")) {
    const Move move = MoveOfSan(text);
    if (move == 0) throw std::runtime_error("no legal move there: " + std::string(text));
    moves.push_back(move);
  }
  return moves;
}

void TakeOperation(const std::string& operation, Problem& problem) {
  const std::size_t blank = operation.find(' ');
  if (blank == std::string::npos) return;
  const std::string code = operation.substr(0, blank);
  const std::string operand = operation.substr(blank + 1);
  if (code == "id") {
    problem.id = operand;
    std::erase(problem.id, '"');
  } else if (code == "bm" || code == "am") {
    (code == "bm" ? problem.best : problem.avoid) = MovesOf(operand);
    problem.asked += (problem.asked.empty() ? "" : "; ") + operation;
  }
}

Problem ProblemOf(const std::string& line, std::size_t number) {
  Problem problem;
  problem.epd = line;
  problem.id = "line " + std::to_string(number);
  (void)SetUpText(line);
  for (const std::string& operation : OperationsOf(EpdOperations(line))) {
    TakeOperation(operation, problem);
  }
  if (problem.asked.empty()) throw std::runtime_error("neither bm nor am");
  return problem;
}

std::vector<Problem> ReadSuite(const std::string& file) {
  std::vector<Problem> problems;
  for (const EpdLine& line : ReadEpdFile(file)) {
    try {
      problems.push_back(ProblemOf(line.text, line.number));
    } catch (const std::exception& error) {
      throw std::runtime_error(file + ": line " + std::to_string(line.number) + ": " +
                               error.what());
    }
  }
  return problems;
}

bool Solves(Move move, const Problem& problem) {
  const auto holds = [move](const std::vector<Move>& moves) {
    return std::find(moves.begin(), moves.end(), move) != moves.end();
  };
  return move != 0 && (problem.best.empty() || holds(problem.best)) && !holds(problem.avoid);
}

// Time and depth of a solution are those at which the move took the lead for good.
void PrintRow(const Problem& problem, const BoundedResult& result, bool solved) {
  const std::string found = result.move == 0 ? "none" : SanOf(result.move);
  std::printf("%-12s %-20s %-8s %-3s %5d %8s %10llu", problem.id.c_str(), problem.asked.c_str(),
              found.c_str(), solved ? "yes" : "no", result.depth, ScoreText(result.score).c_str(),
              static_cast<unsigned long long>(result.nodes));
  if (solved) std::printf("   depth %d, %.2f s", result.settled_depth, result.settled_seconds);
  std::puts("");
  std::fflush(stdout);
}

int SolveAll(const std::vector<Problem>& problems, const SearchBounds& bounds) {
  int solved = 0;
  std::printf("%-12s %-20s %-8s %-3s %5s %8s %10s   %s\n", "id", "asked", "found", "ok", "depth",
              "score", "nodes", "found for good at");
  Progress progress(problems.size());
  for (std::size_t i = 0; i < problems.size(); ++i) {
    progress.Show(i);
    const BoundedResult result = SearchPosition(problems[i].epd, bounds);
    const bool is_solved = Solves(result.move, problems[i]);
    solved += is_solved ? 1 : 0;
    progress.Clear();
    PrintRow(problems[i], result, is_solved);
  }
  return solved;
}

}  // namespace

void RunSuite(const SuiteOptions& options) {
  const std::vector<Problem> problems = ReadSuite(options.file);
  const int solved = SolveAll(problems, options.bounds);
  std::printf("solved %d of %zu\n", solved, problems.size());
  std::fflush(stdout);
  if (solved < options.expected) {
    throw CheckFailed("fewer than " + std::to_string(options.expected) + " solved");
  }
}

}  // namespace tarvyle::tools
