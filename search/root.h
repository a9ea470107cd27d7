#pragma once

#include "position/types.h"

// The root search: what the front end calls when the engine must move.

namespace tarvyle {

inline constexpr int kMaxIteration = 90;

// How tools bound and watch a root search. Left alone, nothing changes.
struct RootHooks {
  int max_depth = kMaxIteration;                            // deepest iteration
  void (*after_iteration)(int depth, int score) = nullptr;  // called at the end of each
  // The root moves to search, ended by 0, in place of all. What they score is not learned.
  const Move* only = nullptr;
};
extern RootHooks root_hooks;

// Finds a move for the current position within `limit_time`: from the book, or by iterative
// deepening, or by the randomised root search when that is on. Writes it and returns true, or
// returns false when there is no legal move or none was found in time. The result goes to the learn
// table. Moves kept for "redo" survive.
bool SearchMove(Move& move);

// Resets the search for the current root; used by the randomised root search.
void init_search();

// Frees the lines of `pv_table`, after merging them into the tree of principal variations or not.
void MergeLines();
void DropLines();

// Builds the list of the root moves to search. False when there is none, or the position illegal.
bool ListRootMoves();

// Puts the result of a search of all root moves into the learn table.
void LearnResult(int score, int depth);

// Whether the configuration lets the book move, and this time's draw does (51 in 101), and the book
// has a move among the first `count` root moves: then it is written.
bool BookAnswers(int count, Move& move);

// Bishops, rooks and queens of a side.
int SweepCnt(int side);

// Does nothing; the hook for resetting the repetition state.
void set_rep();

// Record of one search phase; no search code depends on it.
struct PhaseInfo {
  int counters[4];
  int flags[2];
  int amount;
  int more_counters[4];
};

// The record's first flag.
int tree_is_good(const PhaseInfo& phase);

// Zeroes the record but for the stored amount.
void PhaseInfoReset(PhaseInfo& phase, int amount);

}  // namespace tarvyle
