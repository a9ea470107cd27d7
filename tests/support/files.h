#pragma once

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <string_view>

// Files of the tests.

namespace tarvyle::support {

// Writes a whole file, in place of what stood there; a failure fails the test.
void WriteFile(const std::string& path, std::string_view content);

// What a file holds, or nothing when it is not there.
std::string ReadFile(const std::string& path);

// Runs something with a limit on the size of written files, the signal ignored as in the programs.
template <typename Action>
void WithFileSizeLimit(rlim_t bytes, Action action) {
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit limit = before;
  limit.rlim_cur = bytes;
  setrlimit(RLIMIT_FSIZE, &limit);
  action();
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
}

// A folder of its own for each test, gone afterwards.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // The folder itself, with a slash at its end, and a file in it.
  std::string Name() const { return folder_.string() + "/"; }
  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  // Writes a file and returns its path.
  std::string Write(const std::string& name, std::string_view content) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace tarvyle::support
