#include "uci/infolines.h"

#include <algorithm>
#include <initializer_list>
#include <string>

#include "position/text.h"
#include "position/types.h"
#include "pv/line.h"
#include "search/hash.h"
#include "uci/output.h"
#include "uci/scorewords.h"

namespace tarvyle::uci {

namespace {

constexpr std::uint32_t kSample = 500;        // slots looked at of each table
constexpr std::uint32_t kNoKey = 0xFFFFFFFF;  // high half of a key that is hardly ever there

// In permille.
std::uint32_t TableFill() {
  std::uint32_t used = 0;
  for (const int side : {White, Black}) {
    for (std::uint32_t slot = 0; slot < kSample; ++slot) {
      used += HashEmptyNode(side, slot, kNoKey, 0) ? 0 : 1;
    }
  }
  return used * 1000 / (2 * kSample);
}

std::string EffortText(const Effort& effort) {
  const auto milliseconds =
      static_cast<std::uint64_t>(std::max<std::int64_t>(effort.milliseconds, 1));
  return " nodes " + std::to_string(effort.nodes) + " nps " +
         std::to_string(effort.nodes * 1000 / milliseconds) + " time " +
         std::to_string(effort.milliseconds) + " hashfull " + std::to_string(TableFill());
}

}  // namespace

void SayLine(const SearchStatus& status, const Effort& effort) {
  std::string text = "info depth " + std::to_string(status.depth) + " score " +
                     UciScore(status.score, LineLen(status.line)) + EffortText(effort) + " pv";
  for (const Move* move = status.line; *move != 0; ++move)
    text += std::string(" ") + MoveToStr(*move);
  Say(text);
}

void SayEffort(const Effort& effort) { Say("info" + EffortText(effort)); }

void SayProgress(int depth, Move move, int number, const Effort& effort) {
  std::string text = "info depth " + std::to_string(depth);
  if (move != 0) {
    text +=
        std::string(" currmove ") + MoveToStr(move) + " currmovenumber " + std::to_string(number);
  }
  Say(text + EffortText(effort));
}

}  // namespace tarvyle::uci
