#include "position/perft.h"

#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"

namespace tarvyle {

namespace {

constexpr std::uint64_t kListsPerQuestion = 1024;

// A count that runs.
class Count {
 public:
  explicit Count(StopQuestion should_stop) : should_stop_(should_stop) {}

  std::uint64_t Leaves(int depth) {
    if (depth == 0) return 1;
    Ask();
    LegalMoveList();
    if (depth == 1) return static_cast<std::uint64_t>(ListLength());
    std::uint64_t leaves = 0;
    for (int i = treeCnt[ply]; i < treeCnt[ply + 1] && !stopped_; ++i) {
      leaves += LeavesBelow(tree[i], depth);
    }
    return leaves;
  }

  std::uint64_t LeavesBelow(Move move, int depth) {
    MakeMove(move);
    const std::uint64_t leaves = Leaves(depth - 1);
    UnMakeMove(move);
    return leaves;
  }

  bool WasStopped() const { return stopped_; }

 private:
  void Ask() {
    if (++lists_ % kListsPerQuestion == 0 && should_stop_ != nullptr) stopped_ = should_stop_();
  }

  StopQuestion should_stop_;
  std::uint64_t lists_ = 0;
  bool stopped_ = false;
};

}  // namespace

std::uint64_t Perft(int depth, StopQuestion should_stop) {
  return Count(should_stop).Leaves(depth);
}

std::uint64_t DividedPerft(int depth, const std::function<void(Move, std::uint64_t)>& tell,
                           StopQuestion should_stop) {
  Count count(should_stop);
  LegalMoveList();
  std::uint64_t sum = 0;
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
    const std::uint64_t leaves = count.LeavesBelow(tree[i], depth);
    if (count.WasStopped()) break;
    tell(tree[i], leaves);
    sum += leaves;
  }
  return sum;
}

}  // namespace tarvyle
