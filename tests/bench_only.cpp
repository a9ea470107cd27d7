// bench_only <depth>: what `tarv bench --depth` prints, with less to build than the workbench, for
// tests/mutate.py.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string_view>

#include "host/bench.h"
#include "host/engine.h"

int main(int count, char** words) {
  if (count != 2) return 2;
  try {
    if (!tarvyle::StartEngine()) return 1;
    tarvyle::RunBench({.depth = std::atoi(words[1])},
                      [](std::string_view text) { std::cout << text << std::flush; });
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
