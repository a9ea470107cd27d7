#pragma once

#include <string>
#include <vector>

// What `tarv learn` prints of the records of learn files. Each of these throws std::runtime_error
// for a file that cannot be read or is damaged, before it prints anything of that file.

namespace tarvyle::tools {

// Which records are meant; all by default.
struct RecordFilter {
  bool book = false;     // only positions of the book
  bool learned = false;  // only positions with a search result
  int min_depth = 0;     // only results of at least that depth
};

struct ListOptions {
  std::vector<std::string> files;
  RecordFilter filter;
  std::string format = "epd";  // or "csv", with a row of names, or "json", an object a line
  std::string output;          // "": standard output
};

// Writes a row for each record that the filter takes. As EPD it is the position, then "acd" (depth)
// and "ce" (centipawns for the side to move, mates as EPD counts them) when it was searched, and a
// comment when it is of the book.
void ListRecords(const ListOptions& options);

// Prints a table of counts for each file and, of several, for all together.
void PrintStatistics(const std::vector<std::string>& files);

}  // namespace tarvyle::tools
