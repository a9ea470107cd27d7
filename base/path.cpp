#include "base/path.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>

namespace tarvyle {

char prog_dir[kPathSize];

namespace {

constexpr unsigned kJoinBuffers = 8;

}  // namespace

void SetProgDir(const char* own_path) {
  std::snprintf(prog_dir, sizeof prog_dir, "%s", own_path != nullptr ? own_path : "");
  char* separator = std::strrchr(prog_dir, '/');
  if (separator == nullptr) separator = std::strrchr(prog_dir, '\\');
  if (separator != nullptr) {
    separator[1] = '\0';
  } else {
    prog_dir[0] = '\0';
  }
}

const char* ConCat(const char* first, const char* second) {
  static char buffers[kJoinBuffers][kPathSize];
  static unsigned next = 0;
  char* joined = buffers[next];
  next = (next + 1) % kJoinBuffers;
  std::snprintf(joined, kPathSize, "%s%s", first, second);
  return joined;
}

const char* ConCat(const char* file_name) { return ConCat(prog_dir, file_name); }

// Only a regular file is opened at all: opening a pipe would wait for somebody at its other end.
long file_size(const char* path) {
  struct stat status {};
  const bool regular = stat(path, &status) == 0 && S_ISREG(status.st_mode);
  std::FILE* file = regular ? std::fopen(path, "rb") : nullptr;
  if (file == nullptr) {
    std::fprintf(stderr, "------> error: file_size() - file %s not open\n", path);
    return 0;
  }
  std::fclose(file);
  return static_cast<long>(status.st_size);
}

}  // namespace tarvyle
