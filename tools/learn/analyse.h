#pragma once

#include <string>

#include "host/boundedsearch.h"

namespace tarvyle::tools {

struct AnalyseOptions {
  std::string file;    // of EPD lines; "-": standard input
  std::string output;  // learn file; "": `file` with the ending .lrn
  SearchBounds bounds;
};

// Searches every position of the file and adds its record to the output, which is whole on disk
// after each. Positions that the output already holds with a result (with a depth bound alone: one
// deep enough) are left out, so an interrupted run goes on where it stopped. Prints a summary.
// Throws std::runtime_error for a refused position (before any search), for a damaged output, and
// while another process writes the same output.
void Analyse(const AnalyseOptions& options);

}  // namespace tarvyle::tools
