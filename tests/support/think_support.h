#pragma once

#include <gtest/gtest.h>
#include <chrono>
#include <compare>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

// Whoever includes this uses the front end as well:
// IWYU pragma: begin_exports
#include "tests/support/uci_support.h"
#include "uci/knowledge.h"
#include "uci/options.h"
// IWYU pragma: end_exports

// What the tests of UCI searches share: positions, and what is read out of the lines that are said.

namespace tarvyle::support {

inline constexpr const char* kMiddle =
    "fen r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - - 0 1";
inline constexpr const char* kEndlessCaptures = "fen qqqqkqqq/qqqqqqqq/8/8/8/8/QQQQQQQQ/QQQQKQQQ w";
inline constexpr const char* kMateAtOnce = "fen 6k1/5ppp/8/8/8/8/8/R6K w - - 0 1";
inline constexpr const char* kMateInTwo = "fen 7k/8/8/8/8/8/R7/1R4K1 w - - 0 1";
inline constexpr const char* kMatedNext = "fen 4k3/R7/8/8/8/8/1R6/4K3 b - - 0 1";
inline constexpr const char* kMatedRoot = "fen 7k/6Q1/6K1/8/8/8/8/8 b - - 0 1";
inline constexpr const char* kStalemated = "fen 7k/5Q2/6K1/8/8/8/8/8 b - - 0 1";
inline constexpr const char* kSingleReply = "fen k7/8/8/8/8/7p/7P/7K w - - 0 1";
inline constexpr const char* kSingleReplyOfBlack = "fen 7k/7p/7P/8/8/8/8/K7 b - - 0 1";
inline constexpr const char* kNotSearched = "info string not searched: the only move";
inline constexpr const char* kFromBook = "info string the book's move";
inline constexpr const char* kUntouched =
    "info string no move was searched in time: the best at first sight";

class Thinks : public UciTest {
 protected:
  Thinks() {
    uci::KnowledgeIsStale();
    uci::FreshenKnowledge();
  }

  void Set(const std::string& words) {
    EXPECT_EQ(Said([&] { uci::ObeySetOption("name " + words); }), Lines());
  }
};

// The lines with a score.
inline Lines ThinkingLines(const Lines& said) {
  Lines lines = Beginning(said, "info depth");
  std::erase_if(lines, [](const std::string& line) { return line.find(" score ") == line.npos; });
  return lines;
}

// The move that is said, which is the last line.
inline std::string BestMoveIn(const Lines& said) {
  if (said.empty() || !said.back().starts_with("bestmove ")) return "none";
  return said.back().substr(9);
}

inline long long LastNumber(const Lines& said, std::string_view word) {
  long long number = -1;
  for (const std::string& line : Beginning(said, "info ")) {
    if (line.starts_with("info string")) continue;
    if (const long long found = NumberAfter(line, word); found >= 0) number = found;
  }
  return number;
}

inline std::string LastScore(const Lines& said) {
  const Lines lines = ThinkingLines(said);
  return lines.empty() ? "none" : TextBetween(lines.back(), "score", "nodes");
}

// All but what a repeated search may change.
inline Lines WithoutTimes(const Lines& said) {
  Lines lines;
  for (const std::string& line : ThinkingLines(said)) {
    lines.push_back(TextBetween(line, "depth", "nps") + ": " + TextBetween(line, "pv"));
  }
  return lines;
}

// A GUI that sends a text after a while.
class LateGui {
 public:
  template <typename Send>
  explicit LateGui(Send send)
      : thread_([send] {
          std::this_thread::sleep_for(std::chrono::milliseconds(kPause));
          send();
        }) {}
  ~LateGui() { thread_.join(); }
  LateGui(const LateGui&) = delete;
  LateGui& operator=(const LateGui&) = delete;

  // Whether it has been waited for.
  bool WasFirst() const { return std::chrono::steady_clock::now() - begin_ >= Pause(); }

 private:
  static constexpr int kPause = 60;  // milliseconds
  static std::chrono::milliseconds Pause() { return std::chrono::milliseconds(kPause); }

  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
  std::thread thread_;
};

}  // namespace tarvyle::support
