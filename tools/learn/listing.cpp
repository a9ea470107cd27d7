#include "tools/learn/listing.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <iostream>
#include <stdexcept>
#include <string_view>

#include "book/learnrecord.h"
#include "host/positiontext.h"
#include "host/scoretext.h"
#include "position/types.h"
#include "tools/files.h"
#include "tools/json.h"
#include "tools/learn/recordreader.h"

namespace tarvyle::tools {

namespace {

constexpr std::size_t kHistogramWidth = 40;

// Throws std::runtime_error when the file is damaged: before the first record is handed out.
void ForEachRecord(const std::string& file,
                   const std::function<void(const LearnRecord&)>& on_record) {
  const std::string content = ReadWholeFile(file);
  const Damage damage = ReadRecords(content, [](const LearnRecord&, std::size_t) {});
  if (damage) throw std::runtime_error(DamageText(file, damage));
  (void)ReadRecords(content, [&](const LearnRecord& record, std::size_t) { on_record(record); });
}

bool Accepts(const RecordFilter& filter, const LearnRecord& record) {
  return (!filter.book || record.book != 0) && (!filter.learned || record.Learned()) &&
         record.depth >= filter.min_depth;
}

// Counts of one file or of several.
struct Statistics {
  std::size_t records = 0;
  std::size_t book = 0;
  std::size_t learned = 0;
  std::size_t both = 0;
  std::size_t mates = 0;
  std::size_t white = 0;
  std::size_t bytes = 0;
  std::vector<std::size_t> by_depth;  // learned records, index = depth

  void Count(const LearnRecord& record);
};

std::string CountRow(const char* name, std::size_t count) {
  char text[96];
  std::snprintf(text, sizeof text, "  %-28s %10zu\n", name, count);
  return text;
}

std::string DepthRow(std::size_t depth, std::size_t count, std::size_t most) {
  char text[96];
  const std::size_t width = (count * kHistogramWidth + most - 1) / most;
  std::snprintf(text, sizeof text, "  depth %-3zu %10zu  %s\n", depth, count,
                std::string(width, '#').c_str());
  return text;
}

std::string RecordAsEpd(const LearnRecord& record) {
  std::string line = EpdFields(record.text);
  if (record.Learned()) {
    line += " acd " + std::to_string(record.depth) + ";";
    line += " ce " + std::to_string(EpdScore(record.score)) + ";";
  }
  if (record.book != 0) line += " c0 \"book\";";
  return line;
}

constexpr const char* kCsvHead = "epd,depth,centipawns,score,book\n";

std::string RecordAsCsv(const LearnRecord& record) {
  return EpdFields(record.text) + "," + std::to_string(record.depth) + "," +
         std::to_string(EpdScore(record.score)) + "," + std::to_string(record.score) + "," +
         std::to_string(record.book);
}

std::string RecordAsJson(const LearnRecord& record) {
  return "{\"epd\": " + JsonText(EpdFields(record.text)) +
         ", \"depth\": " + std::to_string(record.depth) +
         ", \"centipawns\": " + std::to_string(EpdScore(record.score)) +
         ", \"score\": " + std::to_string(record.score) +
         ", \"book\": " + (record.book != 0 ? "true" : "false") + "}";
}

void Statistics::Count(const LearnRecord& record) {
  ++records;
  bytes += record.bytes.size();
  if (record.book != 0) ++book;
  if (record.side == White) ++white;
  if (!record.Learned()) return;
  ++learned;
  if (record.book != 0) ++both;
  if (IsMateScore(record.score)) ++mates;
  const auto depth = static_cast<unsigned char>(record.depth);
  if (by_depth.size() <= depth) by_depth.resize(depth + 1);
  ++by_depth[depth];
}

std::string StatisticsText(const std::string& title, const Statistics& statistics) {
  std::string text =
      title + "\n" + CountRow("records", statistics.records) + CountRow("bytes", statistics.bytes) +
      CountRow("of the book", statistics.book) + CountRow("learned", statistics.learned) +
      CountRow("of the book and learned", statistics.both) +
      CountRow("learned with a mate", statistics.mates) +
      CountRow("White to move", statistics.white) +
      CountRow("Black to move", statistics.records - statistics.white);
  const auto& by_depth = statistics.by_depth;
  const std::size_t most =
      by_depth.empty() ? 1 : *std::max_element(by_depth.begin(), by_depth.end());
  for (std::size_t depth = 0; depth < by_depth.size(); ++depth) {
    if (by_depth[depth] > 0) text += DepthRow(depth, by_depth[depth], most);
  }
  return text;
}

using RecordWriter = std::string (*)(const LearnRecord&);

RecordWriter WriterNamed(const std::string& format) {
  if (format == "csv") return RecordAsCsv;
  return format == "json" ? RecordAsJson : RecordAsEpd;
}

}  // namespace

void ListRecords(const ListOptions& options) {
  const RecordWriter row = WriterNamed(options.format);
  std::string rows = options.format == "csv" ? kCsvHead : "";
  for (const std::string& file : options.files) {
    ForEachRecord(file, [&](const LearnRecord& record) {
      if (Accepts(options.filter, record)) rows += row(record) + '\n';
    });
  }
  WriteOutput(options.output, rows);
}

void PrintStatistics(const std::vector<std::string>& files) {
  Statistics total;
  for (const std::string& file : files) {
    Statistics statistics;
    ForEachRecord(file, [&](const LearnRecord& record) {
      statistics.Count(record);
      total.Count(record);
    });
    std::cout << StatisticsText(file, statistics);
  }
  if (files.size() > 1) std::cout << StatisticsText("all files", total);
}

}  // namespace tarvyle::tools
