#include "position/makemove.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "position/pieces.h"
#include "position/soundness.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::BoardText;
using support::LegalMove;

class MakeMoveTest : public support::PositionTest {};

// The record that make and unmake of one move leave behind.
GameRecord WithStamp(GameRecord record) {
  record.undo[record.game_len + ply].fifty_before = record.fifty;
  return record;
}

// --- what a move changes ---------------------------------------------------------------------

struct MoveRow {
  const char* what;
  const char* text;
  const char* move;
  const char* board;
  const char* captured;  // square of the captured piece, or ""
  int captured_piece;
  std::uint32_t castle;
  bool reversible;
};

constexpr MoveRow kMoveRows[] = {
    {"quiet move", "4k3/8/8/8/8/8/8/R3K3 w Q", "a1a5",
     "....k.../......../......../R......./......../......../......../....K...", "", 0, 0, true},
    {"pawn step", "4k3/8/8/8/8/8/4P3/4K3 w", "e2e3",
     "....k.../......../......../......../......../....P.../......../....K...", "", 0, 0, false},
    {"double step", "4k3/4p3/8/8/8/8/8/4K3 b", "e7e5",
     "....k.../......../......../....p.../......../......../......../....K...", "", 0, 0, false},
    {"capture", "4k3/8/8/3n4/8/4N3/8/4K3 w", "e3d5",
     "....k.../......../......../...N..../......../......../......../....K...", "d5", Knight, 0,
     false},
    {"capture by a pawn", "4k3/8/8/3q4/4P3/8/8/4K3 w", "e4d5",
     "....k.../......../......../...P..../......../......../......../....K...", "d5", Queen, 0,
     false},
    {"en passant of White", "4k3/8/8/3pP3/8/8/8/4K3 w - d6", "e5d6",
     "....k.../......../...P..../......../......../......../......../....K...", "d5", Pawn, 0,
     false},
    {"en passant of Black", "4k3/8/8/8/3pP3/8/8/4K3 b - e3", "d4e3",
     "....k.../......../......../......../......../....p.../......../....K...", "e4", Pawn, 0,
     false},
    {"short castling of White", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "e1g1",
     "r...k..r/......../......../......../......../......../......../R....RK.", "", 0, 12, false},
    {"long castling of White", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "e1c1",
     "r...k..r/......../......../......../......../......../......../..KR...R", "", 0, 12, false},
    {"short castling of Black", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq", "e8g8",
     "r....rk./......../......../......../......../......../......../R...K..R", "", 0, 3, false},
    {"long castling of Black", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq", "e8c8",
     "..kr...r/......../......../......../......../......../......../R...K..R", "", 0, 3, false},
    {"king move of White", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "e1e2",
     "r...k..r/......../......../......../......../......../....K.../R......R", "", 0, 12, true},
    {"king move of Black", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq", "e8e7",
     "r......r/....k.../......../......../......../......../......../R...K..R", "", 0, 3, true},
    {"king move away from home", "r3k2r/8/8/8/8/8/3K4/R6R w KQkq", "d2e2",
     "r...k..r/......../......../......../......../......../....K.../R......R", "", 0, 12, true},
    {"rook leaves a1", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "a1b1",
     "r...k..r/......../......../......../......../......../......../.R..K..R", "", 0, 14, true},
    {"rook leaves h1", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "h1h2",
     "r...k..r/......../......../......../......../......../.......R/R...K...", "", 0, 13, true},
    {"rook leaves a8", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq", "a8a7",
     "....k..r/r......./......../......../......../......../......../R...K..R", "", 0, 11, true},
    {"rook leaves h8", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq", "h8f8",
     "r...kr../......../......../......../......../......../......../R...K..R", "", 0, 7, true},
    {"rook leaves another square", "r3k2r/8/8/8/8/8/7R/R3K3 w KQkq", "h2h3",
     "r...k..r/......../......../......../......../.......R/......../R...K...", "", 0, 15, true},
    {"rook leaves an enemy corner", "R6r/4k3/8/8/8/8/8/4K2R w KQkq", "a8b8",
     ".R.....r/....k.../......../......../......../......../......../....K..R", "", 0, 15, true},
    {"other piece leaves a corner", "r3k2r/8/8/8/8/8/8/B3K2R w KQkq", "a1b2",
     "r...k..r/......../......../......../......../......../.B....../....K..R", "", 0, 15, true},
    {"rook captured on h8", "r3k2r/8/8/8/3B4/8/8/R3K2R w KQkq", "d4h8",
     "r...k..B/......../......../......../......../......../......../R...K..R", "h8", Rook, 7,
     false},
    {"rook captured on a8", "r3k2r/8/8/8/4B3/8/8/R3K2R w KQkq", "e4a8",
     "B...k..r/......../......../......../......../......../......../R...K..R", "a8", Rook, 11,
     false},
    {"rook captured on a1", "r3k2r/8/8/8/3b4/8/8/R3K2R b KQkq", "d4a1",
     "r...k..r/......../......../......../......../......../......../b...K..R", "a1", Rook, 14,
     false},
    {"rook captured on h1", "r3k2r/8/8/8/4b3/8/8/R3K2R b KQkq", "e4h1",
     "r...k..r/......../......../......../......../......../......../R...K..b", "h1", Rook, 13,
     false},
    {"rook takes rook", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq", "h1h8",
     "r...k..R/......../......../......../......../......../......../R...K...", "h8", Rook, 5,
     false},
    {"rook captured on its enemy's corner", "r3k2r/8/8/8/8/8/1B6/r3K2R w KQkq", "b2a1",
     "r...k..r/......../......../......../......../......../......../B...K..R", "a1", Rook, 15,
     false},
    {"other piece captured in a corner", "n3k2r/8/8/8/4B3/8/8/R3K2R w KQkq", "e4a8",
     "B...k..r/......../......../......../......../......../......../R...K..R", "a8", Knight, 15,
     false},
    {"rook captured elsewhere", "4k3/8/8/3r4/4P3/8/8/4K3 w KQkq", "e4d5",
     "....k.../......../......../...P..../......../......../......../....K...", "d5", Rook, 15,
     false},
    {"promotion to a queen", "4k3/P7/8/8/8/8/8/4K3 w", "a7a8q",
     "Q...k.../......../......../......../......../......../......../....K...", "", 0, 0, false},
    {"promotion to a knight", "4k3/8/8/8/8/8/p7/4K3 b", "a2a1n",
     "....k.../......../......../......../......../......../......../n...K...", "", 0, 0, false},
    {"promotion to a rook in a corner", "4k3/P7/8/8/8/8/8/4K3 w KQkq", "a7a8r",
     "R...k.../......../......../......../......../......../......../....K...", "", 0, 15, false},
    {"promotion to a bishop with capture", "1n2k3/P7/8/8/8/8/8/4K3 w", "a7b8b",
     ".B..k.../......../......../......../......../......../......../....K...", "b8", Knight, 0,
     false},
    {"promotion with capture of a rook at home", "r3k3/1P6/8/8/8/8/8/4K3 w q", "b7a8q",
     "Q...k.../......../......../......../......../......../......../....K...", "a8", Rook, 0,
     false},
};

