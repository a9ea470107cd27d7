#include "tools/book/polyglotoutput.h"

#include <cstdio>
#include <stdexcept>

#include "tools/files.h"

namespace tarvyle::tools {

void RefuseInputAsOutput(const std::string& input, const std::string& output) {
  if (SameFile(input, output)) {
    throw std::runtime_error(output + " is the book that is read: name another output");
  }
}

void WriteBookOutput(const std::string& output, std::string_view content,
                     const std::string& summary) {
  const bool to_file = output != "-";
  WriteOutput(to_file ? output : "", content);
  if (to_file) std::printf("%s: %s\n", output.c_str(), summary.c_str());
}

}  // namespace tarvyle::tools
