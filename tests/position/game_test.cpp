#include "position/game.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "position/makemove.h"
#include "position/soundness.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::Aborted;
using support::LegalMove;
using support::Play;

class GameTest : public support::PositionTest {};
using GameDeathTest = GameTest;

constexpr const char* kSelfCheckFailed = "^---> InsertMoveInGame: error control summ \\?! \n$";

// --- the sum ---------------------------------------------------------------------------------

TEST_F(GameTest, SumAddsUnsignedBytes) {
  const unsigned char bytes[] = {1, 2, 0xFF, 0x80, 0};
  EXPECT_EQ(ControlSumm(bytes, 5), 1u + 2 + 255 + 128);
  EXPECT_EQ(ControlSumm(bytes, 2), 3u);
}

TEST_F(GameTest, SumOfNothingIsZero) {
  const unsigned char bytes[] = {1, 2};
  EXPECT_EQ(ControlSumm(bytes, 0), 0u);
  EXPECT_EQ(ControlSumm(bytes, -1), 0u);
  EXPECT_EQ(ControlSumm(nullptr, 0), 0u);
}

TEST_F(GameTest, SumOfManyBytesIsThirtyTwoBitsWide) {
  const std::vector<unsigned char> bytes(17'000'000, 0xFF);
  EXPECT_EQ(ControlSumm(bytes.data(), 17'000'000), static_cast<std::uint32_t>(17'000'000ull * 255));
}

// --- inserting -------------------------------------------------------------------------------

TEST_F(GameTest, InsertedMoveIsPlayedWithItsScore) {
  const Move move = LegalMove("e2e4");
  EXPECT_TRUE(InsertMoveInGame(move, -123));
  EXPECT_EQ(ply, 0);
  EXPECT_EQ(g.game_len, 1);
  EXPECT_EQ(g.game_max, 1);
  EXPECT_EQ(g.game_score[0], -123);
  EXPECT_EQ(LastMove(), move);
  EXPECT_EQ(g.game_keys[0], g.key);
  EXPECT_EQ(g.side, Black);
  EXPECT_EQ(support::BoardText(),
            "rnbqkbnr/pppppppp/......../......../....P.../......../PPPP.PPP/RNBQKBNR");
}

TEST_F(GameTest, EachMoveHasItsOwnScore) {
  for (const auto& [text, score] : {std::pair{"e2e4", 0}, {"e7e5", kTypedMove}, {"g1f3", -7}}) {
    ASSERT_TRUE(InsertMoveInGame(LegalMove(text), score));
  }
  EXPECT_EQ(g.game_score[0], 0);
  EXPECT_EQ(g.game_score[1], 1000001);
  EXPECT_EQ(g.game_score[2], -7);
}

TEST_F(GameTest, PositionOfAnInsertedMoveIsCountedOnce) {
  ClearRepetitions();
  Play("e2e4");
  for (std::uint32_t i = 0; i <= kRepetitionMask; ++i) {
    EXPECT_EQ(repetition_set[i], i == (g.key & kRepetitionMask) ? 1u : 0u);
  }
}

