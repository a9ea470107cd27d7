#pragma once

#include "position/types.h"
#include "pv/tree.h"

// The order in which a node's moves are searched.

namespace tarvyle {

// Where a picker stands. A stage that has nothing to give passes on to the next.
enum PickStage : int {
  kFirstMove,          // begins; offers the move to try first
  kFindContinuations,  // looks the path up in the tree of principal variations
  kContinuations,      // offers the moves by which stored lines go on
  kScoreTactical,      // gathers captures, promotions, the table's move and killers
  kTactical,           // offers those, best first unless presorted
  kScoreQuiet,         // gives the others their values
  kRest,               // offers them, best first; at the root all moves not yet offered
  kExhausted,          // nothing is left
};

// State of a node's staged move picker. A node sets on_pv, tt_move and first_move before the first
// call of NextMove.
struct MovePicker {
  PickStage stage = kFirstMove;
  int next = 0;            // index in `tree` of the next candidate
  int end = 0;             // end of the current segment
  bool presorted = false;  // the capture segment was sorted whole
  bool from_pv = false;    // the returned move came from first_move or the PV tree
  bool on_pv = false;      // the node lies on a stored principal variation
  Move tt_move = 0;        // from the transposition table
  Move line_move = 0;      // of the root's line at this ply; nothing reads it
  Move killer_move = 0;
  Move pv_killer_move = 0;
  const PvNode* pv_children = nullptr;  // continuations not yet offered
  Move first_move = 0;                  // to try first, 0 for none
};

// Writes the next move to `move`, or returns false when none is left. Works in place on the ply's
// part of `tree` and `sort_val`. At the root the moves keep the values that they have there.
bool NextMove(MovePicker& picker, Move& move);

// Sorts tree[first..last] with its sort_val ascending, by partition on the middle element. Callers
// walk the result from the start, so the lowest value comes first: that is meant.
void QSort(int first, int last);

// Brings the move with the greatest sort_val in first..last to `first`; the first of equals wins.
void Pick(int first, int last);

// Brings `move` to `first` when it stands in first..last (the last place counts), and returns
// whether it does.
bool PickMove(Move move, int first, int last);

// Ordering value of a capture or promotion: victim, then cheapest attacker; recaptures (target of
// the move just made) 5000 more; promotions by piece. 0 for a quiet move.
int CaptureValue(Move move, Move last_move);

}  // namespace tarvyle
