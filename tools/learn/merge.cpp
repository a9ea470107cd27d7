#include "tools/learn/merge.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "book/learnrecord.h"
#include "host/engine.h"
#include "tools/book/bookreader.h"
#include "tools/files.h"
#include "tools/learn/recordset.h"

namespace tarvyle::tools {

namespace {

std::size_t BookPositions(const RecordSet& set) {
  const auto& records = set.Records();
  return static_cast<std::size_t>(std::count_if(
      records.begin(), records.end(), [](const LearnRecord& record) { return record.book != 0; }));
}

void RefuseForeignOutput(const MergeOptions& options) {
  if (options.force || !FileExists(options.output)) return;
  for (const std::string& file : options.files) {
    if (SameFile(file, options.output)) return;
  }
  throw std::runtime_error(options.output +
                           " is there already: name it among the files to merge, or give --force");
}

}  // namespace

void MergeLearnFiles(const MergeOptions& options) {
  RefuseForeignOutput(options);
  const HeldFile held(options.output);
  RecordSet all;
  for (const std::string& file : options.files) all.AddFile(file, options.salvage);
  ReplaceHeldFile(options.output, all.FileContent());
  std::printf("%s: %zu records, %zu of the book, from %zu files\n", options.output.c_str(),
              all.Records().size(), BookPositions(all), options.files.size());
}

void AddBookToLearnFile(const std::string& book, const std::string& file, bool replace) {
  (void)ReadSoundBook(book);
  const HeldFile held(file);
  RecordSet all;
  all.AddFile(file);
  const std::size_t before = all.Records().size();
  const std::size_t dropped = replace ? all.DropBook() : 0;
  if (!FreshProcess(book)) throw std::runtime_error("cannot read " + book);
  all.AddEngineTable();
  ReplaceHeldFile(file, all.FileContent());
  std::printf("%s: %zu records before, %zu now, %zu of the book", file.c_str(), before,
              all.Records().size(), BookPositions(all));
  std::printf(replace ? " (%zu before)\n" : "\n", dropped);
}

}  // namespace tarvyle::tools
