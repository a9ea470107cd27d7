#pragma once

#include <string>

#include "host/boundedsearch.h"

namespace tarvyle::tools {

struct SuiteOptions {
  std::string file;  // of EPD lines with bm or am; "-": standard input
  SearchBounds bounds;
  int expected = 0;  // fewer solved positions are a failure
};

// Searches every position, prints a row for each and the number solved: the move found is one of
// "bm" and none of "am". Throws std::runtime_error, before any search, for a line without either
// or with a move that is not legal there; CheckFailed when fewer are solved than expected.
void RunSuite(const SuiteOptions& options);

}  // namespace tarvyle::tools
