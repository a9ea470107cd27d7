#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// What the fuzz targets share: an engine without a process around it, searches that end soon, files
// in memory. Lines of input: inputlines.h.

namespace tarvyle::fuzz {

// The input of one execution.
inline std::string_view Text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// Cuts the first byte off the input; 0 when there is none left.
unsigned TakeByte(std::string_view& input);

// Builds the tables, once, with small transposition tables, and puts the clock in place that bounds
// the nodes.
void StartOnce();

// Everything that a fresh process has at the start position: no learned position, no configuration,
// no result of an earlier search. Allots the nodes of one execution anew.
void FreshProcess();

// The same of the position alone, which is much less work: for targets that do not search.
void FreshPosition();

// Whether the searches of this execution have visited all nodes that were allotted to them.
bool NodesAreUsedUp();

// Ends the process with a message: what was promised does not hold.
void Expect(bool condition, const char* promise);

// A file in memory, for what reads files by name.
class MemoryFile {
 public:
  MemoryFile();
  ~MemoryFile();
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  void Fill(std::string_view bytes);
  std::string Content() const;
  const char* Path() const { return path_.c_str(); }

 private:
  int file_;
  std::string path_;
};

}  // namespace tarvyle::fuzz
