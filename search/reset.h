#pragma once

// Back to what a process has right after its start, for tests and tools. Tables, clock, play style
// and allowance stay.

namespace tarvyle {

// Resets what searches leave behind: everything in state.h but the kind of search, the history, the
// tree of principal variations.
void ResetSearchState();

// That, and the game, its repetition counters and the learn table: the start position, and no
// learned one.
void ResetEngine();

}  // namespace tarvyle
