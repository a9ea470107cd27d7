#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "position/text.h"
#include "position/types.h"

// Move lines for the tests of pv/: no position is needed, a move is what its text says.

namespace tarvyle::support {

// A move that prints as `text` (two squares and perhaps a promotion letter).
inline Move MoveOf(const std::string& text) {
  const Move move = MoveWord(Queen, StrToSq(text), StrToSq(text.substr(2)));
  return text.size() > 4 ? move | kPromotion : move;
}

// A line from texts separated by blanks, with its terminating 0.
inline std::vector<Move> LineOf(const std::string& moves) {
  std::istringstream in(moves);
  std::vector<Move> line;
  for (std::string text; in >> text;) line.push_back(MoveOf(text));
  line.push_back(0);
  return line;
}

// A move of its own for each number.
inline Move NumberedMove(int number) { return static_cast<Move>(number + 1); }

}  // namespace tarvyle::support
