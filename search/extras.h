#pragma once

#include "position/record.h"
#include "position/types.h"

// Small operations that the search offers and does not need itself.

namespace tarvyle {

// Bishops, rooks and queens of a side.
inline int SweepCnt(int side) {
  return g.piece_cnt[side][Bishop] + g.piece_cnt[side][Rook] + g.piece_cnt[side][Queen];
}

// Record of one search phase.
struct PhaseInfo {
  int counters[4];
  int flags[2];
  int amount;
  int more_counters[4];
};

// The record's first flag.
inline int tree_is_good(const PhaseInfo& phase) { return phase.flags[0]; }

// Zeroes the record but for the stored amount.
inline void PhaseInfoReset(PhaseInfo& phase, int amount) {
  phase = {};
  phase.amount = amount;
}

}  // namespace tarvyle
