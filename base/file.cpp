#include "base/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <new>
#include <stdexcept>

namespace tarvyle {

namespace {

constexpr std::size_t kMostAtOnce = std::size_t{1} << 24;

bool NothingIsThere(int error) { return error == ENOENT || error == ENOTDIR; }

FileState NotOpened() {
  return NothingIsThere(errno) ? FileState::kMissing : FileState::kUnreadable;
}

// Grows `content` to `size` bytes, or to fewer when the file ends before. False, with the reason in
// `errno`, when reading fails.
bool ReadUpTo(int file, std::size_t size, std::string& content) {
  content.resize(size);
  std::size_t filled = 0;
  while (filled < size) {
    const ssize_t count = read(file, content.data() + filled, std::min(size - filled, kMostAtOnce));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  content.resize(filled);
  return true;
}

bool ReadWithinMemory(int file, std::size_t size, std::string& content) {
  try {
    return ReadUpTo(file, size, content);
  } catch (const std::bad_alloc&) {
    errno = ENOMEM;
  } catch (const std::length_error&) {
    errno = ENOMEM;
  }
  return false;
}

}  // namespace

FileState ReadFile(const char* path, std::string& content) {
  content.clear();
  // Asked before it is opened: opening a pipe would wait for its other end.
  struct stat status {};
  if (stat(path, &status) != 0) return NotOpened();
  if (!S_ISREG(status.st_mode)) return FileState::kMissing;
  const int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return NotOpened();
  const bool read = ReadWithinMemory(file, static_cast<std::size_t>(status.st_size), content);
  const int reason = errno;
  close(file);
  if (read) return FileState::kRead;
  content = {};
  errno = reason;
  return FileState::kUnreadable;
}

}  // namespace tarvyle
