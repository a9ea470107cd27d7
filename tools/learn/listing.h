#pragma once

#include <string>
#include <vector>

#include "tools/learn/record.h"

// What `tarv learn` prints of the records of learn files.

namespace tarvyle::tools {

// Which records are meant; all by default.
struct RecordFilter {
  bool book = false;     // only positions of the book
  bool learned = false;  // only positions with a search result
  int min_depth = 0;     // only results of at least that depth

  bool Accepts(const LearnRecord& record) const {
    return (!book || record.book != 0) && (!learned || record.Learned()) &&
           record.depth >= min_depth;
  }
};

// A record as an EPD line: the position, then "acd" (depth) and "ce" (centipawns for the side to
// move, mates as EPD counts them) when it was searched, and a comment when it is of the book.
std::string RecordAsEpd(const LearnRecord& record);

// The same as a row of comma-separated values, and the row of their names.
std::string RecordAsCsv(const LearnRecord& record);
std::string CsvHead();

// And as one line of JSON.
std::string RecordAsJson(const LearnRecord& record);

// Counts of one file or of several.
struct LearnStatistics {
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

// A table of them for a person.
std::string StatisticsText(const std::string& title, const LearnStatistics& statistics);

}  // namespace tarvyle::tools
