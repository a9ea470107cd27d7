#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvyle::tools {

// The tab-separated fields of a line.
std::vector<std::string_view> Fields(std::string_view line);

// The depth that a field tells: a whole number from `least` to `most`. Throws std::runtime_error
// for any other text.
int DepthOf(std::string_view field, int least, int most);

// Reads a file ("" or "-": standard input) line by line. Lines that begin with '#', and empty ones,
// are copied to standard output, after `on_comment` has been told of them; every other one is
// answered with what `answer` returns for it. Shows how many lines are done on standard error when
// that is a terminal. Throws std::runtime_error when the file cannot be opened, and what `answer`
// throws with the line's number in front.
void AnswerLines(const std::string& file,
                 const std::function<std::string(std::string_view)>& answer,
                 const std::function<void(std::string_view)>& on_comment = {});

}  // namespace tarvyle::tools
