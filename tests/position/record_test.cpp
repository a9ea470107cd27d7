#include "position/record.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <set>
#include <string>

#include "position/makemove.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class RecordTest : public support::PositionTest {};

std::uint32_t WordAt(std::size_t offset) {
  std::uint32_t word;
  std::memcpy(&word, reinterpret_cast<const unsigned char*>(&g) + offset, sizeof word);
  return word;
}

void SetWordAt(std::size_t offset, std::uint32_t word) {
  std::memcpy(reinterpret_cast<unsigned char*>(&g) + offset, &word, sizeof word);
}

TEST_F(RecordTest, IsOneBlockOfThePlannedSize) {
  EXPECT_EQ(sizeof g, 19192u);
  EXPECT_EQ(std::endian::native, std::endian::little);
}

struct FieldRow {
  const char* name;
  std::size_t offset;
  std::int64_t (*read)();
};

// Every field is filled with words of its own by offset and read by name: first and last element.
TEST_F(RecordTest, FieldsStandAtTheirPlaces) {
  const FieldRow rows[] = {
      {"tag", 0, [] { return std::int64_t{g.tag}; }},
      {"board[0]", 4, [] { return std::int64_t{g.board[0]}; }},
      {"board[63]", 256, [] { return std::int64_t{g.board[63]}; }},
      {"color[0]", 260, [] { return std::int64_t{g.color[0]}; }},
      {"color[63]", 512, [] { return std::int64_t{g.color[63]}; }},
      {"list_idx[0]", 516, [] { return std::int64_t{g.list_idx[0]}; }},
      {"list_idx[63]", 768, [] { return std::int64_t{g.list_idx[63]}; }},
      {"list_sq[0]", 772, [] { return std::int64_t{g.list_sq[0]}; }},
      {"list_sq[31]", 896, [] { return std::int64_t{g.list_sq[31]}; }},
      {"list_first[0]", 900, [] { return std::int64_t{g.list_first[0]}; }},
      {"list_first[1]", 904, [] { return std::int64_t{g.list_first[1]}; }},
      {"list_last[0]", 908, [] { return std::int64_t{g.list_last[0]}; }},
      {"list_last[1]", 912, [] { return std::int64_t{g.list_last[1]}; }},
      {"piece_cnt[0][0]", 916, [] { return std::int64_t{g.piece_cnt[0][0]}; }},
      {"piece_cnt[1][0]", 948, [] { return std::int64_t{g.piece_cnt[1][0]}; }},
      {"piece_cnt[1][7]", 976, [] { return std::int64_t{g.piece_cnt[1][7]}; }},
      {"material[0]", 980, [] { return std::int64_t{g.material[0]}; }},
      {"material[1]", 984, [] { return std::int64_t{g.material[1]}; }},
      {"pawn_file_cnt[0][0]", 988, [] { return std::int64_t{g.pawn_file_cnt[0][0]}; }},
      {"pawn_file_cnt[1][7]", 1048, [] { return std::int64_t{g.pawn_file_cnt[1][7]}; }},
      {"pawn_row_cnt[0][0]", 1052, [] { return std::int64_t{g.pawn_row_cnt[0][0]}; }},
      {"pawn_row_cnt[1][7]", 1112, [] { return std::int64_t{g.pawn_row_cnt[1][7]}; }},
      {"castle", 1116, [] { return std::int64_t{g.castle}; }},
      {"side", 1120, [] { return std::int64_t{g.side}; }},
      {"xside", 1124, [] { return std::int64_t{g.xside}; }},
      {"castled[0]", 1128, [] { return std::int64_t{g.castled[0]}; }},
      {"castled[1]", 1132, [] { return std::int64_t{g.castled[1]}; }},
      {"king_sq[0]", 1136, [] { return std::int64_t{g.king_sq[0]}; }},
      {"king_sq[1]", 1140, [] { return std::int64_t{g.king_sq[1]}; }},
      {"ep_sq", 1144, [] { return std::int64_t{g.ep_sq}; }},
      {"key low", 1148, [] { return std::int64_t{g.key.low}; }},
      {"key high", 1152, [] { return std::int64_t{g.key.high}; }},
      {"color_key[0] low", 1156, [] { return std::int64_t{g.color_key[0].low}; }},
      {"color_key[1] high", 1168, [] { return std::int64_t{g.color_key[1].high}; }},
      {"start_key low", 1172, [] { return std::int64_t{g.start_key.low}; }},
      {"start_key high", 1176, [] { return std::int64_t{g.start_key.high}; }},
      {"game_len", 1180, [] { return std::int64_t{g.game_len}; }},
      {"game_max", 1184, [] { return std::int64_t{g.game_max}; }},
      {"fifty", 1188, [] { return std::int64_t{g.fifty}; }},
      {"game_moves[0]", 1192, [] { return std::int64_t{g.game_moves[0]}; }},
      {"game_moves[499]", 3188, [] { return std::int64_t{g.game_moves[499]}; }},
      {"game_keys[0] low", 3192, [] { return std::int64_t{g.game_keys[0].low}; }},
      {"game_keys[499] high", 7188, [] { return std::int64_t{g.game_keys[499].high}; }},
      {"undo[0].cap_sq", 7192, [] { return std::int64_t{g.undo[0].cap_sq}; }},
      {"undo[0].cap_piece", 7196, [] { return std::int64_t{g.undo[0].cap_piece}; }},
      {"undo[0].cap_idx", 7200, [] { return std::int64_t{g.undo[0].cap_idx}; }},
      {"undo[0].castle_before", 7204, [] { return std::int64_t{g.undo[0].castle_before}; }},
      {"undo[0].fifty_before", 7208, [] { return std::int64_t{g.undo[0].fifty_before}; }},
      {"undo[499].fifty_before", 17188, [] { return std::int64_t{g.undo[499].fifty_before}; }},
      {"game_score[0]", 17192, [] { return std::int64_t{g.game_score[0]}; }},
      {"game_score[499]", 19188, [] { return std::int64_t{g.game_score[499]}; }},
  };
  for (std::size_t offset = 0; offset < sizeof g; offset += 4) {
    SetWordAt(offset, static_cast<std::uint32_t>(offset));
  }
  for (const FieldRow& row : rows) {
    EXPECT_EQ(row.read(), static_cast<std::int64_t>(row.offset)) << row.name;
  }
}

