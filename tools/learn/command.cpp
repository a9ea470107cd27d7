#include <memory>
#include <string>
#include <vector>

#include "search/root.h"
#include "tools/commandline.h"
#include "tools/learn/analyse.h"
#include "tools/learn/listing.h"
#include "tools/learn/merge.h"
#include "tools/learn/verify.h"
#include "tools/subcommands.h"

namespace tarvyle::tools {

namespace {

void NeedFiles(const Command& command, std::vector<std::string>& files) {
  command.Add("FILE", files, "learn files").Required();
}

void AddLearnStats(const Command& group) {
  const Command command = group.AddCommand("stats", "Counts records: book, learned, by depth",
                                           "tarv learn stats tarvyle.lrn");
  auto files = std::make_shared<std::vector<std::string>>();
  NeedFiles(command, *files);
  command.Does([files] { PrintStatistics(*files); });
}

void AddFilter(const Command& command, RecordFilter& filter) {
  command.AddFlag("--book", filter.book, "only positions of the book");
  command.AddFlag("--learned", filter.learned, "only positions with a search result");
  command.Add("--min-depth", filter.min_depth, "only results of at least this depth")
      .Between(0, kMaxIteration);
}

void AddList(const Command& group) {
  const Command command =
      group.AddCommand("list", "Prints records as EPD: acd is the depth, ce the score",
                       "tarv learn list --learned --min-depth 10 tarvyle.lrn");
  auto options = std::make_shared<ListOptions>();
  NeedFiles(command, options->files);
  AddFilter(command, options->filter);
  command.Does([options] { ListRecords(*options); });
}

void AddExport(const Command& group) {
  const Command command =
      group.AddCommand("export", "Writes records for other programs: EPD, CSV or lines of JSON",
                       "tarv learn export --format csv --output learned.csv tarvyle.lrn");
  auto options = std::make_shared<ListOptions>();
  NeedFiles(command, options->files);
  AddFilter(command, options->filter);
  command.Add("--format", options->format, "epd (default), csv or json")
      .OneOf({"epd", "csv", "json"});
  command.Add("-o,--output", options->output, "file to write (default: standard output)");
  command.Does([options] { ListRecords(*options); });
}

void AddVerify(const Command& group) {
  const Command command =
      group.AddCommand("verify", "Checks every record; status 1 when one has a problem",
                       "tarv learn verify tarvyle.lrn");
  auto files = std::make_shared<std::vector<std::string>>();
  NeedFiles(command, *files);
  command.Does([files] { VerifyFiles(*files); });
}

void AddMerge(const Command& group) {
  const Command command = group.AddCommand(
      "merge", "Brings learn files together: the deepest search wins, book flags are kept",
      "tarv learn merge here.lrn there.lrn --output tarvyle.lrn");
  auto options = std::make_shared<MergeOptions>();
  NeedFiles(command, options->files);
  command.Add("-o,--output", options->output, "learn file to write").Required();
  command.AddFlag("--force", options->force, "replace an output that is none of the files");
  command.AddFlag("--salvage", options->salvage,
                  "take the records before the damage of a damaged file");
  command.Does([options] { MergeLearnFiles(*options); });
}

struct AddBookOptions {
  std::string book;
  std::string file;
  bool replace = false;
};

void AddAddBook(const Command& group) {
  const Command command =
      group.AddCommand("add-book", "Adds the positions of a book to a learn file",
                       "tarv learn add-book tarvyle.bk tarvyle.lrn");
  auto options = std::make_shared<AddBookOptions>();
  command.Add("BOOK", options->book, "book file").Required();
  command.Add("LEARN", options->file, "learn file to add it to").Required();
  command.AddFlag("--replace", options->replace,
                  "positions that only the old book had are no book positions any more");
  command.Does([options] { AddBookToLearnFile(options->book, options->file, options->replace); });
}

void AddAnalyse(const Command& group) {
  Command command =
      group.AddCommand("analyse", "Searches positions and records the results in a learn file",
                       "tarv learn analyse positions.epd --seconds 10 --output positions.lrn");
  auto options = std::make_shared<AnalyseOptions>();
  command.Add("FILE", options->file, "EPD lines, - for standard input").Required();
  command.AddBounds(options->bounds);
  command.Add("-o,--output", options->output,
              "learn file to add to (default: FILE with the ending .lrn)");
  command.Does([options] { Analyse(*options); });
}

}  // namespace

void AddLearn(const Command& program) {
  const Command group = program.AddGroup("learn", "Looks into learn files and brings them together",
                                         "tarv learn stats tarvyle.lrn");
  AddLearnStats(group);
  AddList(group);
  AddVerify(group);
  AddMerge(group);
  AddExport(group);
  AddAddBook(group);
  AddAnalyse(group);
}

}  // namespace tarvyle::tools
