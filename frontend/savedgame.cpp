#include "frontend/savedgame.h"

#include <cstdio>
#include <memory>

#include "frontend/namedfile.h"
#include "position/image.h"
#include "position/record.h"

namespace tarvyle {

bool SaveGame(const char* path) {
  TagRecord();
  return WriteNamedFile(path, {reinterpret_cast<const char*>(&g), sizeof g});
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