TEST_F(MakeMoveTest, MadeMoveStandsInTheRecord) {
  for (const MoveRow& row : kMoveRows) {
    SCOPED_TRACE(row.what);
    support::SetUpPosition(row.text);
    g.fifty = 7;
    const Move move = LegalMove(row.move);
    const GameRecord before = g;
    const Square captured = *row.captured != '\0' ? StrToSq(row.captured) : 0;
    MakeMove(move);
    EXPECT_EQ(BoardText(), row.board);
    EXPECT_TRUE(RecordIsSound(g));
    EXPECT_EQ(g.castle, row.castle);
    EXPECT_EQ(g.fifty, row.reversible ? 8 : 0);
    EXPECT_EQ(g.side, before.xside);
    EXPECT_EQ(g.xside, before.side);
    EXPECT_EQ(ply, 1);
    EXPECT_EQ(g.game_moves[0], move);
    EXPECT_EQ(g.game_keys[0], g.key);
    EXPECT_EQ(g.undo[0].cap_sq, captured);
    EXPECT_EQ(g.undo[0].cap_piece, row.captured_piece);
    EXPECT_EQ(g.undo[0].cap_idx, *row.captured != '\0' ? before.list_idx[captured] : 0);
    EXPECT_EQ(g.undo[0].castle_before, before.castle);
    EXPECT_EQ(g.undo[0].fifty_before, 7);
    UnMakeMove(move);
    EXPECT_EQ(ply, 0);
    EXPECT_TRUE(support::SameBytes(g, WithStamp(before)));
  }
}

