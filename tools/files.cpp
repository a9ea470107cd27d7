#include "tools/files.h"

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

#include "base/append.h"
#include "base/replace.h"

namespace tarvyle::tools {

namespace {

// In one piece: nothing is gained by copying it into a buffer first.
bool WriteAll(std::FILE* file, std::string_view content) {
  std::setbuf(file, nullptr);
  return std::fwrite(content.data(), 1, content.size(), file) == content.size();
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

HeldFile::HeldFile(const std::string& path) : file_(HoldFile(path)) {
  if (file_ < 0 && errno == EWOULDBLOCK) FailOnHeld(path);
}

HeldFile::~HeldFile() {
  if (file_ >= 0) close(file_);
}

void FailOnHeld(const std::string& path) {
  throw std::runtime_error("another process writes " + path +
                           "; give every process an output of its own and merge them at the end");
}

void WriteFileAtomically(const std::string& path, std::string_view content) {
  const HeldFile held(path);
  ReplaceHeldFile(path, content);
}

void ReplaceHeldFile(const std::string& path, std::string_view content) {
  const std::string target = BehindLinks(path);
  if (!TakesOutput(target)) {
    if (errno != 0) FailOn("cannot write", path, errno);
    throw std::runtime_error("cannot write " + path + ": no plain file");
  }
  const std::string temporary = target + ".tmp" + std::to_string(getpid());
  unlink(temporary.c_str());
  std::FILE* file = CreateNewFile(temporary);
  if (file == nullptr) FailOn("cannot write", target, errno);
  const bool written = CopyMode(target, file) && WriteAll(file, content);
  if (!FinishOrRemove(file, written, temporary)) FailOn("cannot write", target, errno);
  if (!MoveIntoPlace(temporary, target)) FailOn("cannot write", path, errno);
  SyncFolderOf(target);
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
