#include "frontend/exit.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "base/path.h"
#include "base/property.h"
#include "book/learnfile.h"
#include "frontend/state.h"

namespace tarvyle {

namespace {

constexpr int kTemporaryNumbers = 1000;

// Creates an empty file of a name that no other program has: the process id takes part in its
// number, and a number in use leads to the next one. In a folder that takes no file the name alone
// is returned.
std::string ReserveTemporary() {
  int number = (std::rand() % kTemporaryNumbers + getpid()) % kTemporaryNumbers;
  std::string path;
  for (int tries = 0; tries < kTemporaryNumbers; ++tries) {
    char name[40];
    std::snprintf(name, sizeof name, "tarvyle_tmp_lrn%d.lrn", number);
    path = ConCat(name);
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file >= 0) close(file);
    if (file >= 0 || errno != EEXIST) return path;
    number = (number + 1) % kTemporaryNumbers;
  }
  return path;
}

// Whether nothing or a file stands there, be it behind a link. A folder, a device or a link to
// nowhere is not ours to replace.
bool IsReplaceable(const std::string& path) {
  std::error_code ignored;
  return !std::filesystem::exists(std::filesystem::symlink_status(path, ignored)) ||
         std::filesystem::is_regular_file(path, ignored);
}

void ReplaceLearnFile(const std::string& temporary, const std::string& learn_file, long size) {
  if (!IsReplaceable(learn_file) || std::rename(temporary.c_str(), learn_file.c_str()) != 0) {
    std::fputs("----> error write learn file(2), ?rename() \n", stderr);
    std::remove(temporary.c_str());
    return;
  }
  std::printf("write learn file %s %ld bytes \n", learn_file.c_str(), size);
}

}  // namespace

void WriteLearnFile() {
  if (prev_inst != 0 || std::strcmp(property_get("learn file write"), "disable") == 0) return;
  const std::string temporary = ReserveTemporary();
  if (!SaveLearnTable(temporary.c_str())) {
    std::remove(temporary.c_str());
    std::fputs("error write learn file\n", stderr);
    return;
  }
  const std::string learn_file = ConCat("tarvyle.lrn");
  const long new_size = file_size(temporary.c_str());
  const long old_size = file_size(learn_file.c_str());
  if (new_size < old_size) {
    // Neither is lost: the new file stays under its temporary name.
    std::fputs("---->  error write learn file(1), size new file less old file \n", stderr);
    return;
  }
  ReplaceLearnFile(temporary, learn_file, new_size);
}

}  // namespace tarvyle
