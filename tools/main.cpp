// The workbench: the engine's parts on the command line.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "eval/dump.h"
#include "eval/scoretable.h"
#include "position/setup.h"
#include "tools/bench.h"
#include "tools/book/bookcommand.h"
#include "tools/engine.h"
#include "tools/failure.h"
#include "tools/game/game.h"
#include "tools/learn/learn.h"
#include "tools/lines.h"
#include "tools/listings.h"
#include "tools/searches.h"
#include "tools/suite/suite.h"
#include "tools/uci/uci.h"

namespace {

using namespace tarvyle::tools;

constexpr int kCheckFailed = 1;
constexpr int kUsageError = 2;

void AddPositions(CLI::App& app, std::string& file) {
  CLI::App* command =
      app.add_subcommand("positions", "Evaluation, keys and text of each FEN, tab-separated");
  command->add_option("FILE", file, "lines that begin with a FEN (default: standard input)");
  command->callback([&file] { AnswerLines(file, DescribePosition); });
}

void AddMoveLists(CLI::App& app, std::string& file) {
  CLI::App* command =
      app.add_subcommand("movelists", "Generated moves, captures and legal moves of each FEN");
  command->add_option("FILE", file, "lines that begin with a FEN (default: standard input)");
  command->callback([&file] { AnswerLines(file, DescribeMoves); });
}

struct PerftOptions {
  std::string file;
  std::string fen;
  int depth = 0;
  bool divide = false;
};

void AddPerft(CLI::App& app, PerftOptions& options) {
  CLI::App* command = app.add_subcommand("perft", "Counts legal leaf nodes");
  CLI::Option* file = command->add_option("FILE", options.file,
                                          "lines of FEN, tab, depth (default: standard input)");
  CLI::Option* fen = command->add_option("--fen", options.fen, "one position instead of a file");
  CLI::Option* depth = command->add_option("--depth", options.depth, "its depth");
  depth->check(CLI::Range(0, 90))->needs(fen);
  fen->needs(depth)->excludes(file);
  command->add_flag("--divide", options.divide, "a line for each root move")->needs(fen);
  command->callback([&options, fen] {
    if (fen->empty()) {
      AnswerLines(options.file, DescribePerft);
    } else {
      PrintPerft(options.fen, options.depth, options.divide);
    }
  });
}

void AddSearch(CLI::App& app, SearchOptions& options) {
  CLI::App* command = app.add_subcommand("search", "Searches each root to a fixed depth");
  command->add_option(
      "FILE", options.file,
      "lines of root, tab, style, tab, depth (default: standard input); a root is a "
      "FEN or \"FEN moves m1 m2 ...\"");
  command->add_option("--seed", options.seed, "seed of the random generator (default: 1)");
  command->add_option("--book", options.book, "book that fills the learn table first");
  command->add_flag("--chain", options.chain, "resets nothing but at a line \"# new process\"");
  command->add_flag("--pv-tree", options.pv_tree,
                    "prints the tree of principal variations as well");
  command->callback([&options] { RunSearches(options); });
}

void AddBench(CLI::App& app, BenchOptions& options) {
  CLI::App* command = app.add_subcommand("bench", "Searches a fixed set of positions");
  command->add_option("--depth", options.depth, "depth of each search (default: 8)")
      ->check(CLI::Range(2, 90));
  command->add_option("--style", options.style, "knowledge1, knowledge2 or knowledge3 (default)");
  command->add_flag("--json", options.json, "prints one JSON object");
  command->callback([&options] { RunBench(options); });
}

void AddTables(CLI::App& app, std::string& fen) {
  CLI::App* command = app.add_subcommand("tables", "Prints the piece-square tables of a position");
  CLI::Option* option =
      command->add_option("--fen", fen, "the position (default: the start position)");
  command->callback([&fen, option] {
    if (!option->empty() && !tarvyle::InitGame(fen.c_str())) {
      throw std::runtime_error("position refused: " + fen);
    }
    tarvyle::InitEvaluate();
    tarvyle::PrintScoreTables(stdout);
  });
}

int Run(int argc, char** argv) {
  CLI::App app("tarv - the engine's workbench", "tarv");
  app.require_subcommand(1);
  std::string file;
  std::string fen;
  PerftOptions perft;
  SearchOptions search;
  BenchOptions bench;
  AddPositions(app, file);
  AddMoveLists(app, file);
  AddPerft(app, perft);
  AddSearch(app, search);
  AddBench(app, bench);
  AddTables(app, fen);
  AddLearn(app);
  AddBook(app);
  AddGame(app);
  AddSuite(app);
  AddUci(app);
  if (!StartEngine()) throw std::runtime_error("out of memory");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // help was asked for
    std::fprintf(stderr, "tarv: %s\n", error.what());
    return kUsageError;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const CheckFailed& failure) {
    std::fprintf(stderr, "tarv: %s\n", failure.what());
    return kCheckFailed;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "tarv: %s\n", error.what());
    return kUsageError;
  }
}