// Plays knights to and fro until the game has this many moves.
void PlayKnights(int moves) {
  const char* shuffle[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  while (g.game_len < moves) Play(shuffle[g.game_len % 4]);
}

TEST_F(GameTest, FourHundredMovesArePlayedAndNotOneMore) {
  PlayKnights(399);
  const Move last = LegalMove("f6g8");
  EXPECT_TRUE(InsertMoveInGame(last, 5));
  EXPECT_EQ(g.game_len, 400);
  const Move refused = LegalMove("g1f3");
  const GameRecord before = g;
  EXPECT_FALSE(InsertMoveInGame(refused, 5));
  EXPECT_TRUE(support::SameBytes(g, before));
  EXPECT_EQ(ply, 0);
}

TEST_F(GameTest, FullGameCanBeTakenBackAndReplayed) {
  PlayKnights(400);
  const GameRecord end = g;
  while (g.game_len > 0) UndoGameMove();
  EXPECT_EQ(g.key, g.start_key);
  while (g.game_len < g.game_max) RedoGameMove();
  EXPECT_TRUE(support::SameBytes(g, end));
}

TEST_F(GameTest, SearchOfTheDeepestPlyFitsAboveAFullGame) {
  PlayKnights(400);
  const GameRecord end = g;
  std::vector<Move> line;
  while (ply < kMaxPly) {
    ASSERT_TRUE(LegalMoveList());
    line.push_back(tree[treeCnt[ply]]);
    MakeMove(line.back());
  }
  EXPECT_EQ(LastMove(), g.game_moves[400 + kMaxPly - 1]);
  for (; !line.empty(); line.pop_back()) UnMakeMove(line.back());
  EXPECT_EQ(ply, 0);
  EXPECT_TRUE(support::SamePosition(g, end));
  EXPECT_EQ(g.game_len, 400);
}

// --- the self-check --------------------------------------------------------------------------

TEST_F(GameDeathTest, MoveToRedoFailsTheSelfCheckOfAnotherMove) {
  Play("e2e4 e7e5");
  UndoGameMove();
  const Move other = LegalMove("c7c5");
  EXPECT_EXIT(InsertMoveInGame(other, kTypedMove), Aborted(), kSelfCheckFailed);
}

TEST_F(GameDeathTest, MoveToRedoFailsTheSelfCheckOfTheSameMove) {
  Play("e2e4");
  UndoGameMove();
  const Move same = LegalMove("e2e4");
  EXPECT_EXIT(InsertMoveInGame(same, kTypedMove), Aborted(), kSelfCheckFailed);
}

TEST_F(GameDeathTest, HalfMoveCounterOfAnotherSearchFailsTheSelfCheck) {
  const Move move = LegalMove("e2e4");
  g.undo[0].fifty_before = 3;
  EXPECT_EXIT(InsertMoveInGame(move, 0), Aborted(), kSelfCheckFailed);
}

TEST_F(GameDeathTest, MoveThatNobodyHasLookedForFailsTheSelfCheckBehindAQuietMove) {
  Play("g1f3");
  ASSERT_EQ(g.fifty, 1);
  ASSERT_EQ(g.undo[1].fifty_before, 0);
  const Move move = MoveWord(Knight, StrToSq("g8"), StrToSq("f6"));
  EXPECT_EXIT(InsertMoveInGame(move, 0), Aborted(), kSelfCheckFailed);
}

TEST_F(GameDeathTest, WordsLeftInTheSlotFailTheSelfCheck) {
  const Move move = LegalMove("e2e4");
  void (*const damages[])() = {
      [] { g.game_moves[0] = 1; },   [] { g.game_keys[0] = std::uint64_t{1} << 40; },
      [] { g.undo[0].cap_sq = 1; },  [] { g.undo[0].cap_piece = 1; },
      [] { g.undo[0].cap_idx = 1; }, [] { g.undo[0].castle_before = 1; },
  };
  for (const auto damage : damages) {
    ASSERT_TRUE(InitNewGame());
    damage();
    EXPECT_EXIT(InsertMoveInGame(move, 0), Aborted(), kSelfCheckFailed);
  }
}

TEST_F(GameTest, SelfCheckComparesSumsOnly) {
  const Move move = LegalMove("e2e4");
  g.fifty = 3;
  g.undo[0].cap_sq = 3;  // becomes 0, while the counter of the slot becomes 3
  EXPECT_TRUE(InsertMoveInGame(move, 0));
}

// Only a kept word of the sum 0 lets the self-check pass.
TEST_F(GameTest, InsertedMoveDiscardsTheMovesKeptForRedo) {
  const Move move = LegalMove("e2e4");
  g.game_max = 3;
  EXPECT_TRUE(InsertMoveInGame(move, 0));
  EXPECT_EQ(g.game_len, 1);
  EXPECT_EQ(g.game_max, 1);
}

TEST_F(GameTest, WordsBehindTheSlotDoNotMatter) {
  const Move move = LegalMove("e2e4");
  g.game_moves[1] = 77;
  g.undo[1].cap_sq = 77;
  EXPECT_TRUE(InsertMoveInGame(move, 0));
}

// --- undo and redo ---------------------------------------------------------------------------

TEST_F(GameTest, UndoTakesBackTheLastMoveAndKeepsIt) {
  Play("e2e4 e7e5");
  const Move kept = LastMove();
  UndoGameMove();
  EXPECT_EQ(ply, 0);
  EXPECT_EQ(g.game_len, 1);
  EXPECT_EQ(g.game_max, 2);
  EXPECT_EQ(g.game_moves[1], kept);
  EXPECT_EQ(g.game_keys[1], std::uint64_t{0});
  EXPECT_EQ(g.side, Black);
  EXPECT_EQ(g.game_score[1], kTypedMove);
}

TEST_F(GameTest, UndoAtTheStartAndRedoAtTheEndDoNothing) {
  const GameRecord start = g;
  UndoGameMove();
  RedoGameMove();
  EXPECT_TRUE(support::SameBytes(g, start));
  Play("e2e4");
  const GameRecord end = g;
  RedoGameMove();
  EXPECT_TRUE(support::SameBytes(g, end));
  EXPECT_EQ(ply, 0);
}

TEST_F(GameTest, UndoThenRedoRestoresTheRecord) {
  Play("e2e4 d7d5 e4d5 g8f6 f1b5 c7c6 g1f3 c6b5 e1g1 h8g8");
  const GameRecord end = g;
  for (int taken_back = 1; taken_back <= g.game_max; ++taken_back) {
    for (int i = 0; i < taken_back; ++i) UndoGameMove();
    EXPECT_EQ(g.game_len, g.game_max - taken_back);
    EXPECT_TRUE(RecordIsSound(g));
    for (int i = 0; i < taken_back; ++i) RedoGameMove();
    EXPECT_TRUE(support::SameBytes(g, end)) << taken_back;
    EXPECT_EQ(ply, 0);
  }
}

TEST_F(GameTest, SetUpForgetsTheMovesForRedo) {
  Play("e2e4");
  UndoGameMove();
  ASSERT_TRUE(InitNewGame());
  RedoGameMove();
  EXPECT_EQ(g.game_len, 0);
  Play("d2d4");
  EXPECT_EQ(g.game_max, 1);
}

TEST_F(GameTest, GameAsALineEndsBehindTheMovesPlayed) {
  Play("e2e4 e7e5 g1f3");
  UndoGameMove();
  const Move* line = EndGameLine();
  EXPECT_EQ(support::ListText({line, line + 2}), "e2e4 e7e5");
  EXPECT_EQ(line[2], 0u);
}

TEST_F(GameTest, LineOfAFullGameEnds) {
  PlayKnights(400);
  g.game_moves[400] = 77;  // as a search may leave it
  const Move* line = EndGameLine();
  EXPECT_EQ(std::find(line, line + 500, 0u) - line, 400);
}

// --- moves that may be redone ------------------------------------------------------------------

TEST_F(GameTest, MovesToRedoComeBackAfterTheirSlotsWereUsed) {
  Play("e2e4 e7e5 g1f3 b8c6");
  for (int i = 0; i < 3; ++i) UndoGameMove();
  const GameRecord before = g;
  {
    const RedoGuard guard;
    const Move move = LegalMove("c7c5");
    MakeMove(move);
    MakeMove(0);
    UnMakeMove(0);
    UnMakeMove(move);
    EndGameLine();
    EXPECT_EQ(g.game_moves[1], 0u);
    EXPECT_EQ(g.game_moves[2], 0u);
  }
  EXPECT_TRUE(std::equal(before.game_moves, before.game_moves + 4, g.game_moves));
  EXPECT_EQ(g.game_len, 1);
  EXPECT_EQ(g.game_max, 4);
}

TEST_F(GameTest, NothingIsPutBackAtTheEndOfTheGame) {
  Play("e2e4");
  {
    const RedoGuard guard;
    g.game_moves[1] = 77;
  }
  EXPECT_EQ(g.game_moves[1], 77u);
  EXPECT_EQ(g.game_max, 1);
}

TEST_F(GameTest, AWholeGameCanBePutBack) {
  PlayKnights(400);
  while (g.game_len > 0) UndoGameMove();
  const GameRecord before = g;
  {
    const RedoGuard guard;
    std::fill(g.game_moves, g.game_moves + 400, 77u);
  }
  EXPECT_TRUE(support::SameBytes(g, before));
}

}  // namespace
}  // namespace tarvyle
