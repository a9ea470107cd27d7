#pragma once

#include <string>
#include <vector>

namespace tarvyle::tools {

struct FromPgnOptions {
  std::vector<std::string> files;
  int min_games = 2;
  int max_depth = 20;
  std::string output;  // "": standard output
};

// Makes a book of the games in PGN files, which the program pgn-extract reads: each game up to the
// last position that `min_games` of them reach by any order of moves, and up to `max_depth`
// half-moves; each line once, sorted, under comments that name the opening where the games do.
// Throws std::runtime_error when pgn-extract is missing, a file cannot be read, or nothing is left.
void BookFromPgn(const FromPgnOptions& options);

}  // namespace tarvyle::tools
