#include "tools/learn/analyse.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "book/learn.h"
#include "host/positiontext.h"
#include "host/scoretext.h"
#include "position/record.h"
#include "tools/epdfile.h"
#include "tools/learn/recordlog.h"
#include "tools/learn/recordset.h"
#include "tools/progress.h"

namespace tarvyle::tools {

namespace {

struct Counts {
  std::size_t searched = 0;
  std::size_t known = 0;
  std::size_t without_move = 0;
};

std::string OutputOf(const AnalyseOptions& options) {
  if (!options.output.empty()) return options.output;
  if (options.file == "-") throw std::runtime_error("--output is needed with standard input");
  return std::filesystem::path(options.file).replace_extension(".lrn").string();
}

// The record that the current position would have, without a result; it points into `text`.
LearnRecord EmptyRecord(const std::string& text) {
  LearnRecord record;
  record.key_lo = g.key.low;
  record.key_hi = g.key.high;
  record.side = static_cast<std::int8_t>(g.side);
  record.text = text;
  return record;
}

bool SearchedEnough(const LearnRecord* known, const SearchBounds& bounds) {
  if (known == nullptr || !known->Learned()) return false;
  return bounds.seconds > 0 || IsMateScore(known->score) || known->depth >= bounds.depth;
}

// Searches the position and writes its record. False when there was no move.
bool SearchAndRecord(const std::string& epd, const SearchBounds& bounds, RecordSet& known,
                     RecordLog& log) {
  if (SearchPosition(epd, bounds).move == 0) return false;
  LearnNode& learned = *FindCurrentNode();
  if (const LearnRecord* older = known.Find(EmptyRecord(CurrentText()))) {
    learned.book = older->book;
    learned.kind = older->kind;
  }
  std::string bytes = RecordOf(learned);
  log.Append(bytes);
  (void)known.AddContent(std::move(bytes));
  return true;
}

}  // namespace

void Analyse(const AnalyseOptions& options) {
  const std::string output = OutputOf(options);
  const std::vector<EpdLine> lines = ReadEpdFile(options.file);
  RecordLog log(output);
  RecordSet known;
  known.AddFile(output);
  Counts counts;
  Progress progress(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    progress.Show(i, counts.known);
    (void)SetUpText(lines[i].text);
    const std::string text = CurrentText();
    if (SearchedEnough(known.Find(EmptyRecord(text)), options.bounds)) {
      ++counts.known;
    } else if (SearchAndRecord(lines[i].text, options.bounds, known, log)) {
      ++counts.searched;
    } else {
      ++counts.without_move;
    }
  }
  progress.Clear();
  log.Close(known);
  std::printf(
      "%s: %zu positions: %zu searched, %zu known before, %zu without a move; %zu records\n",
      output.c_str(), lines.size(), counts.searched, counts.known, counts.without_move,
      known.Records().size());
}

}  // namespace tarvyle::tools
