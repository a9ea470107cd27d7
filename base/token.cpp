#include "base/token.h"

#include <cstddef>

namespace tarvyle {

std::string_view NextToken(std::string_view& rest, std::string_view delimiters) {
  const std::size_t first = rest.find_first_not_of(delimiters);
  if (first == std::string_view::npos) {
    rest = {};
    return {};
  }
  rest.remove_prefix(first);
  const std::size_t length = rest.find_first_of(delimiters);
  const std::string_view token = rest.substr(0, length);
  rest.remove_prefix(length == std::string_view::npos ? rest.size() : length + 1);
  return token;
}

}  // namespace tarvyle
