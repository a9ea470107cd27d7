// Preloaded into a program by the tests of this folder: it logs what is brought to the disk itself,
// and under which names files appear. A crash of the system cannot be had in a test; but a file
// that was brought to the disk whole before it got its name is there whole after one.
//
// DISK_LOG: the file that the lines are appended to, one for each call that succeeded:
//   fsync SIZE PATH        the size is the file's at that moment; a folder's is written as 0
//   fdatasync SIZE PATH
//   rename SIZE FROM TO    the size that the file has when it gets its new name

#include <fcntl.h>
#include <sys/stat.h>
#include <syscall.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>

namespace {

long SizeOf(const struct stat& status) {
  return S_ISDIR(status.st_mode) ? 0 : static_cast<long>(status.st_size);
}

void Log(const char* call, long size, const char* first, const char* second) {
  const int error = errno;
  const char* const name = std::getenv("DISK_LOG");
  const int log =
      name != nullptr ? open(name, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666) : -1;
  if (log >= 0) {
    dprintf(log, second != nullptr ? "%s %ld %s %s\n" : "%s %ld %s\n", call, size, first, second);
    close(log);
  }
  errno = error;
}

int Sync(const char* call, long number, int file) {
  const auto result = static_cast<int>(syscall(number, file));
  struct stat status {};
  if (result != 0 || fstat(file, &status) != 0) return result;
  char link[32];
  char path[PATH_MAX] = "";
  std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
  const ssize_t length = readlink(link, path, sizeof path - 1);
  path[length > 0 ? length : 0] = '\0';
  Log(call, SizeOf(status), path, nullptr);
  return result;
}

}  // namespace

extern "C" {

int fsync(int file) { return Sync("fsync", SYS_fsync, file); }

int fdatasync(int file) { return Sync("fdatasync", SYS_fdatasync, file); }

int rename(const char* from, const char* to) noexcept {
  const int result = renameat(AT_FDCWD, from, AT_FDCWD, to);
  struct stat status {};
  if (result == 0 && stat(to, &status) == 0) Log("rename", SizeOf(status), from, to);
  return result;
}
}
