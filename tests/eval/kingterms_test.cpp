// King safety term by term: pairs of positions that differ, as far as the king is concerned, in one
// term alone, or in two.

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>

#include "eval/kingsafety.h"
#include "position/directions.h"
#include "position/record.h"
#include "position/types.h"
#include "tests/support/any_position.h"
#include "tests/support/build_kind.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_kingsafety.h"
#include "tests/support/plain_phase.h"

namespace tarvyle {
namespace {

using support::Below;
using support::PlainKing;

// What the engine says of a king and what the plain evaluation makes it up from.
struct Judged {
  int safety;
  PlainKing plain;
};

Judged Judge(int colour) {
  set_dir(White);
  return {KingSFTY(colour), support::PlainKingTerms(colour)};
}

// Without the phase's scaling: the other side has a full set of pieces or more.
bool IsUnscaled(int colour) { return support::PlainWeight(colour) >= 40; }

// The names of the terms in which two kings differ.
std::map<std::string, int> Differences(const PlainKing& before, const PlainKing& after) {
  std::map<std::string, int> amounts;
  for (const auto& [name, amount] : after.terms) amounts[name] += amount;
  for (const auto& [name, amount] : before.terms) amounts[name] -= amount;
  amounts["mildness"] = after.mildness - before.mildness;
  amounts["reward"] = after.reward - before.reward;
  std::erase_if(amounts, [](const auto& entry) { return entry.second == 0; });
  return amounts;
}

// One small change of a position's text: a piece taken away, another in its place, other rights.
std::string Changed(std::string fen, support::Random& random) {
  if (Below(random, 3) == 0) {
    static constexpr const char* kRights[] = {"-", "K", "Q", "KQ", "k", "q", "kq", "KQkq"};
    return fen.substr(0, fen.find(' ') + 3) + kRights[Below(random, 8)] + " -";
  }
  const std::size_t squares = fen.find(' ');
  std::size_t at = 0;
  do {
    at = static_cast<std::size_t>(Below(random, static_cast<int>(squares)));
  } while (fen[at] == '/' || fen[at] == 'K' || fen[at] == 'k');
  static constexpr const char* kMen = "1PNBRQ1pnbrq";
  fen[at] = kMen[Below(random, 12)];
  return fen;
}

// A rich position with a king at home now and then, so that rights mean something.
std::string RichBoard(support::Random& random) {
  static constexpr const char* kHomes[] = {
      "r3k2r/1qq5/8/8/8/8/1QQ5/R3K2R w KQkq -",
      "r1bqk2r/pp3ppp/8/8/8/8/PP3PPP/R1BQK2R w KQkq -",
      "rqq1k2r/p6p/8/8/8/8/P6P/R3KQQR w Kq -",
  };
  if (Below(random, 4) > 0) return support::RandomBoard(random);
  std::string fen = kHomes[Below(random, 3)];
  for (int changes = Below(random, 6); changes > 0; --changes) fen = Changed(fen, random);
  return fen;
}

bool Accepted(const std::string& fen) {
  int men[2] = {};
  for (const char letter : fen.substr(0, fen.find(' '))) {
    if (std::isalpha(static_cast<unsigned char>(letter)) != 0) {
      ++men[std::islower(static_cast<unsigned char>(letter)) != 0 ? Black : White];
    }
  }
  return men[White] <= 16 && men[Black] <= 16;
}

void SetUpCastled(const std::string& fen, bool castled) {
  support::SetUpRoot(fen);
  g.castled[White] = g.castled[Black] = castled ? 1 : 0;
}

// Terms that seldom change alone are met in pairs.
TEST(KingTerms, ChangeTheSafetyByTheirAmounts) {
  support::Random random(74);
  std::map<std::string, int> met;
  for (int round = support::Scaled(60000, 600000); round > 0 && !HasFailure(); --round) {
    const std::string before = RichBoard(random);
    const std::string after = Changed(before, random);
    if (!Accepted(before) || !Accepted(after)) continue;
    const bool castled[2] = {Below(random, 8) == 0, Below(random, 8) == 0};
    for (const int colour : {White, Black}) {
      SetUpCastled(before, castled[0]);
      if (!IsUnscaled(colour)) continue;
      const Judged first = Judge(colour);
      SetUpCastled(after, castled[1]);
      if (!IsUnscaled(colour)) continue;
      const Judged second = Judge(colour);
      const auto differences = Differences(first.plain, second.plain);
      if (differences.empty() || differences.size() > 2) continue;
      int amount = 0;
      std::string names;
      for (const auto& [name, difference] : differences) {
        amount += difference;
        names += name + ", ";
        ++met[name];
      }
      ASSERT_EQ(second.safety - first.safety, amount)
          << names << "colour " << colour << ": " << before << ", then " << after;
    }
  }
  for (const char* name :
       {"attacks on the ring", "shield", "no shield", "no pawn near", "no pawn on the king's file",
        "pawn attacks the front square", "check without a free square", "lines and no free square",
        "lines and one free square", "danger", "mildness", "long castling lost",
        "short castling lost", "no castling left", "reward"}) {
    EXPECT_GE(met[name], support::kSlowBuild ? 0 : 5) << name;
  }
}

}  // namespace
}  // namespace tarvyle
