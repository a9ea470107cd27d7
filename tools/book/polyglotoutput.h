#pragma once

#include <string>
#include <string_view>

// What both directions between the two formats of books do with their outputs.

namespace tarvyle::tools {

// Throws std::runtime_error when both names are those of one file.
void RefuseInputAsOutput(const std::string& input, const std::string& output);

// Writes the content, "-" standing for standard output; otherwise prints "<output>: <summary>".
void WriteBookOutput(const std::string& output, std::string_view content,
                     const std::string& summary);

}  // namespace tarvyle::tools
