#pragma once

#include <string>

namespace tarvyle::tools {

struct ToPolyglotOptions {
  std::string book;
  std::string output;  // "-": standard output
};

// Writes the moves of a book's lines as a Polyglot book; the weight of a move is the number of
// lines that play it in its position. Prints how much there is of it, unless that went to standard
// output. Throws std::runtime_error when the book has an error or no line.
void BookToPolyglot(const ToPolyglotOptions& options);

}  // namespace tarvyle::tools
