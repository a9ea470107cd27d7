#pragma once

#include <string>

namespace tarvyle::tools {

// Options of `tarv search`.
struct SearchOptions {
  std::string file;  // of lines "root, tab, style, tab, depth"; "" or "-": standard input
  std::string book;  // fills the learn table whenever it is reset, "" for none
  unsigned seed = 1;
  bool chain = false;    // reset at the beginning and at a line "# new process" alone
  bool pv_tree = false;  // prints the tree of principal variations after each search
};

// Answers each line with iterations, best move and thinking lines. Throws std::runtime_error.
void RunSearches(const SearchOptions& options);

}  // namespace tarvyle::tools
