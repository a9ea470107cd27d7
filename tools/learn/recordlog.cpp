#include "tools/learn/recordlog.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <utility>

#include "base/file.h"
#include "tools/files.h"

namespace tarvyle::tools {

namespace {

// Takes the lock and tells the size.
bool Hold(int file, std::size_t& size) {
  struct stat status {};
  if (flock(file, LOCK_EX | LOCK_NB) != 0 || fstat(file, &status) != 0) return false;
  size = static_cast<std::size_t>(status.st_size);
  return true;
}

}  // namespace

RecordLog::RecordLog(std::string path)
    : path_(std::move(path)),
      file_(open(path_.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK,
                 kNewFileMode)) {
  if (file_ < 0) FailOn("cannot write", path_, errno);
  if (Hold(file_, size_)) return;
  const int error = errno;
  close(file_);
  if (error == EWOULDBLOCK) {
    throw std::runtime_error("another process writes " + path_ +
                             "; give every process an output of its own and merge them at the end");
  }
  FailOn("cannot write", path_, error);
}

RecordLog::~RecordLog() { close(file_); }

void RecordLog::Append(std::string_view bytes) {
  errno = 0;  // a write that ends early leaves it as it is
  const ssize_t written = write(file_, bytes.data(), bytes.size());
  if (written == static_cast<ssize_t>(bytes.size()) && fdatasync(file_) == 0) {
    size_ += bytes.size();
    return;
  }
  const int error = errno != 0 ? errno : ENOSPC;
  (void)!ftruncate(file_, static_cast<off_t>(size_));
  FailOn("cannot write", path_, error);
}

void RecordLog::Close(const RecordSet& all) {
  const std::string content = all.FileContent();
  if (content.size() != size_) WriteFileAtomically(path_, content);
}

}  // namespace tarvyle::tools
