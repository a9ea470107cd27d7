#pragma once

#include "position/types.h"
#include "search/state.h"

// The rules of the history table, which orders quiet moves.

namespace tarvyle {

inline constexpr int MAX_HIST = 32000;

inline int& History(int colour, Move move) {
  return history[(colour * 8 + PieceOf(move)) * 64 + TargetOf(move)];
}

// Rewards a node's best move; more when it raised alpha without a cut-off, and more for mates.
void SaveHist(Move move, int alpha, int beta);

// Halves every counter.
// Offered to others; the engine itself never calls it.
void HistLow();

// With `clear`, zeroes the table. Without, compresses it: the counters above the average become 1
// or 2 and all others keep their value, so former leaders start anew.
void HistoryInit(bool clear);

}  // namespace tarvyle
