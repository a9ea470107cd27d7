#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tarvyle {

// Which searches a bench makes, and how it tells them.
struct BenchOptions {
  int depth = 8;
  std::string style = "knowledge3";
  bool json = false;
};

// Is given what a bench tells, piece by piece; each ends with its line.
using BenchReader = std::function<void(std::string_view text)>;

// Searches a fixed set of positions to a fixed depth with a fixed seed; tells a line for each, then
// the total of nodes (the signature: the same build always has the same), seconds and nodes per
// second, and at last "N nodes M nps", which test farms look for. The style stays in use
// afterwards. Throws std::runtime_error for an unknown one.
void RunBench(const BenchOptions& options, const BenchReader& reader);

}  // namespace tarvyle
