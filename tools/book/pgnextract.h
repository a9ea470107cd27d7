#pragma once

#include <string>
#include <vector>

namespace tarvyle::tools {

// What a book needs of a game.
struct PgnGame {
  std::string eco;                 // "C65", or ""
  std::string opening;             // "Ruy Lopez, Berlin defence", or ""
  std::vector<std::string> moves;  // in coordinate notation
};

// The games of PGN files that begin in the start position, as the program pgn-extract hands them
// out; it complains of wrong ones on standard error. Throws std::runtime_error when it is not
// installed or a file cannot be read.
std::vector<PgnGame> ExtractGames(const std::vector<std::string>& files);

}  // namespace tarvyle::tools
