#include "uci/golimits.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/number.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"
#include "uci/output.h"
#include "uci/words.h"

namespace tarvyle::uci {

namespace {

constexpr std::int64_t kMost = 1'000'000'000'000;  // 31 years in milliseconds

constexpr std::array<std::string_view, 12> kWords = {
    "wtime", "btime", "winc", "binc",     "movestogo", "movetime",
    "depth", "nodes", "mate", "infinite", "ponder",    "searchmoves"};

bool IsKeyword(std::string_view word) {
  return std::find(kWords.begin(), kWords.end(), word) != kWords.end();
}

std::string_view Peek(std::string_view rest) { return NextWord(rest); }

void Put(Limits& limits, std::string_view word, std::int64_t number) {
  const auto count = static_cast<int>(std::clamp<std::int64_t>(number, 0, 1'000'000));
  if (word == "wtime") limits.time[White] = std::max<std::int64_t>(number, 0);
  if (word == "btime") limits.time[Black] = std::max<std::int64_t>(number, 0);
  if (word == "winc") limits.increment[White] = std::max<std::int64_t>(number, 0);
  if (word == "binc") limits.increment[Black] = std::max<std::int64_t>(number, 0);
  if (word == "movestogo") limits.moves_to_go = count;
  if (word == "movetime") limits.move_time = std::max<std::int64_t>(number, 0);
  if (word == "depth") limits.depth = std::max(count, 1);
  if (word == "nodes") limits.nodes = static_cast<std::uint64_t>(std::max<std::int64_t>(number, 1));
  if (word == "mate") limits.mate = std::max(count, 1);
}

void ReadNumber(Limits& limits, std::string_view word, std::string_view& rest) {
  std::int64_t number = 0;
  if (!ReadInteger(Peek(rest), number)) {
    SayInfo("a number was expected after " + std::string(word));
    return;
  }
  NextWord(rest);
  Put(limits, word, std::clamp(number, -kMost, kMost));
}

bool IsListed(Move move) {
  return LegalMoveList() && std::find(tree, tree + treeCnt[1], move) != tree + treeCnt[1];
}

void ReadMoves(Limits& limits, std::string_view& rest) {
  for (std::string_view text = Peek(rest); !text.empty() && !IsKeyword(text); text = Peek(rest)) {
    NextWord(rest);
    Move move = 0;
    if (StrToMove(text, move) && IsListed(move)) {
      limits.only.push_back(move);
    } else {
      SayInfo("not a move to search: " + std::string(text));
    }
  }
}

bool IsBounded(const Limits& limits) {
  return limits.time[g.side] >= 0 || limits.move_time >= 0 || limits.depth > 0 ||
         limits.nodes > 0 || limits.mate > 0;
}

}  // namespace

Limits ReadLimits(std::string_view words) {
  Limits limits;
  for (std::string_view word = NextWord(words); !word.empty(); word = NextWord(words)) {
    if (word == "infinite" || word == "ponder") {
      limits.infinite = true;
    } else if (word == "searchmoves") {
      ReadMoves(limits, words);
    } else if (IsKeyword(word)) {
      ReadNumber(limits, word, words);
    } else {
      SayInfo("unknown in go: " + std::string(word));
    }
  }
  limits.infinite = limits.infinite || !IsBounded(limits);
  return limits;
}

}  // namespace tarvyle::uci
