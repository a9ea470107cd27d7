#include "frontend/savedgame.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "position/image.h"
#include "position/record.h"

namespace tarvyle {

namespace {

// A name in the folder of `path` that no other program uses.
std::string TemporaryBeside(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  const std::string folder =
      separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
  return folder + "tarvyle_save_tmp" + std::to_string(getpid()) + ".dat";
}

// What `path` leads to through links; `path` itself when it leads nowhere.
std::string BehindLinks(const char* path) {
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  return error ? std::string(path) : target.string();
}

// Whether a new file may take the place of `path`: nothing stands there, or a plain file that could
// be written. Devices, links to nowhere and write-protected files stay what they are.
bool IsReplaceable(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return true;
  return S_ISREG(status.st_mode) && access(path.c_str(), W_OK) == 0;
}

// Writes the record and closes the file. A lasting one must have reached the disk itself before it
// takes an older game's place: a power cut between the two leaves one of them. False, too, for a
// file that is not open.
bool WriteRecord(std::FILE* file, bool lasting) {
  if (file == nullptr) return false;
  const bool written = std::fwrite(&g, sizeof g, 1, file) == 1 && std::fflush(file) == 0 &&
                       (!lasting || fsync(fileno(file)) == 0);
  return std::fclose(file) == 0 && written;
}

}  // namespace

bool SaveGame(const char* path) {
  TagRecord();
  const std::string target = BehindLinks(path);
  const std::string temporary = TemporaryBeside(target);
  std::remove(temporary.c_str());
  std::FILE* file = IsReplaceable(target) ? std::fopen(temporary.c_str(), "wbx") : nullptr;
  if (file == nullptr) return WriteRecord(std::fopen(path, "wb"), false);
  const bool saved = WriteRecord(file, true) && std::rename(temporary.c_str(), target.c_str()) == 0;
  if (!saved) std::remove(temporary.c_str());
  return saved;
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
