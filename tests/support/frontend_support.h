#pragma once

#include <gtest/gtest.h>

#include <string>

// Whoever includes this uses the engine as well:
// IWYU pragma: begin_exports
#include "base/path.h"
#include "base/property.h"
#include "book/learn.h"
#include "frontend/console.h"
#include "frontend/loop.h"
#include "frontend/startup.h"
#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/root.h"
#include "search/state.h"
#include "search/status.h"
#include "tests/support/captured.h"
#include "tests/support/files.h"
// IWYU pragma: end_exports

// What the tests of the front end share: a folder of their own, what the program says, and a state
// like that of a fresh process.

namespace tarvyle::support {

inline constexpr const char* kStartText = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk";
inline constexpr const char* kAfterE4 = "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk";

// Reversible moves from the start position, again and again.
inline constexpr const char* kKnightMoves[] = {"b1c3", "b8c6", "c3b1", "c6b8"};

// The announcement of a position.
inline std::string Position(const std::string& text) { return "position " + text + "\n"; }

// Starts the engine with the smallest hash tables there are.
void StartWithSmallTables();

// Each test starts like a fresh process at the start position, with a clock that stands still, the
// seed 1, searches of three iterations, and an empty folder as the program's own.
class FrontEndTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { StartWithSmallTables(); }

  void SetUp() override {
    SetProgDir(folder_.Name().c_str());
    ResetProcess();
    world = {[] { return 0u; }, [] { return 1u; }};
    root_hooks = {3, nullptr};
    status_sink = [](const SearchStatus&) {};
  }

  void TearDown() override {
    world = {RealMilliseconds, RealSeed};
    root_hooks = {};
    status_sink = nullptr;
  }

  // A path in the test's folder.
  std::string Path(const std::string& name) const { return folder_.Path(name); }

  // Obeys lines of input, one after the other; what the program says to them.
  template <typename... Lines>
  static Said Obey(const Lines&... lines) {
    return Listen([&] { (ObeyLine((std::string(lines) + "\n").c_str()), ...); });
  }

  // Types a move into the game with a score, without an answer.
  static bool Play(const char* text, int score = 0) {
    Move move = 0;
    return StrToMove(text, move) && InsertMoveInGame(move, score);
  }

  TemporaryFolder folder_;
};

}  // namespace tarvyle::support
