#include "search/status.h"

#include <cstdio>

#include "base/message.h"
#include "position/movestack.h"
#include "position/text.h"
#include "search/settings.h"

namespace tarvyle {

void (*status_sink)(const SearchStatus&) = nullptr;

namespace {

constexpr int kShownMoves = 14;

void PrintStatus(const SearchStatus& status) {
  char nodes[24];
  Message("%2d %4d %4d %10s %s\n", status.depth, ShownScore(status.score), status.elapsed,
          U64ToStr(nodes, status.nodes), StatusLine(status.line).c_str());
}

}  // namespace

std::string StatusLine(const Move* line) {
  std::string text;
  for (int i = 0; i < kShownMoves && line[i] != 0; ++i) {
    text += MoveToStr(line[i]);
    text += ' ';
  }
  return text;
}

void PrintSearchStatus(int depth, int score, int elapsed, std::uint32_t nodes_lo,
                       std::uint32_t nodes_hi, const Move* line) {
  if (is_rnd_search != 0) return;
  const std::uint64_t nodes = static_cast<std::uint64_t>(nodes_hi) << 32 | nodes_lo;
  const SearchStatus status{depth, score, elapsed, nodes, line};
  if (status_sink != nullptr) {
    status_sink(status);
  } else {
    PrintStatus(status);
  }
}

void debug_print_moves_and_score() {
  for (int i = 0; i < treeCnt[1]; ++i) {
    std::printf("(%d) %s <%d>; ", i, MoveToStr(tree[i]), sort_val[i]);
  }
  std::putchar('\n');
}

}  // namespace tarvyle
