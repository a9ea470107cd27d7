#include "tools/learn/listing.h"

#include <algorithm>
#include <cstdio>

#include "search/state.h"
#include "tools/json.h"
#include "tools/positiontext.h"

namespace tarvyle::tools {

namespace {

constexpr std::size_t kHistogramWidth = 40;

bool IsMate(int score) { return score > kMateWindow || score < -kMateWindow; }

std::string Row(const char* name, std::size_t count) {
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

}  // namespace

std::string RecordAsEpd(const LearnRecord& record) {
  std::string line = EpdFields(record.text);
  if (record.Learned()) {
    line += " acd " + std::to_string(record.depth) + ";";
    line += " ce " + std::to_string(EpdScore(record.score)) + ";";
  }
  if (record.book != 0) line += " c0 \"book\";";
  return line;
}

std::string CsvHead() { return "epd,depth,centipawns,score,book"; }

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

void LearnStatistics::Count(const LearnRecord& record) {
  ++records;
  bytes += record.bytes.size();
  if (record.book != 0) ++book;
  if (record.side == White) ++white;
  if (!record.Learned()) return;
  ++learned;
  if (record.book != 0) ++both;
  if (IsMate(record.score)) ++mates;
  const auto depth = static_cast<std::size_t>(record.depth);
  if (by_depth.size() <= depth) by_depth.resize(depth + 1);
  ++by_depth[depth];
}

std::string StatisticsText(const std::string& title, const LearnStatistics& statistics) {
  std::string text =
      title + "\n" + Row("records", statistics.records) + Row("bytes", statistics.bytes) +
      Row("of the book", statistics.book) + Row("learned", statistics.learned) +
      Row("of the book and learned", statistics.both) +
      Row("learned with a mate", statistics.mates) + Row("White to move", statistics.white) +
      Row("Black to move", statistics.records - statistics.white);
  const auto& by_depth = statistics.by_depth;
  const std::size_t most =
      by_depth.empty() ? 1 : *std::max_element(by_depth.begin(), by_depth.end());
  for (std::size_t depth = 0; depth < by_depth.size(); ++depth) {
    if (by_depth[depth] > 0) text += DepthRow(depth, by_depth[depth], most);
  }
  return text;
}

}  // namespace tarvyle::tools