TEST_F(MakeMoveTest, MoverKeepsItsSlot) {
  for (const MoveRow& row : kMoveRows) {
    support::SetUpPosition(row.text);
    const Move move = LegalMove(row.move);
    const int slot = g.list_idx[OriginOf(move)];
    MakeMove(move);
    EXPECT_EQ(g.list_idx[TargetOf(move)], slot) << row.what;
    UnMakeMove(move);
  }
}

TEST_F(MakeMoveTest, EveryMoveOfAnyPositionIsTakenBackBitForBit) {
  for (const auto& row : support::DataRows("movelists.tsv")) {
    support::SetUpPosition(row[0]);
    const GameRecord before = WithStamp(g);
    ASSERT_TRUE(Generate());
    for (const Move move : support::CurrentList()) {
      MakeMove(move);
      EXPECT_TRUE(RecordIsSound(g)) << row[0] << ' ' << MoveToStr(move);
      UnMakeMove(move);
      EXPECT_TRUE(support::SameBytes(g, before)) << row[0] << ' ' << MoveToStr(move);
    }
  }
}

TEST_F(MakeMoveTest, EnPassantRemovesThePawnBesideTheTargetAndPutsItBackThere) {
  support::SetUpPosition("4k3/8/8/3pP3/8/8/8/4K3 w - d6");
  const Square d5 = StrToSq("d5");
  const int slot = g.list_idx[d5];
  const Move move = LegalMove("e5d6");
  MakeMove(move);
  EXPECT_EQ(g.board[d5], NoPiece);
  EXPECT_EQ(g.list_sq[slot], -1);
  EXPECT_EQ(g.board[StrToSq("d6")], Pawn);
  EXPECT_EQ(g.piece_cnt[Black][Pawn], 0);
  UnMakeMove(move);
  EXPECT_EQ(g.board[d5], Pawn);
  EXPECT_EQ(g.color[d5], Black);
  EXPECT_EQ(g.list_idx[d5], slot);
}

TEST_F(MakeMoveTest, CastlingMovesTheRookAndTakingBackRestoresTheRecordedRights) {
  // Rights without rooks: only the undo record can know them.
  support::SetUpPosition("4k3/8/8/8/8/8/8/4K2R w KQkq");
  const Move move = LegalMove("e1g1");
  MakeMove(move);
  EXPECT_EQ(g.board[StrToSq("f1")], Rook);
  EXPECT_EQ(g.board[StrToSq("h1")], NoPiece);
  EXPECT_EQ(g.castle, 12u);
  EXPECT_EQ(g.castled[White], 1);
  EXPECT_EQ(g.castled[Black], 0);
  UnMakeMove(move);
  EXPECT_EQ(g.board[StrToSq("h1")], Rook);
  EXPECT_EQ(g.castle, 15u);
  EXPECT_EQ(g.castled[White], 0);
  MakeMove(move);
  g.undo[0].castle_before = 6;
  UnMakeMove(move);
  EXPECT_EQ(g.castle, 6u);
}

