#pragma once

#include <cstdint>

#include "uci/golimits.h"

namespace tarvyle::uci {

// How long a search may take, in milliseconds.
struct Allowance {
  std::int64_t last_start;  // no iteration begins after that
  std::int64_t most;        // the search ends then
};

inline constexpr std::int64_t kNoLimit = INT64_MAX;

// The allowance of `side` within these limits, when each move loses `overhead` milliseconds on its
// way. Without a clock or a time for the move there is no limit.
Allowance AllowanceFor(const Limits& limits, int side, std::int64_t overhead);

}  // namespace tarvyle::uci
