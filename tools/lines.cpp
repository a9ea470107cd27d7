#include "tools/lines.h"

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <fstream>  // IWYU pragma: keep
#include <iostream>
#include <stdexcept>

#include "base/number.h"

namespace tarvyle::tools {

namespace {

// How many there will be is not known, so this is no bar as in progress.h.
void ShowProgress(long done) {
  if (isatty(STDERR_FILENO) != 0) std::fprintf(stderr, "\r%ld lines", done);
}

void EndProgress() {
  if (isatty(STDERR_FILENO) != 0) std::fputs("\r\033[K", stderr);
}

void AnswerLine(const std::string& line, long number,
                const std::function<std::string(std::string_view)>& answer,
                const std::function<void(std::string_view)>& on_comment) {
  if (line.empty() || line.front() == '#') {
    if (on_comment) on_comment(line);
    std::cout << line << '\n';
    return;
  }
  try {
    std::cout << answer(line) << '\n';
  } catch (const std::exception& error) {
    throw std::runtime_error("line " + std::to_string(number) + ": " + error.what());
  }
}

}  // namespace

std::vector<std::string_view> Fields(std::string_view line) {
  std::vector<std::string_view> fields;
  for (std::size_t at = 0; at != std::string_view::npos;) {
    const std::size_t tab = line.find('\t', at);
    fields.push_back(line.substr(at, tab == std::string_view::npos ? tab : tab - at));
    at = tab == std::string_view::npos ? tab : tab + 1;
  }
  return fields;
}

int DepthOf(std::string_view field, int least, int most) {
  int depth = 0;
  if (!ReadInteger(field, depth) || depth < least || depth > most) {
    throw std::runtime_error("depth " + std::to_string(least) + ".." + std::to_string(most) +
                             " expected, not \"" + std::string(field) + "\"");
  }
  return depth;
}

void AnswerLines(const std::string& file,
                 const std::function<std::string(std::string_view)>& answer,
                 const std::function<void(std::string_view)>& on_comment) {
  const bool from_input = file.empty() || file == "-";
  std::ifstream opened;
  if (!from_input) {
    opened.open(file);
    if (!opened) throw std::runtime_error("cannot open " + file);
  }
  std::istream& in = from_input ? std::cin : opened;
  std::string line;
  for (long number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    AnswerLine(line, number, answer, on_comment);
    ShowProgress(number);
  }
  EndProgress();
  if (in.bad()) throw std::runtime_error("cannot read " + file);
  std::cout.flush();
}

}  // namespace tarvyle::tools
