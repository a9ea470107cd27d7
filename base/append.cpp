#include "base/append.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tarvyle {

namespace {

constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes away

bool IsPlainFile(int file) {
  struct stat status {};
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

int OpenToAppend(const std::string& path) {
  return open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, kNewFileMode);
}

bool LockFile(int file) { return flock(file, LOCK_EX | LOCK_NB) == 0; }

bool AppendAtOnce(int file, std::string_view bytes) {
  const ssize_t written = write(file, bytes.data(), bytes.size());
  if (written == static_cast<ssize_t>(bytes.size())) return true;
  if (written >= 0) errno = ENOSPC;
  return false;
}

bool AppendOnDisk(int file, std::size_t size, std::string_view bytes) {
  if (AppendAtOnce(file, bytes) && fdatasync(file) == 0) return true;
  const int reason = errno;
  (void)!ftruncate(file, static_cast<off_t>(size));
  errno = reason;
  return false;
}

bool AppendToFile(const std::string& path, std::string_view bytes) {
  const int file = OpenToAppend(path);
  if (file < 0) return false;
  const bool written = IsPlainFile(file) && AppendAtOnce(file, bytes);
  return close(file) == 0 && written;
}

}  // namespace tarvyle
