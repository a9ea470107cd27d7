#include "tools/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>  // IWYU pragma: keep
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "base/file.h"

namespace tarvyle::tools {

namespace {

// Closes the descriptor at the end of its life.
struct Descriptor {
  explicit Descriptor(int opened) : number(opened) {}
  ~Descriptor() {
    if (number >= 0) close(number);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int number;
};

void WriteAll(int file, std::string_view content, const std::string& path) {
  while (!content.empty()) {
    const ssize_t written = write(file, content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) FailOn("cannot write", path, errno);
    content.remove_prefix(static_cast<std::size_t>(written));
  }
}

// The file that a chain of links ends at.
std::string FollowLinks(const std::string& path) {
  std::error_code error;
  const auto target = std::filesystem::weakly_canonical(path, error);
  return error ? path : target.string();
}

std::string FolderOf(const std::string& path) {
  const auto folder = std::filesystem::path(path).parent_path();
  return folder.empty() ? "." : folder.string();
}

void WriteTemporary(const std::string& temporary, const std::string& path,
                    std::string_view content) {
  const Descriptor file(
      open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode));
  if (file.number < 0) FailOn("cannot write", path, errno);
  struct stat old {};
  if (stat(path.c_str(), &old) == 0 && fchmod(file.number, old.st_mode & 07777) != 0) {
    FailOn("cannot write", path, errno);
  }
  WriteAll(file.number, content, path);
  if (fsync(file.number) != 0) FailOn("cannot write", path, errno);
}

// Best effort: the rename itself has succeeded already.
void SyncFolder(const std::string& folder) {
  const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.number >= 0) (void)fsync(opened.number);
}

}  // namespace

std::string ReadWholeFile(const std::string& path) {
  // Asked before it is opened: opening a pipe would wait for its other end.
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) FailOn("cannot read", path, errno);
  if (!S_ISREG(status.st_mode)) throw std::runtime_error("cannot read " + path + ": no plain file");
  std::string content(static_cast<std::size_t>(status.st_size), '\0');
  errno = 0;  // an end that comes early leaves it as it is
  std::ifstream file(path, std::ios::binary);
  if (file && file.read(content.data(), status.st_size)) return content;
  if (errno != 0) FailOn("cannot read", path, errno);
  throw std::runtime_error("cannot read " + path + ": it is shorter than its size says");
}

void WriteFileAtomically(const std::string& path, std::string_view content) {
  const std::string target = FollowLinks(path);
  struct stat status {};
  if (stat(target.c_str(), &status) == 0) {
    if (!S_ISREG(status.st_mode)) {
      throw std::runtime_error("cannot write " + path + ": no plain file");
    }
    if (access(target.c_str(), W_OK) != 0) FailOn("cannot write", path, errno);
  }
  const std::string temporary = target + ".tmp" + std::to_string(getpid());
  unlink(temporary.c_str());
  try {
    WriteTemporary(temporary, target, content);
    if (std::rename(temporary.c_str(), target.c_str()) != 0) FailOn("cannot write", path, errno);
  } catch (...) {
    unlink(temporary.c_str());
    throw;
  }
  SyncFolder(FolderOf(target));
}

void WriteOutput(const std::string& path, std::string_view content) {
  if (path.empty()) {
    std::cout << content;
  } else {
    WriteFileAtomically(path, content);
  }
}

void FailOn(const std::string& what, const std::string& path, int error) {
  throw std::runtime_error(what + " " + path + ": " + std::strerror(error));
}

bool FileExists(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) == 0;
}

bool SameFile(const std::string& first, const std::string& second) {
  std::error_code error;
  return std::filesystem::equivalent(first, second, error) && !error;
}

}  // namespace tarvyle::tools
