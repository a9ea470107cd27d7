#include "frontend/namedfile.h"

#include <unistd.h>

#include <cstdio>
#include <string>

#include "base/replace.h"

namespace tarvyle {

namespace {

bool WriteAll(std::FILE* file, std::string_view content) {
  return std::fwrite(content.data(), 1, content.size(), file) == content.size();
}

// Writes into what is there already. It is not brought to the disk: most devices have none.
bool WriteDirectly(const char* path, std::string_view content) {
  std::FILE* file = std::fopen(path, "wb");
  if (file == nullptr) return false;
  const bool written = WriteAll(file, content) && std::fflush(file) == 0;
  return std::fclose(file) == 0 && written;
}

}  // namespace

bool WriteNamedFile(const char* path, std::string_view content) {
  const std::string target = BehindLinks(path);
  const std::string temporary =
      FolderOf(target) + "tarvyle_save_tmp" + std::to_string(getpid()) + ".dat";
  std::remove(temporary.c_str());
  std::FILE* file = TakesNamedFile(target) ? CreateNewFile(temporary) : nullptr;
  if (file == nullptr) return WriteDirectly(path, content);
  const bool written = CopyMode(target, file) && WriteAll(file, content);
  return FinishOrRemove(file, written, temporary) && MoveIntoPlace(temporary, target);
}

}  // namespace tarvyle
