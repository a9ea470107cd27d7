#include "fuzz/harness.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "frontend/startup.h"
#include "host/engine.h"
#include "host/nodelimit.h"
#include "search/clock.h"
#include "search/lifetimes.h"

namespace tarvyle::fuzz {

namespace {

// The smallest tables there are; emptying them costs nothing.
constexpr int kTableEntries = 0x10000;
constexpr int kNodesPerExecution = 3000;
constexpr int kNodesPerSearch = 1000;

int nodes_left = 0;

// What is left for all searches of the execution, a part of it at once.
int NextAllotment() {
  const int nodes = std::clamp(nodes_left, 1, kNodesPerSearch);
  nodes_left -= nodes;
  return nodes;
}

}  // namespace

unsigned TakeByte(std::string_view& input) {
  if (input.empty()) return 0;
  const auto byte = static_cast<unsigned char>(input.front());
  input.remove_prefix(1);
  return byte;
}

void StartOnce() {
  static const bool started = [] {
    Expect(StartEngine(kTableEntries), "there is memory for the tables");
    world = NodeBoundWorld(NextAllotment, [] { return 1u; });
    return true;
  }();
  static_cast<void>(started);
}

void FreshPosition() { BeginGame(); }

void FreshProcess() {
  ResetProcess();
  nodes_left = kNodesPerExecution;
}

bool NodesAreUsedUp() { return nodes_left <= 0; }

void Expect(bool condition, const char* promise) {
  if (condition) return;
  std::fprintf(stderr, "broken promise: %s\n", promise);
  std::abort();
}

MemoryFile::MemoryFile()
    : file_(memfd_create("input", MFD_CLOEXEC)), path_("/proc/self/fd/" + std::to_string(file_)) {
  Expect(file_ >= 0, "there is memory for a file");
}

MemoryFile::~MemoryFile() { close(file_); }

void MemoryFile::Fill(std::string_view bytes) {
  Expect(ftruncate(file_, 0) == 0, "a file in memory can be emptied");
  const auto size = static_cast<ssize_t>(bytes.size());
  Expect(pwrite(file_, bytes.data(), bytes.size(), 0) == size, "a file in memory can be written");
}

std::string MemoryFile::Content() const {
  std::string bytes(static_cast<std::size_t>(lseek(file_, 0, SEEK_END)), '\0');
  const ssize_t size = pread(file_, bytes.data(), bytes.size(), 0);
  Expect(size == static_cast<ssize_t>(bytes.size()), "a file in memory can be read");
  return bytes;
}

}  // namespace tarvyle::fuzz
