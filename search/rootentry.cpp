#include "search/rootentry.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "base/property.h"
#include "book/book.h"
#include "book/learn.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "pv/line.h"
#include "search/roothooks.h"
#include "search/state.h"

namespace tarvyle {

namespace {

bool IsAsked(Move move) {
  const Move* end = root_hooks.only + LineLen(root_hooks.only);
  return std::find(root_hooks.only, end, move) != end;
}

}  // namespace

bool ListRootMoves() {
  if (!LegalMoveList()) return false;
  if (root_hooks.only != nullptr) {
    Move* end = std::remove_if(tree, tree + treeCnt[1], [](Move move) { return !IsAsked(move); });
    treeCnt[1] = static_cast<int>(end - tree);
  }
  return ListLength() > 0;
}

bool TakeBookMove(int count, Move& move) {
  if (std::strcmp(property_get("book move"), "auto") != 0) return false;
  if (std::rand() % 101 >= 51) return false;
  const Move found = MoveFromLib(0, count - 1);
  if (found == 0) return false;
  search_mv = found;
  move = found;
  return true;
}

void LearnResult(int score, int depth) {
  if (root_hooks.only == nullptr) SaveSearchResult(score, depth);
}

}  // namespace tarvyle
