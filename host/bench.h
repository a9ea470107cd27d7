#pragma once

#include <string>

namespace tarvyle {

// Which searches a bench makes, and how it tells them.
struct BenchOptions {
  int depth = 8;
  std::string style = "knowledge3";
  bool json = false;
};

// Searches a fixed set of positions to a fixed depth with a fixed seed; prints a line for each,
// then the total of nodes (the signature: the same build always prints the same), seconds and nodes
// per second, and at last "N nodes M nps", which test farms look for. Throws std::runtime_error for
// an unknown style.
void RunBench(const BenchOptions& options);

}  // namespace tarvyle
