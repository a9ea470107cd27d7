#include "tests/support/data_rows.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fstream>

namespace tarvyle::support {

std::vector<std::vector<std::string>> DataRows(const std::string& name) {
  std::ifstream file(TESTS_DATA_DIR "/" + name);
  EXPECT_TRUE(file.is_open()) << name;
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::vector<std::string>& row = rows.emplace_back();
    for (std::size_t begin = 0, end = 0; end != std::string::npos; begin = end + 1) {
      end = line.find('\t', begin);
      row.push_back(line.substr(begin, end - begin));
    }
  }
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}

}  // namespace tarvyle::support