TEST_F(RecordTest, KeysAreTwoWordsLowOneFirst) {
  g.key = std::uint64_t{0x0123456789ABCDEF};
  EXPECT_EQ(WordAt(1148), 0x89ABCDEFu);
  EXPECT_EQ(WordAt(1152), 0x01234567u);
  EXPECT_EQ(g.key, std::uint64_t{0x0123456789ABCDEF});
  g.key ^= 0xFF000000000000FF;
  EXPECT_EQ(g.key, std::uint64_t{0xFE23456789ABCD10});
}

TEST_F(RecordTest, StartPositionHasItsCounters) {
  for (const int colour : {White, Black}) {
    EXPECT_EQ(g.material[colour], 1040000);
    EXPECT_EQ(g.piece_cnt[colour][Pawn], 8);
    for (int file = 0; file < 8; ++file) EXPECT_EQ(g.pawn_file_cnt[colour][file], 1);
  }
  EXPECT_EQ(g.pawn_row_cnt[White][6], 8);
  EXPECT_EQ(g.pawn_row_cnt[Black][1], 8);
  EXPECT_EQ(g.list_first[White], 0);
  EXPECT_EQ(g.list_first[Black], 16);
  EXPECT_EQ(g.list_last[White], 15);
  EXPECT_EQ(g.list_last[Black], 31);
  EXPECT_EQ(g.king_sq[White], 60);
  EXPECT_EQ(g.king_sq[Black], 4);
  EXPECT_EQ(g.castle, 15u);
  EXPECT_EQ(g.tag, 0u);
}

TEST_F(RecordTest, PieceStandsWhereCodeAndColourAgree) {
  support::SetUpPosition("4k3/8/8/8/3pP3/8/8/4K3 w");
  const Square d4 = support::At("d4");
  const Square e4 = support::At("e4");
  EXPECT_TRUE(StandsOn(Pawn, Black, d4));
  EXPECT_TRUE(StandsOn(Pawn, White, e4));
  EXPECT_TRUE(StandsOn(King, White, E1));
  EXPECT_FALSE(StandsOn(Pawn, White, d4));
  EXPECT_FALSE(StandsOn(Knight, Black, d4));
  EXPECT_FALSE(StandsOn(Pawn, White, support::At("c4")));
}

TEST_F(RecordTest, KeyTellsNothingOfSideRightsAndEnPassantSquare) {
  std::set<std::uint64_t> keys;
  for (const char* fields : {"w KQkq -", "b KQkq -", "w - -", "w K -", "w KQkq d6"}) {
    support::SetUpPosition(std::string("r3k2r/8/8/3pP3/8/8/8/R3K2R ") + fields);
    keys.insert(g.key);
  }
  EXPECT_EQ(keys.size(), 1u);
}

TEST_F(RecordTest, ThereIsNoLastMoveDirectlyAfterASetUp) {
  support::Play("e2e4");
  ASSERT_TRUE(InitNewGame());
  EXPECT_EQ(LastMove(), 0u);
}

TEST_F(RecordTest, LastMoveIsThatOfTheGameOrOfTheSearchAboveIt) {
  const Move first = support::LegalMove("e2e4");
  support::Play("e2e4");
  EXPECT_EQ(LastMove(), first);
  const Move second = support::LegalMove("e7e5");
  MakeMove(second);
  EXPECT_EQ(LastMove(), second);
  MakeMove(0);
  EXPECT_EQ(LastMove(), 0u);
  UnMakeMove(0);
  UnMakeMove(second);
  EXPECT_EQ(LastMove(), first);
  UndoGameMove();
  EXPECT_EQ(LastMove(), 0u);
}

TEST_F(RecordTest, RepetitionCountersAreIndexedByTheLowBitsOfTheKey) {
  EXPECT_EQ(std::size(repetition_set), 16384u);
  EXPECT_EQ(kRepetitionMask, 0x3FFFu);
  ClearRepetitions();
  ASSERT_TRUE(InitNewGame());
  for (std::uint32_t i = 0; i < std::size(repetition_set); ++i) {
    EXPECT_EQ(repetition_set[i], i == (g.key & 0x3FFF) ? 1u : 0u);
  }
}

TEST_F(RecordTest, ClearingZeroesTheRepetitionCounters) {
  repetition_set[0] = repetition_set[kRepetitionMask] = 7;
  ClearRepetitions();
  for (const std::uint32_t counter : repetition_set) EXPECT_EQ(counter, 0u);
}

}  // namespace
}  // namespace tarvyle
