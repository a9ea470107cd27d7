#pragma once

#include <cstring>

// What the lines of a book file look like.

namespace tarvyle {

// Bytes of the buffer of a line, its zero included; what is longer is read as further lines.
inline constexpr int kBookLineSize = 65535;

// What stands between the moves.
inline constexpr const char* kBetweenBookMoves = " !?#,;\r\n";

// Whether a line holds moves: it is neither empty nor a comment.
inline bool IsOpeningLine(const char* line) {
  line += std::strspn(line, " ");
  return *line != '\0' && *line != '\n' && *line != '#';
}

}  // namespace tarvyle
