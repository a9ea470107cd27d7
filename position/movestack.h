#pragma once

#include "position/record.h"
#include "position/types.h"

// The per-ply move lists, all in one array.

namespace tarvyle {

inline constexpr int kMaxPly = 99;         // the deepest ply that may have a list
inline constexpr int kMaxListMoves = 420;  // more than any list has
inline constexpr int kTreeSize = (kMaxPly + 1) * kMaxListMoves;

// No piece has more moves than a queen in the middle of an empty board, and a king with castling to
// come stands at the edge, where he has fewer steps.
inline constexpr int kMostQueenMoves = 27;
inline constexpr int kMostKingMoves = 8;
static_assert((kSlotsPerColour - 1) * kMostQueenMoves + kMostKingMoves <= kMaxListMoves,
              "a list of one king and queens in all other slots has its place");

// The moves of a search follow those of the game, and looking at moves marks the place behind them.
static_assert(kMaxGameMoves + kMaxPly < kRecordMoves,
              "a search above the longest game has its place in the record");

// The list of ply p is tree[treeCnt[p]] up to, not including, tree[treeCnt[p + 1]]; a generator for
// ply p sets treeCnt[p + 1]. treeCnt[0] is 0, except while root moves are set aside. The search
// writes both as well: it orders the lists, shortens that of the root and lets a pass have none.
inline Move tree[kTreeSize];
inline int treeCnt[kMaxPly + 2];  // to the end of the list of ply kMaxPly

// Leaves the root without moves, and with none set aside.
inline void EmptyRootList() {
  treeCnt[0] = 0;
  treeCnt[1] = 0;
}

// Ordering value of each entry of `tree`. The search, which orders the lists, writes it, and the
// book for those of the root.
inline int sort_val[kTreeSize];

}  // namespace tarvyle
