#pragma once

#include <string_view>

#include "base/token.h"

namespace tarvyle::uci {

inline constexpr std::string_view kBlanks = " \t\r";  // a line may end in a carriage return

// Cuts the next word off the front of `rest`; "" when there is none.
inline std::string_view NextWord(std::string_view& rest) { return NextToken(rest, kBlanks); }

}  // namespace tarvyle::uci
