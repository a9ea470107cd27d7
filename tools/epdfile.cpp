#include "tools/epdfile.h"

#include <iostream>
#include <iterator>
#include <sstream>  // IWYU pragma: keep
#include <stdexcept>

#include "host/positiontext.h"
#include "tools/files.h"

namespace tarvyle::tools {

namespace {

std::string ContentOf(const std::string& path) {
  if (path != "-") return ReadWholeFile(path);
  return {std::istreambuf_iterator<char>(std::cin), {}};
}

std::string Complaint(std::string text, std::size_t number, const std::string& refusal,
                      const std::string& line) {
  text += ": line " + std::to_string(number);
  return text.append(": ").append(refusal).append(": ").append(line);
}

}  // namespace

std::vector<EpdLine> ReadEpdFile(const std::string& path) {
  std::istringstream content(ContentOf(path));
  std::vector<EpdLine> lines;
  std::string text;
  for (std::size_t number = 1; std::getline(content, text); ++number) {
    if (!text.empty() && text.back() == '\r') text.pop_back();
    if (text.find_first_not_of(" \t") == std::string::npos || text.front() == '#') continue;
    const std::string refusal = SetUpText(text);
    if (!refusal.empty()) {
      throw std::runtime_error(Complaint(path, number, refusal, text));
    }
    lines.push_back({text, number});
  }
  return lines;
}

}  // namespace tarvyle::tools
