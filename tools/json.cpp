#include "tools/json.h"

#include <cstdio>

namespace tarvyle::tools {

std::string JsonText(std::string_view text) {
  std::string quoted = "\"";
  for (const char letter : text) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < 0x20 || byte == 0x7F || letter == '"' || letter == '\\' || letter == '<') {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", byte);
      quoted += escape;
    } else {
      quoted += letter;
    }
  }
  return quoted + '"';
}

}  // namespace tarvyle::tools
