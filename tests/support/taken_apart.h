#pragma once

#include <map>
#include <string>
#include <vector>

// The engine's evaluation of one side, taken apart: its own procedures are asked piece by piece,
// and once more with one thing changed, so that the difference is one term.

namespace tarvyle::support {

// Amounts other than 0 by the name of the term, in the order of the piece list. The names are those
// of the plain evaluation's ledger.
using TermAmounts = std::map<std::string, std::vector<int>>;

// The terms of one side, and their sum with the piece-square values.
struct TakenApart {
  TermAmounts terms;
  int total = 0;

  std::vector<int> Of(const std::string& term) const;
};

// Takes the current position's evaluation of `colour` apart.
TakenApart TakeApart(int colour);

}  // namespace tarvyle::support
