// Random games: whatever is made can be taken back, and what is kept incrementally is right.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "position/image.h"
#include "position/makemove.h"
#include "position/soundness.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::SameBytes;
using support::SamePosition;

constexpr int kGames = 200;
constexpr int kLongestGame = 160;

using Counters = std::vector<std::uint32_t>;

Counters CurrentCounters() { return {std::begin(repetition_set), std::end(repetition_set)}; }

// Plays random games from the start position and from the positions of the reference data.
class RandomGamesTest : public support::PositionTest {
 protected:
  // A legal move, sometimes with a promotion that only text can name; 0 when there is none.
  Move RandomMove() {
    EXPECT_TRUE(LegalMoveList());
    if (ListLength() == 0) return 0;
    const Move move = tree[treeCnt[ply] + static_cast<int>(Below(ListLength()))];
    if ((move & kPromotion) == 0) return move;
    return (move & ~kPieceMask) | PieceBits(Knight + Below(4));
  }

  // Sets up a position and plays a game from it; returns the record before its first move.
  GameRecord PlayGame() {
    const auto& row = positions_[Below(static_cast<int>(positions_.size()))];
    EXPECT_TRUE(Below(4) == 0 ? InitNewGame() : InitGame(row[0].c_str()));
    const GameRecord start = g;
    for (int moves = 1 + static_cast<int>(Below(kLongestGame)); moves > 0; --moves) {
      const Move move = RandomMove();
      if (move == 0) break;
      EXPECT_TRUE(InsertMoveInGame(move, static_cast<int>(Below(1000))));
    }
    return start;
  }

  std::uint32_t Below(int bound) {
    return static_cast<std::uint32_t>(random_() % static_cast<std::uint32_t>(bound));
  }

  std::mt19937 random_{20};
  std::vector<std::vector<std::string>> positions_ = support::DataRows("positions.tsv");
};

TEST_F(RandomGamesTest, EveryMoveOfEveryPositionIsTakenBackBitForBit) {
  for (int game = 0; game < kGames; ++game) {
    PlayGame();
    if (!LegalMoveList()) continue;
    const std::vector<Move> list = support::CurrentList();
    const GameRecord before = g;
    for (const Move move : list) {
      MakeMove(move);
      ASSERT_TRUE(RecordIsSound(g)) << MoveToStr(move);
      UnMakeMove(move);
      ASSERT_TRUE(SameBytes(g, before)) << MoveToStr(move);
    }
  }
}

TEST_F(RandomGamesTest, RecordStaysSoundMoveByMove) {
  for (int game = 0; game < kGames; ++game) {
    PlayGame();
    ASSERT_TRUE(RecordIsSound(g));
    while (g.game_len > 0) {
      UndoGameMove();
      ASSERT_TRUE(RecordIsSound(g));
      ASSERT_EQ(ply, 0);
    }
  }
}

TEST_F(RandomGamesTest, TakingBackTheWholeGameRestoresThePosition) {
  for (int game = 0; game < kGames; ++game) {
    const GameRecord start = PlayGame();
    const int played = g.game_len;
    while (g.game_len > 0) UndoGameMove();
    ASSERT_TRUE(SamePosition(g, start));
    EXPECT_EQ(g.key, g.start_key);
    EXPECT_EQ(g.fifty, start.fifty);
    EXPECT_EQ(g.game_max, played);
  }
}

TEST_F(RandomGamesTest, UndoAndRedoRestoreTheRecordBitForBit) {
  for (int game = 0; game < kGames; ++game) {
    PlayGame();
    const GameRecord end = g;
    const Counters counters = CurrentCounters();
    for (int round = 0; round < 3; ++round) {
      const auto taken_back = 1 + Below(g.game_len + 1);
      for (std::uint32_t i = 0; i < taken_back; ++i) UndoGameMove();
      while (g.game_len < g.game_max) RedoGameMove();
      ASSERT_TRUE(SameBytes(g, end));
    }
    EXPECT_EQ(CurrentCounters(), counters);
  }
}

TEST_F(RandomGamesTest, MovesToRedoOutliveLooking) {
  for (int game = 0; game < kGames; ++game) {
    PlayGame();
    const GameRecord end = g;
    for (auto taken_back = Below(g.game_len + 1); taken_back > 0; --taken_back) UndoGameMove();
    LegalMoveList();
    Move move = 0;
    StrToMove("e2e4", move);
    StrToMove("o-o", move);
    while (g.game_len < g.game_max) RedoGameMove();
    EXPECT_TRUE(SamePosition(g, end));
    EXPECT_TRUE(std::equal(g.game_moves, g.game_moves + g.game_max, end.game_moves));
    EXPECT_EQ(g.fifty, end.fifty);
  }
}

TEST_F(RandomGamesTest, SavedGamesComeBackBitForBit) {
  for (int game = 0; game < kGames; ++game) {
    PlayGame();
    const GameRecord end = g;
    for (auto taken_back = Below(g.game_len + 1); taken_back > 0; --taken_back) UndoGameMove();
    TagRecord();
    const GameRecord image = g;
    ASSERT_TRUE(InitNewGame());
    ASSERT_TRUE(RestoreImage(image));
    ASSERT_TRUE(SameBytes(g, image));
    while (g.game_len < g.game_max) RedoGameMove();
    EXPECT_TRUE(SamePosition(g, end));
  }
}

// Lines as a search makes them, null moves included, from the end of a game.
TEST_F(RandomGamesTest, DeepLinesAreTakenBackBitForBit) {
  constexpr int kDeepest = 97;
  for (int game = 0; game < kGames; ++game) {
    PlayGame();
    LegalMoveList();
    GameRecord before = g;
    const Counters counters = CurrentCounters();
    std::vector<Move> line;
    while (ply < kDeepest) {
      const bool null_move = Below(10) == 0 && !Check();
      const Move move = null_move ? 0 : RandomMove();
      if (!null_move && move == 0) break;
      MakeMove(move);
      line.push_back(move);
      ASSERT_TRUE(RecordIsSound(g));
    }
    while (!line.empty()) {
      UnMakeMove(line.back());
      line.pop_back();
    }
    ASSERT_EQ(ply, 0);
    for (int i = g.game_len; i < kRecordMoves; ++i) {
      before.undo[i].fifty_before = g.undo[i].fifty_before;
    }
    ASSERT_TRUE(SameBytes(g, before));
    EXPECT_EQ(CurrentCounters(), counters);
  }
}

}  // namespace
}  // namespace tarvyle
