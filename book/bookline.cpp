#include "book/bookline.h"

#include <cstring>

namespace tarvyle {

std::string NextBookLine(std::string_view& content) {
  const std::string_view most = content.substr(0, kBookLineLength);
  const std::size_t end = most.find('\n');
  const std::string_view line = end == std::string_view::npos ? most : most.substr(0, end + 1);
  content.remove_prefix(line.size());
  return std::string(line);
}

bool IsOpeningLine(const char* line) {
  line += std::strspn(line, " ");
  return *line != '\0' && *line != '\n' && *line != '#';
}

}  // namespace tarvyle
