#pragma once

#include <string_view>

namespace tarvyle::tools {

// Whether a text is a code of the Encyclopaedia of Chess Openings, A00 to E99.
inline bool IsEcoCode(std::string_view text) {
  return text.size() == 3 && text[0] >= 'A' && text[0] <= 'E' &&
         text.find_first_not_of("0123456789", 1) == std::string_view::npos;
}

}  // namespace tarvyle::tools
