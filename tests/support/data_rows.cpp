#include "tests/support/data_rows.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>

namespace tarvyle::support {

std::string DataFile(std::string_view name) { return TESTS_DATA_DIR "/" + std::string(name); }

std::vector<std::string> DataLines(std::string_view name) {
  std::ifstream file(DataFile(name));
  EXPECT_TRUE(file.is_open()) << name;
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> Fields(std::string_view line) {
  std::vector<std::string> fields;
  for (std::size_t begin = 0, end = 0; end != std::string_view::npos; begin = end + 1) {
    end = line.find('\t', begin);
    fields.emplace_back(line.substr(begin, end - begin));
  }
  return fields;
}

std::vector<std::vector<std::string>> DataRows(std::string_view name) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : DataLines(name)) {
    if (!line.empty() && line[0] != '#') rows.push_back(Fields(line));
  }
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}

}  // namespace tarvyle::support
