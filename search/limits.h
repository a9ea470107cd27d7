#pragma once

#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"

// How far a search goes, and the sizes that follow.

namespace tarvyle {

inline constexpr int kFirstIteration = 2;  // depth that iterative deepening begins at
inline constexpr int kMaxIteration = 90;   // and the greatest that it may be let go to

inline constexpr int kMaxSearchPly = 96;  // deeper nodes return the static evaluation
inline constexpr int kMaxLineMoves = 96;  // a principal variation holds at most that many moves

// The deepest node there is. It has no move loop, but in check it lists its replies and makes each
// to see whether it is legal. Random play-outs end there as well.
inline constexpr int kDeepestNode = kMaxSearchPly + 1;

inline constexpr int kLineSize = 100;          // words of a line, indexed by ply
inline constexpr int kPlyArray = kMaxPly + 2;  // entries of an array indexed by ply

// A line is ended behind the move of the last ply that has one.
static_assert(kMaxLineMoves <= kMaxSearchPly && kDeepestNode < kLineSize);
static_assert(kDeepestNode < kPlyArray);
// The lists of all plies, from 0 to the deepest, stand at once.
static_assert(kDeepestNode <= kMaxPly);
static_assert(kTreeSize >= (kDeepestNode + 1) * kMaxListMoves);
// The record holds the moves of the longest game, of the path to the deepest node and one more.
static_assert(kMaxGameMoves + kDeepestNode + 1 <= kRecordMoves);
// The farthest mate and the farthest capture of a king are still told from evaluations.
static_assert(IsMated(kMated + kDeepestNode) && IsMating(-(kMated + kDeepestNode)));
static_assert(IsMating(kCaptureKing - kDeepestNode));

}  // namespace tarvyle
