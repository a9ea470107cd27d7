#pragma once

#include <map>
#include <string>

// The plain evaluation of a king's safety.

namespace tarvyle::support {

// Squares on lines and jumps to the king of `colour` that the opponent attacks along them.
int PlainAttackedLines(int colour);

// What the safety of the king of `colour` is made of, by name, before the phase scales it.
struct PlainKing {
  std::map<std::string, int> terms;
  int sum = 0;
  int mildness = 0;  // given back to an attacked king, unscaled
  int reward = 0;    // for having castled, scaled before the others and with them

  void Add(const std::string& term, int amount);
};
PlainKing PlainKingTerms(int colour);

// The term of the king of `colour`.
int PlainKingSafety(int colour);

}  // namespace tarvyle::support
