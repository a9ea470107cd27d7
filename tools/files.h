#pragma once

#include <string>
#include <string_view>

namespace tarvyle::tools {

// All bytes of a regular file. Throws std::runtime_error that names the file.
std::string ReadWholeFile(const std::string& path);

// Replaces the file at `path`, or makes it: written beside it under another name, brought to the
// disk, then renamed, so that the old content or the new one is there at every moment, and the old
// one after any failure. A link stays a link. Throws std::runtime_error that names the file, also
// when another process adds to it or is about to replace it.
void WriteFileAtomically(const std::string& path, std::string_view content);

// The file at `path`, if there is one, for this process alone as long as it lives: nobody else adds
// to it or replaces it between its being read and being replaced. Throws std::runtime_error when
// another process has it.
class HeldFile {
 public:
  explicit HeldFile(const std::string& path);
  ~HeldFile();
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

 private:
  int file_;
};

// As WriteFileAtomically, by whoever has the file.
void ReplaceHeldFile(const std::string& path, std::string_view content);

// Throws std::runtime_error: another process has the file.
[[noreturn]] void FailOnHeld(const std::string& path);

// Writes to the file at `path` in that way, or, for "", to standard output.
void WriteOutput(const std::string& path, std::string_view content);

// Throws std::runtime_error "<what> <path>: <the system's reason>".
[[noreturn]] void FailOn(const std::string& what, const std::string& path, int error);

// Whether anything stands at `path`.
bool FileExists(const std::string& path);

// Whether both name the same file on disk.
bool SameFile(const std::string& first, const std::string& second);

}  // namespace tarvyle::tools
