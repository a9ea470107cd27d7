#include "base/append.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tarvyle {

namespace {

constexpr int kTries = 100;        // to have a file that another process holds
constexpr unsigned kPause = 1000;  // microseconds between them

constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes away

// False with errno 0 for any other that there is.
bool IsPlainFile(int file) {
  struct stat status {};
  if (fstat(file, &status) != 0) return false;
  errno = 0;
  return S_ISREG(status.st_mode);
}

// Any way in will do for a lock.
int OpenToHold(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  return file >= 0 ? file : open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK);
}

int CloseWithReason(int file) {
  const int reason = errno;
  close(file);
  errno = reason;
  return -1;
}

// Opens and locks. The file may be replaced between the two: then its successor is taken.
int Take(const std::string& path, int (*open_it)(const std::string&)) {
  while (true) {
    const int file = open_it(path);
    if (file < 0) return -1;
    if (!LockFile(file)) return CloseWithReason(file);
    if (IsStillAt(file, path)) return file;
    close(file);
  }
}

// Where files cannot be locked at all, one goes without.
int TakePatiently(const std::string& path) {
  for (int tries = 0; tries < kTries; ++tries) {
    const int file = OpenAloneToAppend(path);
    if (file >= 0) return file;
    if (errno != EWOULDBLOCK) break;
    usleep(kPause);
  }
  return errno == ENOLCK || errno == EOPNOTSUPP ? OpenToAppend(path) : -1;
}

}  // namespace

int OpenToAppend(const std::string& path) {
  return open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, kNewFileMode);
}

bool LockFile(int file) { return flock(file, LOCK_EX | LOCK_NB) == 0; }

bool IsStillAt(int file, const std::string& path) {
  struct stat held {};
  struct stat there {};
  return fstat(file, &held) == 0 && stat(path.c_str(), &there) == 0 &&
         held.st_dev == there.st_dev && held.st_ino == there.st_ino;
}

int OpenAloneToAppend(const std::string& path) { return Take(path, OpenToAppend); }

int HoldFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) return Take(path, OpenToHold);
  errno = 0;
  return -1;
}

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
  const int file = TakePatiently(path);
  if (file < 0) return false;
  const bool written = IsPlainFile(file) && AppendAtOnce(file, bytes);
  return close(file) == 0 && written;
}

}  // namespace tarvyle
