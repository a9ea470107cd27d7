#include "position/soundness.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "position/pieces.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::At;

class SoundnessTest : public support::PositionTest {};

struct DamageRow {
  const char* what;
  void (*damage)(GameRecord& record);
};

// Adds a piece with all counters and keys right.
void Add(GameRecord& record, int piece, int colour, Square square, int slot) {
  const std::uint64_t key = PieceKey(piece, colour, square);
  record.board[square] = piece;
  record.color[square] = colour;
  record.list_idx[square] = slot;
  record.list_sq[slot] = square;
  record.piece_cnt[colour][piece] += 1;
  record.material[colour] += value[piece];
  record.key ^= key;
  record.color_key[colour] ^= key;
}

// Takes a piece off with all counters and keys right.
void Remove(GameRecord& record, int piece, int colour, Square square) {
  const std::uint64_t key = PieceKey(piece, colour, square);
  record.list_sq[record.list_idx[square]] = -1;
  record.list_idx[square] = -1;
  record.board[square] = NoPiece;
  record.color[square] = NoColour;
  record.piece_cnt[colour][piece] -= 1;
  record.material[colour] -= value[piece];
  record.key ^= key;
  record.color_key[colour] ^= key;
}

constexpr const char* kPosition = "r3k3/2p5/8/1Pp5/8/8/8/R3K3 w Qq";

// Each row damages the sound record of this position.
constexpr DamageRow kDamages[] = {
    {"piece on an empty square", [](GameRecord& r) { r.board[At("e4")] = Pawn; }},
    {"no piece on an occupied square", [](GameRecord& r) { r.board[At("b5")] = NoPiece; }},
    {"other piece", [](GameRecord& r) { r.board[At("b5")] = Knight; }},
    {"piece code 7", [](GameRecord& r) { r.board[At("b5")] = 7; }},
    {"piece code -1", [](GameRecord& r) { r.board[At("b5")] = -1; }},
    {"huge piece code", [](GameRecord& r) { r.board[At("b5")] = 1000000; }},
    {"colour on an empty square", [](GameRecord& r) { r.color[At("e4")] = White; }},
    {"no colour on an occupied square", [](GameRecord& r) { r.color[At("b5")] = NoColour; }},
    {"other colour", [](GameRecord& r) { r.color[At("b5")] = Black; }},
    {"colour 3", [](GameRecord& r) { r.color[At("b5")] = 3; }},
    {"colour 3 on an empty square", [](GameRecord& r) { r.color[At("e4")] = 3; }},
    {"colour -1", [](GameRecord& r) { r.color[At("b5")] = -1; }},
    {"slot on an empty square", [](GameRecord& r) { r.list_idx[At("e4")] = 5; }},
    {"slot 0 on an empty square", [](GameRecord& r) { r.list_idx[At("e4")] = 0; }},
    {"no slot on an occupied square", [](GameRecord& r) { r.list_idx[At("b5")] = -1; }},
    {"slot of another piece", [](GameRecord& r) { r.list_idx[At("b5")] = 1; }},
    {"slot 32", [](GameRecord& r) { r.list_idx[At("b5")] = 32; }},
    {"huge slot", [](GameRecord& r) { r.list_idx[At("b5")] = 2000000000; }},
    {"negative slot", [](GameRecord& r) { r.list_idx[At("b5")] = -2; }},
    {"slot that points elsewhere", [](GameRecord& r) { r.list_sq[0] = At("b6"); }},
    {"free slot that points to a piece", [](GameRecord& r) { r.list_sq[9] = At("b5"); }},
    {"free slot that points to an empty square", [](GameRecord& r) { r.list_sq[9] = At("e4"); }},
    {"two slots that point to one piece",
     [](GameRecord& r) {
       r.list_last[White] = 9;
       r.list_sq[9] = At("b5");
       r.list_idx[At("b5")] = 9;
     }},
    {"free slot 64", [](GameRecord& r) { r.list_sq[9] = 64; }},
    {"free slot -2", [](GameRecord& r) { r.list_sq[9] = -2; }},
    {"free slot behind the last", [](GameRecord& r) { r.list_sq[31] = At("e4"); }},
    {"slot lost", [](GameRecord& r) { r.list_sq[0] = -1; }},
    {"piece in a slot of the other colour",
     [](GameRecord& r) {
       Remove(r, Rook, White, At("a1"));
       Add(r, Rook, White, At("a1"), 25);
     }},
    {"piece in a lower slot of the other colour",
     [](GameRecord& r) {
       Remove(r, Rook, Black, At("a8"));
       Add(r, Rook, Black, At("a8"), 9);
     }},
    {"piece behind the last slot",
     [](GameRecord& r) {
       Remove(r, Rook, White, At("a1"));
       Add(r, Rook, White, At("a1"), 9);
     }},
    {"White's first slot", [](GameRecord& r) { r.list_first[White] = 1; }},
    {"Black's first slot", [](GameRecord& r) { r.list_first[Black] = 15; }},
    {"White's last slot too small", [](GameRecord& r) { r.list_last[White] = 1; }},
    {"White's last slot negative", [](GameRecord& r) { r.list_last[White] = -1; }},
    {"White's last slot among Black's", [](GameRecord& r) { r.list_last[White] = 16; }},
    {"Black's last slot too small", [](GameRecord& r) { r.list_last[Black] = 18; }},
    {"Black's last slot among White's", [](GameRecord& r) { r.list_last[Black] = 15; }},
    {"Black's last slot outside", [](GameRecord& r) { r.list_last[Black] = 32; }},
    {"piece count", [](GameRecord& r) { r.piece_cnt[White][Pawn] = 2; }},
    {"count of no pieces", [](GameRecord& r) { r.piece_cnt[Black][NoPiece] = 1; }},
    {"count of code 7", [](GameRecord& r) { r.piece_cnt[Black][7] = 1; }},
    {"material of White", [](GameRecord& r) { r.material[White] += 1; }},
    {"material of Black", [](GameRecord& r) { r.material[Black] -= 1000; }},
    {"pawns of a file", [](GameRecord& r) { r.pawn_file_cnt[Black][2] = 1; }},
    {"pawns of a row", [](GameRecord& r) { r.pawn_row_cnt[Black][1] = 0; }},
    {"side 2", [](GameRecord& r) { r.side = 2, r.xside = -1; }},
    {"side -1", [](GameRecord& r) { r.side = -1, r.xside = 2; }},
    {"both sides the same", [](GameRecord& r) { r.xside = White; }},
    {"other side 2", [](GameRecord& r) { r.xside = 2; }},
    {"king square of White", [](GameRecord& r) { r.king_sq[White] = At("e2"); }},
    {"king square of the other king", [](GameRecord& r) { r.king_sq[White] = At("e8"); }},
    {"king square on another piece", [](GameRecord& r) { r.king_sq[Black] = At("a8"); }},
    {"king square 64", [](GameRecord& r) { r.king_sq[Black] = 64; }},
    {"king square -1", [](GameRecord& r) { r.king_sq[Black] = -1; }},
    {"huge king square", [](GameRecord& r) { r.king_sq[Black] = 2000000000; }},
    {"en-passant square 64", [](GameRecord& r) { r.ep_sq = 64; }},
    {"en-passant square -1", [](GameRecord& r) { r.ep_sq = -1; }},
    {"low word of the key", [](GameRecord& r) { r.key.low ^= 1; }},
    {"high word of the key", [](GameRecord& r) { r.key.high ^= 1; }},
    {"key of White", [](GameRecord& r) { r.color_key[White].low ^= 1; }},
    {"key of Black", [](GameRecord& r) { r.color_key[Black].high ^= 1; }},
    {"keys of both colours", [](GameRecord& r) { r.color_key[0] ^= 1, r.color_key[1] ^= 1; }},
    {"second king",
     [](GameRecord& r) {
       Remove(r, Rook, White, At("a1"));
       Add(r, King, White, At("a1"), 1);
     }},
    {"no king", [](GameRecord& r) { Remove(r, King, Black, At("e8")); }},
    {"king of the other colour",
     [](GameRecord& r) {
       Remove(r, King, Black, At("e8"));
       Add(r, King, White, At("e8"), 1);
     }},
};

