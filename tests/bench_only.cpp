// `tarv bench --depth 4` and nothing else: less to build than the workbench, for tests/mutate.py.

#include <cstdio>
#include <exception>

#include "host/bench.h"
#include "host/engine.h"

int main() {
  try {
    if (!tarvyle::StartEngine()) return 1;
    tarvyle::RunBench({.depth = 4});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
