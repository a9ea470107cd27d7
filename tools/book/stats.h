#pragma once

#include <string>

namespace tarvyle::tools {

struct BookStatsOptions {
  std::string file;
  bool openings = false;  // a row for each heading as well
  bool markdown = false;  // tables of a document
};

// Prints the figures of a book: lines, half-moves, positions, transpositions, and the coverage by
// ECO volume and opening, taken from its headings. Throws std::runtime_error.
void PrintBookStats(const BookStatsOptions& options);

}  // namespace tarvyle::tools
