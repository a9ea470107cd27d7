#pragma once

#include "position/types.h"
#include "search/limits.h"  // IWYU pragma: export

namespace tarvyle {

// How others bound and watch a root search. Left alone, nothing changes. The randomised search
// heeds all but `after_iteration`.
struct RootHooks {
  int max_depth = kMaxIteration;                            // deepest iteration
  void (*after_iteration)(int depth, int score) = nullptr;  // called at the end of each
  // The root moves to search, ended by 0, in place of all. What they score is not learned.
  const Move* only = nullptr;
  int first_depth = kFirstIteration;  // 1 at least
};
inline RootHooks root_hooks;

}  // namespace tarvyle
