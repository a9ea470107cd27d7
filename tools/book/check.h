#pragma once

#include <string>

namespace tarvyle::tools {

struct BookCheckOptions {
  std::string file;
  int depth = 0;              // of the search at the end of each line; 0: none
  double limit = 1.2;         // pawns that its score may be away from 0
  double gambit_limit = 2.5;  // the same, to the disadvantage of a side that plays a gambit
};

// Tells every move that the engine refuses, and lines that add nothing; with a depth also every
// line whose last position is not balanced. Lines under a heading that names a gambit by one side
// may leave that side behind by more; those are told as such. Throws CheckFailed when there is an
// error or an unbalanced line, std::runtime_error when the file cannot be read.
void CheckBook(const BookCheckOptions& options);

}  // namespace tarvyle::tools
