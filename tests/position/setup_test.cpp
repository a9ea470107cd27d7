#include "position/setup.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "position/soundness.h"
#include "tests/support/captured.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class SetupTest : public support::PositionTest {};

TEST_F(SetupTest, StartPositionIsSetUpWithoutAWord) {
  const support::Said said = support::Listen([] { EXPECT_TRUE(InitNewGame()); });
  EXPECT_EQ(said.out + said.err, "");
  EXPECT_EQ(support::BoardText(),
            "rnbqkbnr/pppppppp/......../......../......../......../PPPPPPPP/RNBQKBNR");
  EXPECT_EQ(g.side, White);
  EXPECT_EQ(g.xside, Black);
  EXPECT_EQ(g.castle, 15u);
  EXPECT_EQ(g.ep_sq, 0);
}

TEST_F(SetupTest, StartPositionIsThatOfItsText) {
  const GameRecord start = g;
  support::SetUpPosition("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
  EXPECT_TRUE(support::SameBytes(g, start));
}

// The whole record of a position, built field by field.
TEST_F(SetupTest, RecordHoldsThePositionAndNothingElse) {
  GameRecord expected = support::EmptyRecord();
  const auto place = [&](int piece, int colour, Square square, int slot) {
    expected.board[square] = piece;
    expected.color[square] = colour;
    expected.list_idx[square] = slot;
    expected.list_sq[slot] = square;
    expected.piece_cnt[colour][piece] += 1;
    const std::uint64_t key = hashRnd[(colour * 8 + piece) * 64 + square];
    expected.key ^= key;
    expected.color_key[colour] ^= key;
  };
  place(Rook, Black, 0, 16);
  place(King, Black, 4, 17);
  place(Pawn, Black, 10, 18);
  place(Pawn, White, 25, 0);
  place(Pawn, Black, 26, 19);
  place(King, White, 60, 1);
  expected.list_last[White] = 1;
  expected.list_last[Black] = 19;
  expected.material[White] = 1001000;
  expected.material[Black] = 1007000;
  expected.pawn_file_cnt[White][1] = 1;
  expected.pawn_row_cnt[White][3] = 1;
  expected.pawn_file_cnt[Black][2] = 2;
  expected.pawn_row_cnt[Black][1] = 1;
  expected.pawn_row_cnt[Black][3] = 1;
  expected.castle = 4;
  expected.king_sq[White] = 60;
  expected.king_sq[Black] = 4;
  expected.start_key = expected.key;
  support::SetUpPosition("r3k3/2p5/8/1Pp5/8/8/8/4K3 w q - 17 40");
  EXPECT_TRUE(support::SameBytes(g, expected));
  expected.side = Black;
  expected.xside = White;
  support::SetUpPosition("r3k3/2p5/8/1Pp5/8/8/8/4K3 b q - 17 40");
  EXPECT_TRUE(support::SameBytes(g, expected));
}

// The squares of a colour's pieces in slot order.
std::string SquaresBySlot(int colour) {
  std::string squares;
  for (int slot = g.list_first[colour]; slot <= g.list_last[colour]; ++slot) {
    squares += chb[g.list_sq[slot]];
  }
  return squares;
}

TEST_F(SetupTest, StartPositionHandsOutSlotsFromA8ToH1) {
  EXPECT_EQ(SquaresBySlot(White), "a2b2c2d2e2f2g2h2a1b1c1d1e1f1g1h1");
  EXPECT_EQ(SquaresBySlot(Black), "a8b8c8d8e8f8g8h8a7b7c7d7e7f7g7h7");
}

TEST_F(SetupTest, SlotsAreHandedOutInTheOrderOfTheText) {
  support::SetUpPosition("7k/q6P/8/8/8/r6N/8/K6p");
  EXPECT_EQ(SquaresBySlot(White), "h7h3a1");
  EXPECT_EQ(SquaresBySlot(Black), "h8a7a3h1");
  EXPECT_EQ(g.list_last[White], 2);
  EXPECT_EQ(g.list_last[Black], 19);
}

TEST_F(SetupTest, TwoBareKingsAreAccepted) {
  ASSERT_TRUE(InitGame("8/8/8/8/8/8/8/K6k w - -"));
  EXPECT_EQ(g.king_sq[White], StrToSq("a1"));
  EXPECT_EQ(g.king_sq[Black], StrToSq("h1"));
}

TEST_F(SetupTest, SquaresThatTheTextDoesNotReachStayEmpty) {
  ASSERT_TRUE(InitGame("k7/K7"));
  EXPECT_EQ(support::BoardText(),
            "k......./K......./......../......../......../......../......../........");
}

TEST_F(SetupTest, BoardFieldAloneGivesWhiteToMoveAndNoRights) {
  ASSERT_TRUE(InitGame("r3k2r/8/8/8/8/8/8/R3K2R"));
  EXPECT_EQ(g.side, White);
  EXPECT_EQ(g.xside, Black);
  EXPECT_EQ(g.castle, 0u);
  EXPECT_EQ(g.ep_sq, 0);
}

struct AcceptedRow {
  const char* text;
  const char* board;
};

TEST_F(SetupTest, BoardFieldIsOneStreamOfSixtyFourSquares) {
  const char* kings = "k......./K......./......../......../......../......../......../........";
  const AcceptedRow rows[] = {
      {"k7K", kings},
      {"k/7/K", kings},
      {"/k34//K/", kings},
      {"k11111/11K7", kings},
      {"k7/K88888888888 w - -", kings},
      {"8/8/8/8/8/8/8/K6k",
       "......../......../......../......../......../......../......../K......k"},
      {"P6p/8/8/k7/K7/8/8/p6P",
       "P......p/......../......../k......./K......./......../......../p......P"},
      {"PPPPPPPPPPPPPPPK/pppppppppppppppk",
       "PPPPPPPP/PPPPPPPK/pppppppp/pppppppk/......../......../......../........"},
      {"QQQQQQQQQQQQQQQK/qqqqqqqqqqqqqqqk",
       "QQQQQQQQ/QQQQQQQK/qqqqqqqq/qqqqqqqk/......../......../......../........"},
  };
  for (const AcceptedRow& row : rows) {
    EXPECT_TRUE(InitGame(row.text)) << row.text;
    EXPECT_EQ(support::BoardText(), row.board) << row.text;
    EXPECT_TRUE(RecordIsSound(g)) << row.text;
  }
}

TEST_F(SetupTest, PawnsMayStandOnTheFirstAndTheLastRow) {
  ASSERT_TRUE(InitGame("Pp5k/8/8/8/8/8/8/Pp5K w - -"));
  EXPECT_EQ(g.pawn_row_cnt[White][0], 1);
  EXPECT_EQ(g.pawn_row_cnt[White][7], 1);
  EXPECT_EQ(g.pawn_row_cnt[Black][0], 1);
  EXPECT_EQ(g.pawn_row_cnt[Black][7], 1);
}

TEST_F(SetupTest, SideNotToMoveMayBeInCheck) { EXPECT_TRUE(InitGame("k7/R7/8/8/8/8/8/K7 w - -")); }

struct FieldsRow {
  const char* fields;
  int side;
  std::uint32_t castle;
};

TEST_F(SetupTest, SideAndRightsAreRead) {
  const FieldsRow rows[] = {
      {"", White, 0},
      {" ", White, 0},
      {" w", White, 0},
      {" b", Black, 0},
      {" -", White, 0},
      {" b -", Black, 0},
      {" w - -", White, 0},
      {" w Q", White, 1},
      {" w K", White, 2},
      {" w q", White, 4},
      {" w k", White, 8},
      {" b KQkq -", Black, 15},
      {" b qkQK -", Black, 15},
      {" w KKKq -", White, 6},
      {"  w  KQ  - ", White, 3},
      {"\nw\nKQ\n-\n", White, 3},
      {" w KQ - 12 34", White, 3},
      {" w KQ - what ever else", White, 3},
  };
  for (const FieldsRow& row : rows) {
    // No rook anywhere: the rights are not checked against the board.
    EXPECT_TRUE(InitGame((std::string("4k3/8/8/8/8/8/8/4K3") + row.fields).c_str())) << row.fields;
    EXPECT_EQ(g.side, row.side) << row.fields;
    EXPECT_EQ(g.xside, 1 - row.side) << row.fields;
    EXPECT_EQ(g.castle, row.castle) << row.fields;
    EXPECT_EQ(g.ep_sq, 0) << row.fields;
  }
}

TEST_F(SetupTest, BlanksMayStandBeforeTheText) {
  EXPECT_TRUE(InitGame(" \n k7/K7 b"));
  EXPECT_EQ(g.side, Black);
}

TEST_F(SetupTest, FurtherFieldsDoNotCount) {
  ASSERT_TRUE(InitGame("4k3/8/8/8/8/8/8/4K3 w - - 49 120"));
  EXPECT_EQ(g.fifty, 0);
  EXPECT_EQ(g.game_len, 0);
  EXPECT_EQ(g.game_max, 0);
}

TEST_F(SetupTest, EnPassantSquareIsAcceptedBehindAnEnemyPawnThatHasJustPassedIt) {
  struct Row {
    const char* text;
    const char* square;
  };
  const Row rows[] = {
      {"4k3/8/8/4p3/8/8/8/4K3 w - e6", "e6"},   {"4k3/8/8/4p3/8/8/8/4K3 w - e6x", "e6"},
      {"4k3/8/8/4p3/8/8/8/4K3 w - e6e7", "e6"}, {"4k3/8/8/p7/8/8/8/4K3 w - a6 0 1", "a6"},
      {"4k3/8/8/8/7P/8/8/4K3 b - h3", "h3"},    {"4k3/8/8/4p3/8/8/8/4K3 - - e6", "e6"},
  };
  for (const Row& row : rows) {
    EXPECT_TRUE(InitGame(row.text)) << row.text;
    EXPECT_EQ(g.ep_sq, StrToSq(row.square)) << row.text;
    EXPECT_EQ(EnPassantSquare(), StrToSq(row.square)) << row.text;
  }
}

struct RefusedRow {
  const char* reason;
  const char* text;
};

constexpr RefusedRow kRefusedRows[] = {
    {"no field", ""},
    {"no field", " \n "},
    {"no black king", "8/8/8/8/8/8/8/K7 w - -"},
    {"no white king", "8/8/8/8/8/8/8/k7 w - -"},
    {"no king", "8/8/8/8/8/8/8/8 w - -"},
    {"two white kings", "8/8/8/8/8/8/K7/K6k w - -"},
    {"two black kings", "8/8/8/8/8/8/k7/K6k w - -"},
    {"17 white pieces", "PPPPPPPP/PPPPPPPP/K6k w - -"},
    {"17 black pieces", "pppppppp/pppppppp/K6k w - -"},
    {"letter x", "8/8/8/8/8/8/8/Kx5k w - -"},
    {"letter x at the end", "8/8/8/8/8/8/8/K6kx w - -"},
    {"digit 0", "8/8/8/8/8/8/8/K06k w - -"},
    {"digit 9", "9/8/8/8/8/8/8/K6k w - -"},
    {"hyphen", "-8/8/8/8/8/8/8/K6k w - -"},
    {"tab is no separator", "8/8/8/8/8/8/8/K6k\tw - -"},
    {"carriage return is no separator", "8/8/8/8/8/8/8/K6k\r"},
    {"piece on a 65th square", "8/8/8/8/8/8/8/K6kP w - -"},
    {"piece far behind the board", "8/8/8/8/8/8/8/K6k88888P w - -"},
    {"side of two characters", "k7/K7 ww"},
    {"side of two characters", "k7/K7 b- - -"},
    {"side in upper case", "k7/K7 W - -"},
    {"unknown side", "k7/K7 x - -"},
    {"unknown right", "k7/K7 w KQxq -"},
    {"hyphen among rights", "k7/K7 w K- -"},
    {"two hyphens for rights", "k7/K7 w -- -"},
    {"square of one character", "4k3/8/8/4p3/8/8/8/4K3 w - e"},
    {"no square", "4k3/8/8/4p3/8/8/8/4K3 w - ep"},
    {"no square", "4k3/8/8/4p3/8/8/8/4K3 w - i6"},
    {"no square", "4k3/8/8/4p3/8/8/8/4K3 w - -6"},
    {"two hyphens for the square", "4k3/8/8/4p3/8/8/8/4K3 w - --"},
    {"row of the other side", "4k3/8/8/8/4P3/8/8/4K3 w - e3"},
    {"row of the other side", "4k3/8/8/4p3/8/8/8/4K3 b - e6"},
    {"pawn on its way, row of the other side", "4k3/8/8/8/8/8/4p3/K7 w - e3"},
    {"pawn on its way, row of the other side", "k7/4P3/8/8/8/8/8/4K3 b - e6"},
    {"pawn on its way, row in the middle", "4k3/8/8/8/4p3/8/8/4K3 w - e5"},
    {"pawn on its way, row in the middle", "4k3/8/8/4P3/8/8/8/4K3 b - e4"},
    {"pawn on its way, second row", "k7/8/4p3/8/8/8/8/4K3 w - e7"},
    {"pawn on its way, first row", "k7/4p3/8/8/8/8/8/4K3 w - e8"},
    {"pawn on its way, last row", "k7/8/8/8/8/8/4P3/K7 b - e1"},
    {"row in the middle", "4k3/8/8/4p3/8/8/8/4K3 w - e5"},
    {"a8", "k7/8/8/8/8/8/8/4K3 w - a8"},
    {"no pawn", "4k3/8/8/8/8/8/8/4K3 w - e6"},
    {"own pawn", "4k3/8/8/4P3/8/8/8/4K3 w - e6"},
    {"other piece", "4k3/8/8/4n3/8/8/8/4K3 w - e6"},
    {"occupied square", "4k3/8/4n3/4p3/8/8/8/4K3 w - e6"},
    {"occupied origin", "4k3/4n3/8/4p3/8/8/8/4K3 w - e6"},
    {"occupied square, Black to move", "4k3/8/8/8/4P3/4N3/8/4K3 b - e3"},
    {"occupied origin, Black to move", "4k3/8/8/8/4P3/8/4B3/4K3 b - e3"},
};

TEST_F(SetupTest, RefusedTextLeavesThePositionAndTheGameAsTheyWere) {
  support::SetUpPosition("r3k2r/pp3ppp/8/3pP3/8/8/PPP2PPP/R3K2R w KQkq d6 0 1");
  support::Play("e5d6 e8g8 e1c1");
  UndoGameMove();
  const GameRecord before = g;
  for (const RefusedRow& row : kRefusedRows) {
    const std::uint32_t counter = repetition_set[g.key & kRepetitionMask];
    EXPECT_FALSE(InitGame(row.text)) << row.reason << ": " << row.text;
    EXPECT_TRUE(support::SameBytes(g, before)) << row.reason << ": " << row.text;
    EXPECT_EQ(repetition_set[g.key & kRepetitionMask], counter) << row.text;
  }
}

TEST_F(SetupTest, RefusalIsLeftToTheCallerToReport) {
  const support::Said said = support::Listen([] {
    for (const RefusedRow& row : kRefusedRows) InitGame(row.text);
  });
  EXPECT_EQ(said.out + said.err, "");
}

TEST_F(SetupTest, RefusedTextCountsNoPosition) {
  ClearRepetitions();
  for (const RefusedRow& row : kRefusedRows) EXPECT_FALSE(InitGame(row.text));
  for (const std::uint32_t counter : repetition_set) EXPECT_EQ(counter, 0u);
}

TEST_F(SetupTest, NullTextIsRefusedAndChangesNothing) {
  support::Play("e2e4");
  const GameRecord before = g;
  EXPECT_FALSE(InitGame(nullptr));
  EXPECT_TRUE(support::SameBytes(g, before));
}

TEST_F(SetupTest, SetUpEndsTheGameBefore) {
  support::Play("g1f3 g8f6 b1c3");
  UndoGameMove();
  g.tag = kSavedTag;
  const GameRecord played = g;
  ASSERT_TRUE(InitNewGame());
  EXPECT_FALSE(support::SameBytes(g, played));
  const GameRecord start = g;
  ASSERT_TRUE(InitGame("k7/K7"));
  ASSERT_TRUE(InitNewGame());
  EXPECT_TRUE(support::SameBytes(g, start));
  EXPECT_EQ(g.tag, 0u);
  EXPECT_EQ(g.game_max, 0);
  EXPECT_EQ(g.fifty, 0);
}

TEST_F(SetupTest, PositionIsCountedOnceAndItsKeyKept) {
  ClearRepetitions();
  ASSERT_TRUE(InitGame("k7/K7"));
  EXPECT_EQ(g.start_key, g.key);
  EXPECT_EQ(repetition_set[g.key & 0x3FFF], 1u);
  ASSERT_TRUE(InitGame("k7/K7 b"));
  EXPECT_EQ(repetition_set[g.key & 0x3FFF], 2u);
}

TEST_F(SetupTest, PlyMoveListsAndCountersAreLeftToTheCaller) {
  ASSERT_TRUE(Generate());
  const std::vector<Move> list = support::CurrentList();
  const std::uint64_t index = g.key & kRepetitionMask;
  const std::uint32_t counter = repetition_set[index];
  ply = 3;
  ASSERT_TRUE(InitGame("k7/K7"));
  EXPECT_EQ(ply, 3);
  ply = 0;
  EXPECT_EQ(support::CurrentList(), list);
  EXPECT_EQ(repetition_set[index], counter);
}

}  // namespace
}  // namespace tarvyle
