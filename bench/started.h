#pragma once

// The engine started, for benchmarks.

namespace tarvyle {

inline constexpr int kUsualEntries = 0x80000;  // of each hash table: "hash size" 38

// Builds all tables, with hash tables of the usual size; once for all benchmarks.
void StartOnce();

}  // namespace tarvyle
