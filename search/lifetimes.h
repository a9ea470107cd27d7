#pragma once

// How long things live: process > game > search > stage > iteration. Each of these functions begins
// one life anew, and with it the shorter ones below; what it leaves alone, it says. The front end
// puts its own records on top (ResetProcess in frontend/startup.h). What is built once stays for
// good: attack tables, keys, the memory of the transposition tables.

namespace tarvyle {

// --- process -------------------------------------------------------------------------------------

// A process before it reads its files: all below, and the settings.
void BeginProcess();

// A process that has learned nothing and played nothing: all below, the learn table and the
// repetition counters. The settings stay, for they have been chosen.
void ForgetAll();

// What searches have left for later ones, and with it the latest search, stage and iteration. The
// game stays, and what has been learned. The transposition tables stay too: each search empties
// them before it begins.
void ForgetSearches();

// --- game ----------------------------------------------------------------------------------------

// The start position, at the root and with an empty root list, for a process that forgets; "new"
// and the start of the program call InitNewGame, which sets up the board alone. What searches have
// left stays: other games may lead to the same positions. So do the repetition counters: what a
// game adds to them is not taken back.
void BeginGame();

// --- search --------------------------------------------------------------------------------------

// For the current root: a new result, killers, tree of principal variations, transposition tables,
// evaluation tables and clock, and no iteration yet. What searches have left stays for the root
// search to use.
void BeginSearch();

// That, and a cleared history, ordering values and root list, and the random generator seeded; used
// by the randomised root search.
void init_search();

// Does nothing; the hook for resetting the repetition state.
void set_rep();

// --- stage, iteration ----------------------------------------------------------------------------

// A stage is begun by TimeReset (clock.h): its allowance has been set, its iterations come later.

// An iteration of this depth.
void BeginIteration(int depth);

}  // namespace tarvyle
