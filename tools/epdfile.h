#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tarvyle::tools {

// A line of an EPD file that holds a position.
struct EpdLine {
  std::string text;
  std::size_t number;  // in the file, from 1
};

// The lines of a file ("-": standard input) but empty ones and those that begin with '#', every one
// with a position that SetUpText accepts. Throws std::runtime_error that names file and line
// otherwise. Changes the current position.
std::vector<EpdLine> ReadEpdFile(const std::string& path);

}  // namespace tarvyle::tools
