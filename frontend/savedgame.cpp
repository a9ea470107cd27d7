#include "frontend/savedgame.h"

#include <cstdio>
#include <memory>

#include "position/image.h"

namespace tarvyle {

bool SaveGame(const char* path) {
  TagRecord();
  std::FILE* file = std::fopen(path, "wb");
  if (file == nullptr) return false;
  const bool written = std::fwrite(&g, sizeof g, 1, file) == 1;
  return std::fclose(file) == 0 && written;
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
