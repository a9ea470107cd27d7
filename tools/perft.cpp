#include "tools/perft.h"

#include <vector>

#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"

namespace tarvyle::tools {

namespace {

constexpr std::uint64_t kListsPerQuestion = 1024;

// The count that runs.
struct Count {
  StopQuestion should_stop = nullptr;
  std::uint64_t lists = 0;
  bool stopped = false;
};
Count count;

void Begin(StopQuestion should_stop) { count = {should_stop, 0, false}; }

std::uint64_t Leaves(int depth) {
  if (depth == 0) return 1;
  if (++count.lists % kListsPerQuestion == 0 && count.should_stop != nullptr) {
    count.stopped = count.should_stop();
  }
  LegalMoveList();
  if (depth == 1) return static_cast<std::uint64_t>(ListLength());
  std::uint64_t leaves = 0;
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1] && !count.stopped; ++i) {
    const Move move = tree[i];
    MakeMove(move);
    leaves += Leaves(depth - 1);
    UnMakeMove(move);
  }
  return leaves;
}

}  // namespace

std::uint64_t Perft(int depth, StopQuestion should_stop) {
  Begin(should_stop);
  return Leaves(depth);
}

std::uint64_t DividedPerft(int depth, const std::function<void(Move, std::uint64_t)>& tell,
                           StopQuestion should_stop) {
  Begin(should_stop);
  LegalMoveList();
  const std::vector<Move> moves(tree, tree + ListLength());
  std::uint64_t sum = 0;
  for (const Move move : moves) {
    MakeMove(move);
    const std::uint64_t leaves = Leaves(depth - 1);
    UnMakeMove(move);
    if (count.stopped) break;
    sum += leaves;
    tell(move, leaves);
  }
  return sum;
}

}  // namespace tarvyle::tools
