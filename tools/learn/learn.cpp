#include "tools/learn/learn.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "search/root.h"
#include "tools/failure.h"
#include "tools/files.h"
#include "tools/learn/analyse.h"
#include "tools/learn/listing.h"
#include "tools/learn/merge.h"
#include "tools/learn/recordset.h"
#include "tools/learn/verify.h"

namespace tarvyle::tools {

namespace {

constexpr std::size_t kProblemsShown = 20;

using RowOf = std::string (*)(const LearnRecord&);

// Throws std::runtime_error when the file is damaged: before the first record is handed out.
void ForEachRecord(const std::string& file,
                   const std::function<void(const LearnRecord&, std::size_t)>& on_record) {
  const std::string content = ReadWholeFile(file);
  const Damage damage = ReadRecords(content, [](const LearnRecord&, std::size_t) {});
  if (damage) throw std::runtime_error(DamageText(file, damage));
  (void)ReadRecords(content, on_record);
}

void PrintStatistics(const std::vector<std::string>& files) {
  LearnStatistics total;
  for (const std::string& file : files) {
    LearnStatistics statistics;
    ForEachRecord(file, [&](const LearnRecord& record, std::size_t) {
      statistics.Count(record);
      total.Count(record);
    });
    std::cout << StatisticsText(file, statistics);
  }
  if (files.size() > 1) std::cout << StatisticsText("all files", total);
}

std::string Rows(const std::vector<std::string>& files, const RecordFilter& filter, RowOf row) {
  std::string rows;
  for (const std::string& file : files) {
    ForEachRecord(file, [&](const LearnRecord& record, std::size_t) {
      if (filter.Accepts(record)) rows += row(record) + '\n';
    });
  }
  return rows;
}

// Prints what is wrong with the records of a file and returns how many are.
std::size_t VerifyFile(const std::string& file) {
  std::size_t problems = 0;
  std::size_t records = 0;
  RecordSet seen;
  const auto tell = [&](const std::string& text) {
    if (++problems <= kProblemsShown) std::cout << text << '\n';
  };
  const std::string content = ReadWholeFile(file);
  const Damage damage = ReadRecords(content, [&](const LearnRecord& record, std::size_t number) {
    records = number;
    std::string problem = RecordProblem(record);
    if (problem.empty() && seen.Find(record) != nullptr) problem = "its position was there before";
    seen.Add(record);
    if (!problem.empty()) tell(file + ": record " + std::to_string(number) + ": " + problem);
  });
  if (damage) tell(DamageText(file, damage));
  if (problems > kProblemsShown) {
    std::cout << file << ": " << problems - kProblemsShown << " more\n";
  }
  std::cout << file << ": " << records << " records, " << problems << " problems\n";
  return problems;
}

void Verify(const std::vector<std::string>& files) {
  std::size_t problems = 0;
  for (const std::string& file : files) problems += VerifyFile(file);
  std::cout.flush();
  if (problems > 0) throw CheckFailed("the learn files have problems");
}

CLI::App* Subcommand(CLI::App& group, const char* name, const char* what, const char* example) {
  CLI::App* command = group.add_subcommand(name, what);
  command->footer(std::string("Example:\n  ") + example);
  return command;
}

void NeedFiles(CLI::App& command, std::vector<std::string>& files) {
  command.add_option("FILE", files, "learn files")->required();
}

void AddStats(CLI::App& group) {
  CLI::App* command = Subcommand(group, "stats", "Counts records: book, learned, by depth",
                                 "tarv learn stats tarvyle.lrn");
  auto files = std::make_shared<std::vector<std::string>>();
  NeedFiles(*command, *files);
  command->callback([files] { PrintStatistics(*files); });
}

void AddFilter(CLI::App& command, RecordFilter& filter) {
  command.add_flag("--book", filter.book, "only positions of the book");
  command.add_flag("--learned", filter.learned, "only positions with a search result");
  command.add_option("--min-depth", filter.min_depth, "only results of at least this depth")
      ->check(CLI::Range(0, kMaxIteration));
}

struct ListOptions {
  std::vector<std::string> files;
  RecordFilter filter;
  std::string format = "epd";
  std::string output;
};

void AddList(CLI::App& group) {
  CLI::App* command =
      Subcommand(group, "list", "Prints records as EPD: acd is the depth, ce the score",
                 "tarv learn list --learned --min-depth 10 tarvyle.lrn");
  auto options = std::make_shared<ListOptions>();
  NeedFiles(*command, options->files);
  AddFilter(*command, options->filter);
  command->callback([options] { std::cout << Rows(options->files, options->filter, RecordAsEpd); });
}

void Export(const ListOptions& options) {
  std::string rows = options.format == "csv" ? CsvHead() + "\n" : "";
  const RowOf row = options.format == "csv"    ? RecordAsCsv
                    : options.format == "json" ? RecordAsJson
                                               : RecordAsEpd;
  rows += Rows(options.files, options.filter, row);
  if (options.output.empty()) {
    std::cout << rows;
  } else {
    WriteFileAtomically(options.output, rows);
  }
}

void AddExport(CLI::App& group) {
  CLI::App* command =
      Subcommand(group, "export", "Writes records for other programs: EPD, CSV or lines of JSON",
                 "tarv learn export --format csv --output learned.csv tarvyle.lrn");
  auto options = std::make_shared<ListOptions>();
  NeedFiles(*command, options->files);
  AddFilter(*command, options->filter);
  command->add_option("--format", options->format, "epd (default), csv or json")
      ->check(CLI::IsMember({"epd", "csv", "json"}));
  command->add_option("-o,--output", options->output, "file to write (default: standard output)");
  command->callback([options] { Export(*options); });
}

void AddVerify(CLI::App& group) {
  CLI::App* command =
      Subcommand(group, "verify", "Checks every record; status 1 when one has a problem",
                 "tarv learn verify tarvyle.lrn");
  auto files = std::make_shared<std::vector<std::string>>();
  NeedFiles(*command, *files);
  command->callback([files] { Verify(*files); });
}

void AddMerge(CLI::App& group) {
  CLI::App* command = Subcommand(
      group, "merge", "Brings learn files together: the deepest search wins, book flags are kept",
      "tarv learn merge here.lrn there.lrn --output tarvyle.lrn");
  auto options = std::make_shared<MergeOptions>();
  NeedFiles(*command, options->files);
  command->add_option("-o,--output", options->output, "learn file to write")->required();
  command->add_flag("--force", options->force, "replace an output that is none of the files");
  command->add_flag("--salvage", options->salvage,
                    "take the records before the damage of a damaged file");
  command->callback([options] { MergeLearnFiles(*options); });
}

struct AddBookOptions {
  std::string book;
  std::string file;
  bool replace = false;
};

void AddAddBook(CLI::App& group) {
  CLI::App* command = Subcommand(group, "add-book", "Adds the positions of a book to a learn file",
                                 "tarv learn add-book tarvyle.bk tarvyle.lrn");
  auto options = std::make_shared<AddBookOptions>();
  command->add_option("BOOK", options->book, "book file")->required();
  command->add_option("LEARN", options->file, "learn file to add it to")->required();
  command->add_flag("--replace", options->replace,
                    "positions that only the old book had are no book positions any more");
  command->callback(
      [options] { AddBookToLearnFile(options->book, options->file, options->replace); });
}

void AddAnalyse(CLI::App& group) {
  CLI::App* command =
      Subcommand(group, "analyse", "Searches positions and records the results in a learn file",
                 "tarv learn analyse positions.epd --seconds 10 --output positions.lrn");
  auto options = std::make_shared<AnalyseOptions>();
  command->add_option("FILE", options->file, "EPD lines, - for standard input")->required();
  CLI::Option* seconds =
      command->add_option("--seconds", options->bounds.seconds, "seconds for each position")
          ->check(CLI::Range(0.01, 100000.0));
  CLI::Option* depth = command->add_option("--depth", options->bounds.depth, "deepest iteration")
                           ->check(CLI::Range(2, kMaxIteration));
  command->add_option("-o,--output", options->output,
                      "learn file to add to (default: FILE with the ending .lrn)");
  command->callback([options, seconds, depth] {
    if (seconds->empty() && depth->empty()) throw CLI::RequiredError("--seconds or --depth");
    Analyse(*options);
  });
}

}  // namespace

void AddLearn(CLI::App& app) {
  CLI::App* group = app.add_subcommand("learn", "Looks into learn files and brings them together");
  group->require_subcommand(1);
  group->footer("Example:\n  tarv learn stats tarvyle.lrn");
  AddStats(*group);
  AddList(*group);
  AddVerify(*group);
  AddMerge(*group);
  AddExport(*group);
  AddAddBook(*group);
  AddAnalyse(*group);
}

}  // namespace tarvyle::tools
