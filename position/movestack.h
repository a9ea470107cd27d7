#pragma once

#include "position/types.h"

// The per-ply move lists, all in one array.

namespace tarvyle {

inline constexpr int kMaxPly = 99;         // lists that a search may hold at once
inline constexpr int kMaxListMoves = 420;  // above any list of 15 queens, promotions included
inline constexpr int kTreeSize = (kMaxPly + 1) * kMaxListMoves;

// The list of ply p is tree[treeCnt[p]] up to, not including, tree[treeCnt[p + 1]]; a generator for
// ply p sets treeCnt[p + 1]. treeCnt[0] is 0, except while root moves are set aside.
inline Move tree[kTreeSize];
inline int treeCnt[kMaxPly + 2];

// Ordering value of each entry of `tree`; written by whoever orders a list.
inline int sort_val[kTreeSize];

}  // namespace tarvyle