TEST_F(SoundnessTest, SetUpPositionsAreSound) {
  for (const auto& row : support::DataRows("positions.tsv")) {
    support::SetUpPosition(row[0]);
    EXPECT_TRUE(RecordIsSound(g)) << row[0];
  }
}

TEST_F(SoundnessTest, EachKindOfDamageIsFound) {
  support::SetUpPosition(kPosition);
  const GameRecord sound = g;
  for (const DamageRow& row : kDamages) {
    const auto record = std::make_unique<GameRecord>(sound);
    row.damage(*record);
    EXPECT_FALSE(RecordIsSound(*record)) << row.what;
  }
}

// The helpers above keep everything right: what they refuse is refused for the reason named.
TEST_F(SoundnessTest, PieceAddedOrRemovedWithAllItsCountersIsSound) {
  support::SetUpPosition(kPosition);
  GameRecord record = g;
  Remove(record, Rook, White, At("a1"));
  EXPECT_TRUE(RecordIsSound(record));
  Add(record, Queen, White, At("d1"), 1);
  EXPECT_TRUE(RecordIsSound(record));
}

TEST_F(SoundnessTest, EmptyRecordIsUnsound) {
  ClearRecord();
  EXPECT_FALSE(RecordIsSound(g));
}

TEST_F(SoundnessTest, RightsCountersOfMovesAndTheGameAreNotLookedAt) {
  support::SetUpPosition(kPosition);
  g.tag = 77;
  g.castle = 0xFFFFFFFF;
  g.castled[White] = -5;
  g.fifty = -1;
  g.start_key = 5;
  g.ep_sq = 63;
  g.game_len = 600;
  g.game_max = -3;
  g.game_moves[0] = 77;
  EXPECT_TRUE(RecordIsSound(g));
}

TEST_F(SoundnessTest, AnyBitOfThePositionFieldsMatters) {
  support::SetUpPosition(kPosition);
  const GameRecord sound = g;
  constexpr std::size_t kFirst = offsetof(GameRecord, board);
  constexpr std::size_t kEnd = offsetof(GameRecord, castle);
  auto* bytes = reinterpret_cast<unsigned char*>(&g);
  for (std::size_t at = kFirst; at < kEnd; ++at) {
    for (int bit = 0; bit < 8; ++bit) {
      bytes[at] = static_cast<unsigned char>(bytes[at] ^ 1 << bit);
      // More slots than used are harmless: they are free.
      const bool more_slots =
          at >= offsetof(GameRecord, list_last) && at < offsetof(GameRecord, piece_cnt) &&
          g.list_last[White] >= sound.list_last[White] && g.list_last[White] < 16 &&
          g.list_last[Black] >= sound.list_last[Black] && g.list_last[Black] < 32;
      EXPECT_EQ(RecordIsSound(g), more_slots) << "byte " << at << " bit " << bit;
      SetRecord(sound);
    }
  }
}

}  // namespace
}  // namespace tarvyle
