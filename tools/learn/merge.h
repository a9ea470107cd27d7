#pragma once

#include <string>
#include <vector>

namespace tarvyle::tools {

struct MergeOptions {
  std::vector<std::string> files;
  std::string output;
  bool force = false;    // replace an output that is none of the files
  bool salvage = false;  // of a damaged file take what stands before the damage
};

// Brings several learn files together into one: the deepest search of each position, the book flag
// of any. Prints what came together. Throws std::runtime_error, with everything as before.
void MergeLearnFiles(const MergeOptions& options);

// Adds the positions of a book file to a learn file: known ones become book positions and keep
// their search result. `replace` first takes the flag from all positions. Throws
// std::runtime_error, with the learn file as before, also when the book has an error.
void AddBookToLearnFile(const std::string& book, const std::string& file, bool replace);

}  // namespace tarvyle::tools
