#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

// Whoever includes this uses the engine as well:
// IWYU pragma: begin_exports
#include "position/attack.h"
#include "position/directions.h"
#include "position/enpassant.h"
#include "position/game.h"
#include "position/hashkey.h"
#include "position/legal.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"
#include "tests/support/data_rows.h"
// IWYU pragma: end_exports

// Helpers of the tests that need a position.

namespace tarvyle::support {

// Starts the engine, unless that has been done.
void StartEngineOnce();

inline Square At(const char* name) { return StrToSq(name); }

// The position part of what a process has right after its start.
class PositionTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { StartEngineOnce(); }

  void SetUp() override {
    ClearRepetitions();
    set_dir(White);
    ply = 0;
    treeCnt[0] = 0;
    ASSERT_TRUE(InitNewGame());
  }
};

// Death-test predicate: the process aborted.
inline testing::KilledBySignal Aborted() { return testing::KilledBySignal(SIGABRT); }

// What the process has written to standard error when it aborts on a broken invariant.
inline constexpr const char* kSilence = "^$";

inline void SetUpPosition(const std::string& fen) { ASSERT_TRUE(InitGame(fen.c_str())) << fen; }

// The list of ply `ply`.
inline std::vector<Move> CurrentList() { return {tree + treeCnt[ply], tree + treeCnt[ply + 1]}; }

inline std::string ListText(const std::vector<Move>& list) {
  std::string text;
  for (const Move move : list) {
    if (!text.empty()) text += ' ';
    text += MoveToStr(move);
  }
  return text;
}

// What a generator lists, as text; "illegal" when it refuses the position.
template <typename Generator>
std::string ListedBy(Generator generate) {
  return generate() ? ListText(CurrentList()) : "illegal";
}

// The legal move with this text, or 0 with a failure.
inline Move LegalMove(const std::string& text) {
  Move move = 0;
  EXPECT_TRUE(StrToMove(text, move)) << text;
  return move;
}

// Plays moves, given as "e2e4 e7e5", into the game.
inline void Play(const std::string& moves) {
  std::istringstream words(moves);
  for (std::string text; words >> text;) {
    ASSERT_TRUE(InsertMoveInGame(LegalMove(text), kTypedMove)) << text;
  }
}

// The names of the pieces on the board, row by row from a8; '.' is an empty square.
inline std::string BoardText() {
  std::string text;
  for (Square square = 0; square < kSquares; ++square) {
    const int colour = g.color[square];
    text += colour == NoColour ? '.' : kPieceLetters[colour][g.board[square]];
    if (FileOf(square) == 7 && square != H1) text += '/';
  }
  return text;
}

// The record without a piece, White to move.
inline GameRecord EmptyRecord() {
  GameRecord record{};
  for (auto& square : record.list_sq) square = -1;
  for (auto& slot : record.list_idx) slot = -1;
  for (auto& colour : record.color) colour = NoColour;
  record.xside = Black;
  record.list_first[Black] = 16;
  record.list_last[Black] = 16;  // the next free slot
  return record;
}

inline bool SameBytes(const GameRecord& left, const GameRecord& right) {
  return std::memcmp(&left, &right, sizeof left) == 0;
}

// Whether all fields from the board to `start_key` are equal.
inline bool SamePosition(const GameRecord& left, const GameRecord& right) {
  constexpr std::size_t kFirst = offsetof(GameRecord, board);
  constexpr std::size_t kEnd = offsetof(GameRecord, game_len);
  const auto at = [](const GameRecord& record) {
    return reinterpret_cast<const unsigned char*>(&record) + kFirst;
  };
  return std::memcmp(at(left), at(right), kEnd - kFirst) == 0;
}

}  // namespace tarvyle::support
