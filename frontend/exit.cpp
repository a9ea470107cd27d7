#include "frontend/exit.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "base/path.h"
#include "base/property.h"
#include "base/replace.h"
#include "book/learnfile.h"
#include "frontend/console.h"

namespace tarvyle {

namespace {

constexpr int kTemporaryNumbers = 1000;

// Creates an empty file of a name that nobody uses: the process id takes part in its number, and a
// number in use leads to the next one. "" when all are taken, or the folder takes no file.
std::string ReserveTemporary() {
  int number = (std::rand() % kTemporaryNumbers + getpid()) % kTemporaryNumbers;
  for (int tries = 0; tries < kTemporaryNumbers; ++tries) {
    char name[40];
    std::snprintf(name, sizeof name, "tarvyle_tmp_lrn%d.lrn", number);
    std::string path = ConCat(name);
    if (std::FILE* file = CreateNewFile(path)) {
      std::fclose(file);
      return path;
    }
    if (errno != EEXIST) return {};
    number = (number + 1) % kTemporaryNumbers;
  }
  return {};
}

// The table in a temporary file, whose name is returned; "" when it cannot be written, or must not
// take the learn file's place.
std::string WriteTemporary(const std::string& learn_file) {
  if (!TakesOwnFile(learn_file)) return {};
  std::string temporary = ReserveTemporary();
  if (temporary.empty() || SaveLearnTable(temporary.c_str())) return temporary;
  std::remove(temporary.c_str());
  return {};
}

void ReplaceLearnFile(const std::string& temporary, const std::string& learn_file, long size) {
  if (!MoveIntoPlace(temporary, learn_file)) {
    std::fputs("----> error write learn file(2), ?rename() \n", stderr);
    return;
  }
  std::printf("write learn file %s %ld bytes \n", learn_file.c_str(), size);
}

}  // namespace

void WriteLearnFile() {
  if (prev_inst != 0 || learn_file_stays != 0) return;
  if (std::strcmp(property_get("learn file write"), "disable") == 0) return;
  const std::string learn_file = ConCat("tarvyle.lrn");
  const std::string temporary = WriteTemporary(learn_file);
  if (temporary.empty()) {
    std::fputs("error write learn file\n", stderr);
    return;
  }
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
