#include "tools/learn/recordlog.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <utility>

#include "base/append.h"
#include "tools/files.h"

namespace tarvyle::tools {

RecordLog::RecordLog(std::string path) : path_(std::move(path)), file_(OpenAloneToAppend(path_)) {
  if (file_ < 0 && errno == EWOULDBLOCK) FailOnHeld(path_);
  struct stat status {};
  if (file_ < 0 || fstat(file_, &status) != 0) FailOn("cannot write", path_, errno);
  size_ = static_cast<std::size_t>(status.st_size);
}

RecordLog::~RecordLog() { close(file_); }

void RecordLog::Append(std::string_view bytes) {
  CheckIsThere();
  if (!AppendOnDisk(file_, size_, bytes)) FailOn("cannot write", path_, errno);
  size_ += bytes.size();
}

void RecordLog::Close(const RecordSet& all) {
  CheckIsThere();
  const std::string content = all.FileContent();
  if (content.size() != size_) ReplaceHeldFile(path_, content);
}

void RecordLog::CheckIsThere() const {
  if (IsStillAt(file_, path_)) return;
  throw std::runtime_error("cannot write " + path_ +
                           ": it has been removed, or another file put in its place");
}

}  // namespace tarvyle::tools
