#include "fuzz/engine.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "eval/scoretable.h"
#include "frontend/startup.h"
#include "position/attack.h"
#include "position/directions.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/hash.h"

namespace tarvyle::fuzz {

namespace {

// The smallest tables there are; emptying them costs nothing.
constexpr int kTableEntries = 0x10000;
constexpr int kNodesPerExecution = 3000;
constexpr int kNodesPerSearch = 1000;
constexpr std::uint32_t kLongerThanAnyAllowance = 1000 * kMillisecondsPerSecond;

int nodes_left = 0;

// The search looks at its clock when it starts to count and then every 4096 nodes. At the start it
// is told here that most of these are behind it, at the next look that its time is over.
std::uint32_t BoundingClock() {
  static std::uint32_t now = 0;
  if (cnt_nodes == 0) {
    const int nodes = std::clamp(nodes_left, 1, kNodesPerSearch);
    cnt_nodes = kNodesPerPoll - static_cast<std::uint64_t>(nodes);
    nodes_left -= nodes;
  }
  return now += kLongerThanAnyAllowance;
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
    InitAtk();
    Expect(HashAllocate(kTableEntries), "there is memory for the tables");
    InitNewGame();
    InitEvaluate();
    world = {BoundingClock, [] { return 1u; }};
    return true;
  }();
  static_cast<void>(started);
}

void FreshPosition() {
  ply = 0;
  treeCnt[0] = 0;
  treeCnt[1] = 0;
  set_dir(White);
  InitNewGame();
}

void FreshProcess() {
  ResetProcess();
  AllotNodes(kNodesPerExecution);
}

void AllotNodes(int nodes) { nodes_left = nodes; }

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
