#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "tools/learn/recordset.h"

namespace tarvyle::tools {

// A learn file that grows record by record and is a whole one after each. One process at a time
// may hold it. Who replaces it nevertheless, by another program, is noticed.
class RecordLog {
 public:
  // Opens the file, or makes it. Throws std::runtime_error when that fails or another process
  // holds it.
  explicit RecordLog(std::string path);
  ~RecordLog();
  RecordLog(const RecordLog&) = delete;
  RecordLog& operator=(const RecordLog&) = delete;

  // Adds a record and has it on disk. Throws std::runtime_error, with the file as before, when it
  // cannot be written in full, or is not at its place any more.
  void Append(std::string_view bytes);

  // Ends the work: `all` takes the file's place when the file holds a position twice.
  void Close(const RecordSet& all);

 private:
  void CheckIsThere() const;

  std::string path_;
  int file_;
  std::size_t size_ = 0;  // bytes of whole records
};

}  // namespace tarvyle::tools
