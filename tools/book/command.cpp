#include <memory>

#include "position/record.h"
#include "search/root.h"
#include "tools/book/check.h"
#include "tools/book/frompgn.h"
#include "tools/book/frompolyglot.h"
#include "tools/book/stats.h"
#include "tools/book/topolyglot.h"
#include "tools/commandline.h"
#include "tools/subcommands.h"

namespace tarvyle::tools {

namespace {

void AddCheck(const Command& group) {
  const Command command = group.AddCommand(
      "check", "Tells the moves that the engine refuses; status 1 when there are any",
      "tarv book check --depth 8 tarvyle.bk");
  auto options = std::make_shared<BookCheckOptions>();
  command.Add("FILE", options->file, "book file").Required();
  const Option depth =
      command.Add("--depth", options->depth, "search the last position of each line to this depth")
          .Between(kFirstIteration, kMaxIteration);
  command.Add("--limit", options->limit, "pawns it may be unbalanced by (default: 1.2)")
      .Needs(depth)
      .Between(0.0, 100.0);
  command
      .Add("--gambit-limit", options->gambit_limit,
           "the same for the side that plays a gambit (default: 2.5)")
      .Needs(depth)
      .Between(0.0, 100.0);
  command.Does([options] { CheckBook(*options); });
}

void AddBookStats(const Command& group) {
  const Command command =
      group.AddCommand("stats", "Counts lines, positions, transpositions and openings",
                       "tarv book stats --openings tarvyle.bk");
  auto options = std::make_shared<BookStatsOptions>();
  command.Add("FILE", options->file, "book file").Required();
  command.AddFlag("--openings", options->openings, "a row for each opening as well");
  command.AddFlag("--markdown", options->markdown, "tables in Markdown");
  command.Does([options] { PrintBookStats(*options); });
}

void AddFromPgn(const Command& group) {
  const Command command =
      group.AddCommand("from-pgn", "Makes book lines of games (with pgn-extract)",
                       "tarv book from-pgn --min-games 3 --max-depth 20 games.pgn");
  auto options = std::make_shared<FromPgnOptions>();
  command.Add("FILE", options->files, "PGN files").Required();
  command.Add("--min-games", options->min_games, "games that a move must occur in (default: 2)")
      .Between(1, 1000000);
  command.Add("--max-depth", options->max_depth, "half-moves of a line (default: 20)")
      .Between(1, 400);
  command.Add("-o,--output", options->output, "book file (default: standard output)");
  command.Does([options] { BookFromPgn(*options); });
}

void AddToPolyglot(const Command& group) {
  const Command command = group.AddCommand(
      "to-polyglot",
      "Makes a Polyglot book of a book; weights are the numbers of lines that play a move",
      "tarv book to-polyglot tarvyle.bk tarvyle.bin");
  auto options = std::make_shared<ToPolyglotOptions>();
  command.Add("BOOK", options->book, "book file").Required();
  command.Add("OUTPUT", options->output, "Polyglot book; -: standard output").Required();
  command.Does([options] { BookToPolyglot(*options); });
}

void AddFromPolyglot(const Command& group) {
  const Command command = group.AddCommand(
      "from-polyglot", "Makes book lines of what a Polyglot book plays from the start position",
      "tarv book from-polyglot --max-depth 24 performance.bin own.bk");
  auto options = std::make_shared<FromPolyglotOptions>();
  command.Add("BOOK", options->book, "Polyglot book").Required();
  command.Add("OUTPUT", options->output, "book file; -: standard output").Required();
  command.Add("--max-depth", options->max_depth, "half-moves of a line (default: 40)")
      .Between(1, kMaxGameMoves);
  command.Add("--max-lines", options->max_lines, "lines in all (default: 100000)")
      .Between(1, 10000000);
  command.Does([options] { BookFromPolyglot(*options); });
}

}  // namespace

void AddBook(const Command& program) {
  const Command group = program.AddGroup("book", "Checks, measures and makes opening books",
                                         "tarv book check tarvyle.bk");
  AddCheck(group);
  AddBookStats(group);
  AddFromPgn(group);
  AddToPolyglot(group);
  AddFromPolyglot(group);
}

}  // namespace tarvyle::tools
