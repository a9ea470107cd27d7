// The commands that show one part of the engine each.

#include <cstdio>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include "eval/dump.h"
#include "eval/scoretable.h"
#include "host/bench.h"
#include "position/perft.h"
#include "position/setup.h"
#include "search/root.h"
#include "tools/commandline.h"
#include "tools/lines.h"
#include "tools/listings.h"
#include "tools/searches.h"
#include "tools/subcommands.h"

namespace tarvyle::tools {

namespace {

using Answer = std::string (*)(std::string_view line);

// A command that answers every line of a file by itself.
void AddListing(const Command& program, const char* name, const char* what, Answer answer) {
  const Command command = program.AddCommand(name, what);
  auto file = std::make_shared<std::string>();
  command.Add("FILE", *file, "lines that begin with a FEN (default: standard input)");
  command.Does([file, answer] { AnswerLines(*file, answer); });
}

struct PerftOptions {
  std::string file;
  std::string fen;
  int depth = 0;
  bool divide = false;
};

void AddPerft(const Command& program) {
  const Command command = program.AddCommand("perft", "Counts legal leaf nodes");
  auto options = std::make_shared<PerftOptions>();
  const Option file =
      command.Add("FILE", options->file, "lines of FEN, tab, depth (default: standard input)");
  const Option fen = command.Add("--fen", options->fen, "one position instead of a file");
  const Option depth =
      command.Add("--depth", options->depth, "its depth").Between(0, kDeepestPerft).Needs(fen);
  fen.Needs(depth).Excludes(file);
  command.AddFlag("--divide", options->divide, "a line for each root move").Needs(fen);
  command.Does([options, fen] {
    if (fen.Given()) {
      PrintPerft(options->fen, options->depth, options->divide);
    } else {
      AnswerLines(options->file, DescribePerft);
    }
  });
}

void AddSearch(const Command& program) {
  const Command command = program.AddCommand("search", "Searches each root to a fixed depth");
  auto options = std::make_shared<SearchOptions>();
  command.Add("FILE", options->file,
              "lines of root, tab, style, tab, depth (default: standard input); a root is a "
              "FEN or \"FEN moves m1 m2 ...\"");
  command.Add("--seed", options->seed, "seed of the random generator (default: 1)");
  command.Add("--book", options->book, "book that fills the learn table first");
  command.AddFlag("--chain", options->chain, "resets nothing but at a line \"# new process\"");
  command.AddFlag("--pv-tree", options->pv_tree, "prints the tree of principal variations as well");
  command.Does([options] { RunSearches(*options); });
}

void AddBench(const Command& program) {
  const Command command = program.AddCommand("bench", "Searches a fixed set of positions");
  auto options = std::make_shared<BenchOptions>();
  command.Add("--depth", options->depth, "depth of each search (default: 8)")
      .Between(kFirstIteration, kMaxIteration);
  command.Add("--style", options->style, "knowledge1, knowledge2 or knowledge3 (default)");
  command.AddFlag("--json", options->json, "prints one JSON object");
  command.Does([options] {
    RunBench(*options, [](std::string_view text) { std::cout << text << std::flush; });
  });
}

void AddTables(const Command& program) {
  const Command command =
      program.AddCommand("tables", "Prints the piece-square tables of a position");
  auto fen = std::make_shared<std::string>();
  const Option given = command.Add("--fen", *fen, "the position (default: the start position)");
  command.Does([fen, given] {
    if (given.Given() && !InitGame(fen->c_str())) {
      throw std::runtime_error("position refused: " + *fen);
    }
    InitEvaluate();
    PrintScoreTables(stdout);
  });
}

}  // namespace

void AddEngineParts(const Command& program) {
  AddListing(program, "positions", "Evaluation, keys and text of each FEN, tab-separated",
             DescribePosition);
  AddListing(program, "movelists", "Generated moves, captures and legal moves of each FEN",
             DescribeMoves);
  AddPerft(program);
  AddSearch(program);
  AddBench(program);
  AddTables(program);
}

}  // namespace tarvyle::tools
