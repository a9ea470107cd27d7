#pragma once

#include <string>
#include <string_view>
#include <vector>

// The files of tests/data: lines whose fields tabs separate, and comments that begin with '#'.

namespace tarvyle::support {

// The path of a file.
std::string DataFile(std::string_view name);

// All lines of a file, comments too. A file that is not there fails the test.
std::vector<std::string> DataLines(std::string_view name);

// The fields of a line.
std::vector<std::string> Fields(std::string_view line);

// The fields of each line that is neither empty nor a comment. A file without any fails the test.
std::vector<std::vector<std::string>> DataRows(std::string_view name);

}  // namespace tarvyle::support
