#pragma once

#include <string>
#include <string_view>

// What the lines of a book file look like.

namespace tarvyle {

// Characters of a line, its end included; what is longer is read as further lines.
inline constexpr int kBookLineLength = 65533;

// What stands between the moves.
inline constexpr const char* kBetweenBookMoves = " !?#,;\r\n";

// Cuts the next line, with its end, off the front of `content` and returns it; "" at the end of the
// file. A zero byte ends what is read of the line.
std::string NextBookLine(std::string_view& content);

// Whether a line holds moves: it is neither empty nor a comment.
bool IsOpeningLine(const char* line);

}  // namespace tarvyle