TEST_F(MakeMoveTest, PromotionTradesThePawnForThePiece) {
  support::SetUpPosition("4k3/P7/8/8/8/8/8/4K3 w");
  for (const auto& [text, piece] :
       {std::pair{"a7a8q", Queen}, {"a7a8r", Rook}, {"a7a8b", Bishop}, {"a7a8n", Knight}}) {
    const Move move = LegalMove(text);
    MakeMove(move);
    EXPECT_EQ(g.material[White], value[King] + value[piece]);
    EXPECT_EQ(g.piece_cnt[White][Pawn], 0);
    EXPECT_EQ(g.piece_cnt[White][piece], 1);
    EXPECT_EQ(g.pawn_file_cnt[White][0], 0);
    EXPECT_EQ(g.pawn_row_cnt[White][1], 0);
    UnMakeMove(move);
    EXPECT_EQ(g.material[White], value[King] + value[Pawn]);
    EXPECT_EQ(g.piece_cnt[White][Pawn], 1);
    EXPECT_EQ(g.piece_cnt[White][piece], 0);
    EXPECT_EQ(g.pawn_file_cnt[White][0], 1);
    EXPECT_EQ(g.pawn_row_cnt[White][1], 1);
  }
}

TEST_F(MakeMoveTest, NullMoveOnlyPassesTheTurn) {
  support::SetUpPosition("r3k2r/8/8/8/8/8/8/R3K2R w KQkq");
  g.fifty = 11;
  const GameRecord before = g;
  GameRecord expected = before;
  expected.side = Black;
  expected.xside = White;
  expected.fifty = 0;
  expected.game_keys[0] = before.key;
  expected.undo[0].fifty_before = 11;
  MakeMove(0);
  EXPECT_EQ(ply, 1);
  EXPECT_EQ(LastMove(), 0u);
  EXPECT_TRUE(support::SameBytes(g, expected));
  UnMakeMove(0);
  EXPECT_EQ(ply, 0);
  EXPECT_EQ(g.fifty, 11);
  EXPECT_TRUE(support::SameBytes(g, WithStamp(before)));
}

TEST_F(MakeMoveTest, NullMoveLeavesTheOtherWordsOfItsUndoRecord) {
  g.undo[0] = {1, 2, 3, 4, 5};
  MakeMove(0);
  UnMakeMove(0);
  EXPECT_EQ(g.undo[0].cap_sq, 1);
  EXPECT_EQ(g.undo[0].cap_piece, 2);
  EXPECT_EQ(g.undo[0].cap_idx, 3);
  EXPECT_EQ(g.undo[0].castle_before, 4u);
  EXPECT_EQ(g.undo[0].fifty_before, 0);
}

TEST_F(MakeMoveTest, CaptureAndThenAQuietKnightMoveCountOneReversibleHalfMove) {
  support::Play("e2e4 d7d5 e4d5");
  EXPECT_EQ(g.fifty, 0);
  support::Play("g8f6");
  EXPECT_EQ(g.fifty, 1);
  support::Play("b1c3");
  EXPECT_EQ(g.fifty, 2);
  support::Play("c7c6");
  EXPECT_EQ(g.fifty, 0);
}

TEST_F(MakeMoveTest, PositionsEnteredAreCountedAndPositionsLeftAreNot) {
  ClearRepetitions();
  const Move move = LegalMove("g1f3");
  MakeMove(move);
  const std::uint64_t entered = g.key & kRepetitionMask;
  EXPECT_EQ(repetition_set[entered], 1u);
  MakeMove(0);
  EXPECT_EQ(repetition_set[entered], 2u);
  UnMakeMove(0);
  UnMakeMove(move);
  for (const std::uint32_t counter : repetition_set) ASSERT_EQ(counter, 0u);
}

TEST_F(MakeMoveTest, CountersOfPositionsWrap) {
  ClearRepetitions();
  MakeMove(0);
  ClearRepetitions();
  UnMakeMove(0);
  EXPECT_EQ(repetition_set[g.key & kRepetitionMask], 0xFFFFFFFF);
}

