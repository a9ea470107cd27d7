#pragma once

// The engine started, for benchmarks.

namespace tarvyle {

// Builds all tables, with hash tables of the usual size; once for all benchmarks.
void StartOnce();

}  // namespace tarvyle
