#pragma once

#include <string>

namespace tarvyle::tools {

struct FromPolyglotOptions {
  std::string book;
  std::string output;  // "-": standard output
  int max_depth = 40;  // half-moves of a line
  int max_lines = 100000;
};

// Writes the moves of a Polyglot book that can be reached from the start position as lines of an
// opening book. A line ends where another one goes on, so there are never more lines than entries.
// Moves without weight, which are not to be played, are left out. What the bounds leave out is
// told in the first line of the output and, unless that went to standard output, printed. Throws
// std::runtime_error when the book cannot be read or has no move for the start position.
void BookFromPolyglot(const FromPolyglotOptions& options);

}  // namespace tarvyle::tools