TEST_F(MakeMoveTest, MovesOfASearchFollowTheMovesOfTheGame) {
  support::Play("e2e4 e7e5");
  const Move first = LegalMove("g1f3");
  MakeMove(first);
  ASSERT_TRUE(Generate());
  const Move second = support::CurrentList()[0];
  MakeMove(second);
  EXPECT_EQ(g.game_len, 2);
  EXPECT_EQ(ply, 2);
  EXPECT_EQ(g.game_moves[2], first);
  EXPECT_EQ(g.game_moves[3], second);
  EXPECT_EQ(g.game_keys[3], g.key);
  UnMakeMove(second);
  EXPECT_EQ(g.game_moves[3], 0u);
  EXPECT_EQ(g.game_keys[3], 0u);
  UnMakeMove(first);
  EXPECT_EQ(g.game_moves[2], 0u);
}

TEST_F(MakeMoveTest, MoveThatLeavesTheKingAttackedIsMadeLikeAnyOther) {
  support::SetUpPosition("4r2k/8/8/8/8/8/4B3/4K3 w");
  const GameRecord before = WithStamp(g);
  const Move move = MoveWord(Bishop, StrToSq("e2"), StrToSq("d3"));
  MakeMove(move);
  EXPECT_TRUE(SqAttack(g.king_sq[White], Black));
  EXPECT_FALSE(Generate());
  UnMakeMove(move);
  EXPECT_TRUE(support::SameBytes(g, before));
}

TEST_F(MakeMoveTest, CountersOfALoadedGameWrap) {
  support::SetUpPosition("4k3/8/8/8/8/8/8/4K2R w K");
  const Move castling = LegalMove("e1g1");
  g.fifty = std::numeric_limits<std::int32_t>::max();
  g.castled[White] = std::numeric_limits<std::int32_t>::max();
  const GameRecord before = WithStamp(g);
  const Move quiet = LegalMove("e1e2");
  MakeMove(quiet);
  EXPECT_EQ(g.fifty, std::numeric_limits<std::int32_t>::min());
  UnMakeMove(quiet);
  MakeMove(castling);
  EXPECT_EQ(g.castled[White], std::numeric_limits<std::int32_t>::min());
  UnMakeMove(castling);
  EXPECT_TRUE(support::SameBytes(g, before));
}

TEST_F(MakeMoveTest, TrialsMakeAndTakeBackAsTheOthersDo) {
  for (const MoveRow& row : kMoveRows) {
    support::SetUpPosition(row.text);
    const Move move = LegalMove(row.move);
    const GameRecord before = WithStamp(g);
    MakeMove(move);
    const GameRecord made = g;
    UnMakeMove(move);
    EXPECT_TRUE(TryMakeMove(move)) << row.what;
    EXPECT_TRUE(support::SameBytes(g, made)) << row.what;
    EXPECT_TRUE(TryUnMakeMove(move)) << row.what;
    EXPECT_TRUE(support::SameBytes(g, before)) << row.what;
  }
  EXPECT_TRUE(TryMakeMove(0));
  EXPECT_TRUE(TryUnMakeMove(0));
}

TEST_F(MakeMoveTest, TraceOfALookIsWhatMakingAndTakingBackLeaves) {
  for (const MoveRow& row : kMoveRows) {
    support::SetUpPosition(row.text);
    const Move move = LegalMove(row.move);
    g.game_moves[0] = 77;
    g.game_keys[0] = 78;
    g.undo[0] = {1, 2, 3, 4, 5};
    const GameRecord before = g;
    MakeMove(move);
    UnMakeMove(move);
    const GameRecord after = g;
    SetRecord(before);
    LeaveTrace();
    EXPECT_TRUE(support::SameBytes(g, after)) << row.what;
    EXPECT_FALSE(support::SameBytes(g, before)) << row.what;
  }
}

}  // namespace
}  // namespace tarvyle
