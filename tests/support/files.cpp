#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

namespace tarvyle::support {

void WriteFile(const std::string& path, std::string_view content) {
  std::ofstream file(path, std::ios::binary);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  EXPECT_TRUE(file.flush().good()) << path;
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

TemporaryFolder::TemporaryFolder() {
  std::string name = testing::TempDir() + "engine_test_XXXXXX";
  EXPECT_NE(mkdtemp(name.data()), nullptr);
  folder_ = name;
}

TemporaryFolder::~TemporaryFolder() { std::filesystem::remove_all(folder_); }

std::string TemporaryFolder::Write(const std::string& name, std::string_view content) const {
  WriteFile(Path(name), content);
  return Path(name);
}

}  // namespace tarvyle::support
