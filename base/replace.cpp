#include "base/replace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace tarvyle {

namespace {

// Removes the file and keeps the reason why it must go.
void RemoveKeepingReason(const std::string& path) {
  const int reason = errno;
  std::remove(path.c_str());
  errno = reason;
}

}  // namespace

std::string FolderOf(const std::string& path) {
  const std::size_t separator = path.rfind('/');
  return separator == std::string::npos ? std::string() : path.substr(0, separator + 1);
}

std::string BehindLinks(const std::string& path) {
  std::error_code error;
  const std::filesystem::path target = std::filesystem::canonical(path, error);
  if (!error) return target.string();
  const std::string folder = FolderOf(path);
  const std::filesystem::path place =
      std::filesystem::canonical(folder.empty() ? "." : folder, error);
  const bool named = folder.size() < path.size();
  return error || !named ? path : (place / path.substr(folder.size())).string();
}

bool TakesOwnFile(const std::string& path) {
  std::error_code ignored;
  const std::filesystem::file_status itself = std::filesystem::symlink_status(path, ignored);
  return !std::filesystem::exists(itself) || std::filesystem::is_directory(itself) ||
         std::filesystem::is_regular_file(path, ignored);
}

bool TakesNamedFile(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0) return true;
  return S_ISREG(status.st_mode) && access(path.c_str(), W_OK) == 0;
}

bool TakesOutput(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return true;
  errno = 0;
  return S_ISREG(status.st_mode) && access(path.c_str(), W_OK) == 0;
}

std::FILE* CreateNewFile(const std::string& path) { return std::fopen(path.c_str(), "wbxe"); }

bool CopyMode(const std::string& from, std::FILE* to) {
  struct stat old {};
  return stat(from.c_str(), &old) != 0 || fchmod(fileno(to), old.st_mode & 07777) == 0;
}

bool FinishFile(std::FILE* file, bool written) {
  const bool on_disk = written && std::fflush(file) == 0 && fsync(fileno(file)) == 0;
  const int reason = errno;
  if (std::fclose(file) == 0 && on_disk) return true;
  if (!on_disk) errno = reason;
  return false;
}

bool FinishOrRemove(std::FILE* file, bool written, const std::string& temporary) {
  if (FinishFile(file, written)) return true;
  RemoveKeepingReason(temporary);
  return false;
}

bool MoveIntoPlace(const std::string& temporary, const std::string& place) {
  if (std::rename(temporary.c_str(), place.c_str()) == 0) return true;
  RemoveKeepingReason(temporary);
  return false;
}

void SyncFolderOf(const std::string& path) {
  const std::string folder = FolderOf(path);
  const int opened =
      open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (opened < 0) return;
  (void)fsync(opened);
  close(opened);
}

}  // namespace tarvyle
