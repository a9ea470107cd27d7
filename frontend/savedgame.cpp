#include "frontend/savedgame.h"

#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>

#include "base/replace.h"
#include "position/image.h"
#include "position/record.h"

namespace tarvyle {

namespace {

bool WriteRecord(std::FILE* file) { return std::fwrite(&g, sizeof g, 1, file) == 1; }

// Writes into what is there already. It is not brought to the disk: most devices have none.
bool WriteDirectly(const char* path) {
  std::FILE* file = std::fopen(path, "wb");
  if (file == nullptr) return false;
  const bool written = WriteRecord(file) && std::fflush(file) == 0;
  return std::fclose(file) == 0 && written;
}

}  // namespace

bool SaveGame(const char* path) {
  TagRecord();
  const std::string target = BehindLinks(path);
  const std::string temporary =
      FolderOf(target) + "tarvyle_save_tmp" + std::to_string(getpid()) + ".dat";
  std::remove(temporary.c_str());
  std::FILE* file = TakesNamedFile(target) ? CreateNewFile(temporary) : nullptr;
  if (file == nullptr) return WriteDirectly(path);
  const bool written = CopyMode(target, file) && WriteRecord(file);
  return FinishOrRemove(file, written, temporary) && MoveIntoPlace(temporary, target);
}

bool LoadGame(const char* path) {
  std::FILE* file = std::fopen(path, "rb");
  if (file == nullptr) return false;
  const auto image = std::make_unique<GameRecord>();
  const bool read = std::fread(image.get(), sizeof *image, 1, file) == 1;
  std::fclose(file);
  return read && RestoreImage(*image);
}

}  // namespace tarvyle
