#pragma once

#include <string_view>

// Cutting a text into tokens: configuration lines, commands, position texts.

namespace tarvyle {

// Cuts the next run of characters outside `delimiters` from the front of `rest` and returns it;
// `rest` then starts behind the one delimiter that ended the token. Returns an empty view, and
// leaves `rest` empty, when no token is left.
std::string_view NextToken(std::string_view& rest, std::string_view delimiters);

}  // namespace tarvyle
