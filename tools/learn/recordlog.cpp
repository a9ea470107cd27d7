#include "tools/learn/recordlog.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <utility>

#include "base/append.h"
#include "tools/files.h"

namespace tarvyle::tools {

namespace {

// Takes the lock and tells the size.
bool Hold(int file, std::size_t& size) {
  struct stat status {};
  if (!LockFile(file) || fstat(file, &status) != 0) return false;
  size = static_cast<std::size_t>(status.st_size);
  return true;
}

}  // namespace

RecordLog::RecordLog(std::string path) : path_(std::move(path)), file_(OpenToAppend(path_)) {
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
  if (!AppendOnDisk(file_, size_, bytes)) FailOn("cannot write", path_, errno);
  size_ += bytes.size();
}

void RecordLog::Close(const RecordSet& all) {
  const std::string content = all.FileContent();
  if (content.size() != size_) WriteFileAtomically(path_, content);
}

}  // namespace tarvyle::tools
