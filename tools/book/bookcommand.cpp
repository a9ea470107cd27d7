#include "tools/book/bookcommand.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "search/root.h"
#include "tools/book/check.h"
#include "tools/book/frompgn.h"
#include "tools/book/stats.h"

namespace tarvyle::tools {

namespace {

CLI::App* Subcommand(CLI::App& group, const char* name, const char* what, const char* example) {
  CLI::App* command = group.add_subcommand(name, what);
  command->footer(std::string("Example:\n  ") + example);
  return command;
}

void AddCheck(CLI::App& group) {
  CLI::App* command = Subcommand(
      group, "check", "Tells the moves that the engine refuses; status 1 when there are any",
      "tarv book check --depth 8 tarvyle.bk");
  auto options = std::make_shared<BookCheckOptions>();
  command->add_option("FILE", options->file, "book file")->required();
  CLI::Option* depth = command
                           ->add_option("--depth", options->depth,
                                        "search the last position of each line to this depth")
                           ->check(CLI::Range(2, kMaxIteration));
  command->add_option("--limit", options->limit, "pawns it may be unbalanced by (default: 1.2)")
      ->needs(depth)
      ->check(CLI::Range(0.0, 100.0));
  command
      ->add_option("--gambit-limit", options->gambit_limit,
                   "the same for the side that plays a gambit (default: 2.5)")
      ->needs(depth)
      ->check(CLI::Range(0.0, 100.0));
  command->callback([options] { CheckBook(*options); });
}

void AddStats(CLI::App& group) {
  CLI::App* command =
      Subcommand(group, "stats", "Counts lines, positions, transpositions and openings",
                 "tarv book stats --openings tarvyle.bk");
  auto options = std::make_shared<BookStatsOptions>();
  command->add_option("FILE", options->file, "book file")->required();
  command->add_flag("--openings", options->openings, "a row for each opening as well");
  command->add_flag("--markdown", options->markdown, "tables in Markdown");
  command->callback([options] { PrintBookStats(*options); });
}

void AddFromPgn(CLI::App& group) {
  CLI::App* command = Subcommand(group, "from-pgn", "Makes book lines of games (with pgn-extract)",
                                 "tarv book from-pgn --min-games 3 --max-depth 20 games.pgn");
  auto options = std::make_shared<FromPgnOptions>();
  command->add_option("FILE", options->files, "PGN files")->required();
  command
      ->add_option("--min-games", options->min_games,
                   "games that a move must occur in (default: 2)")
      ->check(CLI::Range(1, 1000000));
  command->add_option("--max-depth", options->max_depth, "half-moves of a line (default: 20)")
      ->check(CLI::Range(1, 400));
  command->add_option("-o,--output", options->output, "book file (default: standard output)");
  command->callback([options] { BookFromPgn(*options); });
}

}  // namespace

void AddBook(CLI::App& app) {
  CLI::App* group = app.add_subcommand("book", "Checks, measures and makes opening books");
  group->require_subcommand(1);
  group->footer("Example:\n  tarv book check tarvyle.bk");
  AddCheck(*group);
  AddStats(*group);
  AddFromPgn(*group);
}

}  // namespace tarvyle::tools
