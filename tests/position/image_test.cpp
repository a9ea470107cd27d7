#include "position/image.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "position/soundness.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::At;

class ImageTest : public support::PositionTest {};

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

constexpr int kPlayed = 11;
constexpr int kRecorded = 14;

// The image of a game with captures, castling, en passant and a promotion; three moves of it are
// taken back.
GameRecord SavedGame() {
  EXPECT_TRUE(InitGame("r3k2r/1P1p1ppp/8/2p1P3/8/8/p4PPP/1N2K2R w Kkq -"));
  support::Play("b7a8n d7d5 e5d6 e8g8 e1g1 a2b1q f1b1 g7g5 b1b7 c5c4 d6d7 c4c3 d7d8r f8d8");
  EXPECT_EQ(g.game_len, kRecorded);
  while (g.game_len > kPlayed) UndoGameMove();
  TagRecord();
  return g;
}

// Expects the image to be refused and the present game to be untouched.
void ExpectRefusal(const GameRecord& image, const std::string& what) {
  ASSERT_TRUE(InitNewGame());
  support::Play("e2e4 e7e5 g1f3");
  UndoGameMove();
  const GameRecord before = g;
  const std::vector<std::uint32_t> counters(std::begin(repetition_set), std::end(repetition_set));
  EXPECT_FALSE(RestoreImage(image)) << what;
  EXPECT_TRUE(support::SameBytes(g, before)) << what;
  EXPECT_TRUE(std::equal(counters.begin(), counters.end(), std::begin(repetition_set))) << what;
  EXPECT_EQ(ply, 0) << what;
}

void ExpectAcceptance(const GameRecord& image, const std::string& what) {
  ASSERT_TRUE(InitNewGame());
  const std::vector<std::uint32_t> counters(std::begin(repetition_set), std::end(repetition_set));
  EXPECT_TRUE(RestoreImage(image)) << what;
  EXPECT_TRUE(support::SameBytes(g, image)) << what;
  EXPECT_TRUE(std::equal(counters.begin(), counters.end(), std::begin(repetition_set))) << what;
  EXPECT_EQ(ply, 0) << what;
}

// Walks through the whole game and looks at every position: nothing may abort.
void UseGame() {
  const auto look = [] {
    LegalMoveList();
    GenerateCaptures();
    Check();
  };
  look();
  while (g.game_len > 0) UndoGameMove(), look();
  while (g.game_len < g.game_max) RedoGameMove(), look();
}

TEST_F(ImageTest, TagMarksTheRecordAsASavedGame) {
  GameRecord expected = g;
  expected.tag = 11;
  TagRecord();
  EXPECT_TRUE(support::SameBytes(g, expected));
}

TEST_F(ImageTest, SavedGameComesBackByteForByte) {
  const GameRecord image = SavedGame();
  ExpectAcceptance(image, "saved game");
  EXPECT_EQ(g.tag, 11u);
}

TEST_F(ImageTest, RestoredGameGoesOn) {
  const GameRecord image = SavedGame();
  ASSERT_TRUE(InitNewGame());
  ASSERT_TRUE(RestoreImage(image));
  RedoGameMove();
  RedoGameMove();
  RedoGameMove();
  EXPECT_EQ(g.game_len, kRecorded);
  EXPECT_TRUE(RecordIsSound(g));
  support::Play("a8b6");
  EXPECT_EQ(g.game_max, kRecorded + 1);
  while (g.game_len > 0) UndoGameMove();
  EXPECT_EQ(g.key, g.start_key);
}

TEST_F(ImageTest, RestoringGivesUpTheGameOfBefore) {
  const GameRecord image = SavedGame();
  ASSERT_TRUE(InitNewGame());
  support::Play("e2e4");
  ASSERT_TRUE(RestoreImage(image));
  EXPECT_TRUE(support::SameBytes(g, image));
}

TEST_F(ImageTest, PositionsCanBeRestored) {
  for (const auto& row : support::DataRows("positions.tsv")) {
    support::SetUpPosition(row[0]);
    TagRecord();
    const GameRecord image = g;
    ASSERT_TRUE(InitNewGame());
    EXPECT_TRUE(RestoreImage(image)) << row[0];
    EXPECT_TRUE(support::SameBytes(g, image)) << row[0];
  }
}

TEST_F(ImageTest, FullGameCanBeRestored) {
  const char* shuffle[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  while (g.game_len < kMaxGameMoves) support::Play(shuffle[g.game_len % 4]);
  TagRecord();
  const GameRecord image = g;
  ExpectAcceptance(image, "full game");
  while (g.game_len > 0) UndoGameMove();
  EXPECT_EQ(support::BoardText(),
            "rnbqkbnr/pppppppp/......../......../......../......../PPPPPPPP/RNBQKBNR");
}

TEST_F(ImageTest, OtherTagsAreRefused) {
  GameRecord image = SavedGame();
  for (const std::uint32_t tag : {0u, 10u, 12u, 11u << 24, 0xFFFFFFFFu}) {
    image.tag = tag;
    ExpectRefusal(image, "tag " + std::to_string(tag));
  }
}

struct ImageRow {
  const char* what;
  void (*change)(GameRecord& image);
};

// --- what could do harm ----------------------------------------------------------------------

constexpr ImageRow kHarmful[] = {
    {"board", [](GameRecord& r) { r.board[At("e4")] = Pawn; }},
    {"colour", [](GameRecord& r) { r.color[At("g8")] = NoColour; }},
    {"slot of a square", [](GameRecord& r) { r.list_idx[At("g1")] = 9; }},
    {"slot outside its table", [](GameRecord& r) { r.list_idx[At("g1")] = 1000000; }},
    {"square of a slot", [](GameRecord& r) { r.list_sq[0] = 64; }},
    {"first slot", [](GameRecord& r) { r.list_first[Black] = 0; }},
    {"last slot", [](GameRecord& r) { r.list_last[White] = 600; }},
    {"piece count", [](GameRecord& r) { ++r.piece_cnt[White][Pawn]; }},
    {"material", [](GameRecord& r) { ++r.material[Black]; }},
    {"pawns of a file", [](GameRecord& r) { ++r.pawn_file_cnt[White][0]; }},
    {"pawns of a row", [](GameRecord& r) { ++r.pawn_row_cnt[White][0]; }},
    {"key", [](GameRecord& r) { r.key ^= 1; }},
    {"key of a colour", [](GameRecord& r) { r.color_key[White] ^= 1; }},
    {"king square", [](GameRecord& r) { r.king_sq[White] = -1; }},
    {"side 2", [](GameRecord& r) { r.side = 2, r.xside = -1; }},
    {"side -1", [](GameRecord& r) { r.side = -1, r.xside = 2; }},
    {"both sides the same", [](GameRecord& r) { r.xside = r.side; }},
    {"other side to move", [](GameRecord& r) { std::swap(r.side, r.xside); }},
    {"en-passant square", [](GameRecord& r) { r.ep_sq = 64; }},
    {"negative length", [](GameRecord& r) { r.game_len = -1; }},
    {"more moves played than recorded", [](GameRecord& r) { r.game_max = r.game_len - 1; }},
    {"negative lengths", [](GameRecord& r) { r.game_len = r.game_max = -5; }},
    {"401 moves recorded", [](GameRecord& r) { r.game_max = 401; }},
    {"401 moves played", [](GameRecord& r) { r.game_len = r.game_max = 401; }},
    {"huge lengths", [](GameRecord& r) { r.game_len = r.game_max = 2147483647; }},
    {"one move more played", [](GameRecord& r) { ++r.game_len; }},
    {"one move less played", [](GameRecord& r) { --r.game_len; }},
    {"one move more recorded", [](GameRecord& r) { r.game_moves[r.game_max++] = 77; }},
    {"last move gone", [](GameRecord& r) { r.game_moves[kPlayed - 1] = 0; }},
    {"last move of another piece", [](GameRecord& r) { r.game_moves[kPlayed - 1] ^= 0x3000; }},
    {"last move with a piece code 7", [](GameRecord& r) { r.game_moves[kPlayed - 1] |= 0x7000; }},
    {"last move from another square", [](GameRecord& r) { r.game_moves[kPlayed - 1] |= 0xFC0; }},
    {"last move to another square", [](GameRecord& r) { r.game_moves[kPlayed - 1] ^= 1; }},
    {"first move to another square", [](GameRecord& r) { r.game_moves[0] ^= 1; }},
    {"quiet move that captures", [](GameRecord& r) { r.game_moves[kPlayed - 1] |= kCapture; }},
    {"capture that does not", [](GameRecord& r) { r.game_moves[6] &= ~kCapture; }},
    {"castling to the other side", [](GameRecord& r) { r.game_moves[3] ^= kCastling; }},
    {"quiet move that castles", [](GameRecord& r) { r.game_moves[8] |= kShortCastling; }},
    {"promotion to a king", [](GameRecord& r) { r.game_moves[5] |= 0x6000; }},
    {"en passant onto the target", [](GameRecord& r) { r.game_moves[2] &= ~kEnPassant; }},
    {"captured square outside", [](GameRecord& r) { r.undo[6].cap_sq = 64; }},
    {"captured square negative", [](GameRecord& r) { r.undo[6].cap_sq = -1; }},
    {"captured square elsewhere", [](GameRecord& r) { r.undo[6].cap_sq = At("e4"); }},
    {"captured square occupied", [](GameRecord& r) { r.undo[6].cap_sq = At("g1"); }},
    {"captured piece 0", [](GameRecord& r) { r.undo[6].cap_piece = 0; }},
    {"captured piece 7", [](GameRecord& r) { r.undo[6].cap_piece = 7; }},
    {"captured king", [](GameRecord& r) { r.undo[6].cap_piece = King; }},
    {"captured slot outside", [](GameRecord& r) { r.undo[6].cap_idx = 32; }},
    {"captured slot negative", [](GameRecord& r) { r.undo[6].cap_idx = -1; }},
    {"captured slot of the other side", [](GameRecord& r) { r.undo[6].cap_idx = 15; }},
    {"captured slot in use", [](GameRecord& r) { r.undo[6].cap_idx = r.list_idx[At("g8")]; }},
    {"captured slot behind the last", [](GameRecord& r) { r.undo[6].cap_idx = 31; }},
    {"move to redo of a wrong piece", [](GameRecord& r) { r.game_moves[kPlayed] |= 0x3000; }},
    {"move to redo from an empty square", [](GameRecord& r) { r.game_moves[kPlayed] ^= 0x40; }},
    {"last move to redo", [](GameRecord& r) { r.game_moves[kRecorded - 1] &= ~kCapture; }},
    {"castling that is not counted", [](GameRecord& r) { r.castled[White] = 0; }},
    {"castling that was not made", [](GameRecord& r) { r.castled[Black] = 2; }},
    {"negative castling counter", [](GameRecord& r) { r.castled[Black] = -1; }},
    {"greatest castling counter", [](GameRecord& r) { r.castled[White] = kMost; }},
    {"least castling counter", [](GameRecord& r) { r.castled[Black] = kLeast; }},
};

TEST_F(ImageTest, GameThatCouldDoHarmIsRefused) {
  const GameRecord saved = SavedGame();
  for (const ImageRow& row : kHarmful) {
    const auto image = std::make_unique<GameRecord>(saved);
    row.change(*image);
    ExpectRefusal(*image, row.what);
  }
}

// --- what is taken as it stands --------------------------------------------------------------

constexpr ImageRow kHarmless[] = {
    {"no rights", [](GameRecord& r) { r.castle = 0; }},
    {"all rights", [](GameRecord& r) { r.castle = 15; }},
    {"unknown rights", [](GameRecord& r) { r.castle = 0xFFFFFFFF; }},
    {"rights before a move", [](GameRecord& r) { r.undo[3].castle_before = 0xFFFFFFFF; }},
    {"score", [](GameRecord& r) { r.game_score[0] = kLeast; }},
    {"half-move counter", [](GameRecord& r) { r.fifty = 99; }},
    {"greatest half-move counter", [](GameRecord& r) { r.fifty = kMost; }},
    {"least half-move counter", [](GameRecord& r) { r.fifty = kLeast; }},
    {"half-move counter before a move", [](GameRecord& r) { r.undo[8].fifty_before = kMost; }},
    {"words behind the game", [](GameRecord& r) { r.game_moves[kRecorded] = 0xFFFFFFFF; }},
    {"undo words behind the game",
     [](GameRecord& r) {
       r.undo[kRecorded] = {99, 99, 99, 99, 99};
     }},
    {"castling without its rook",
     [](GameRecord& r) {
       r.game_moves[3] &= ~kCastling;
       r.castled[Black] = 0;
     }},
    {"queen instead of a promotion", [](GameRecord& r) { r.game_moves[5] &= ~kPromotion; }},
    {"move to redo that passes", [](GameRecord& r) { r.game_moves[kPlayed] = 0; }},
    {"no move kept", [](GameRecord& r) { r.game_max = r.game_len; }},
    {"more slots than pieces", [](GameRecord& r) { r.list_last[White] = 15; }},
    {"en-passant square of a set-up without a pawn beside", [](GameRecord& r) { r.ep_sq = 20; }},
};

TEST_F(ImageTest, EverythingElseIsTakenAsItStands) {
  const GameRecord saved = SavedGame();
  for (const ImageRow& row : kHarmless) {
    const auto image = std::make_unique<GameRecord>(saved);
    row.change(*image);
    ExpectAcceptance(*image, row.what);
    UseGame();
  }
}

TEST_F(ImageTest, NullMovesOfAGameAreTakenAsTheyStand) {
  GameRecord image = g;
  image.tag = kSavedTag;
  image.game_max = 2;
  ExpectAcceptance(image, "two kept null moves");
  UseGame();
}

// --- en passant ------------------------------------------------------------------------------

// A capture that the generator would list must be one that can be made.
TEST_F(ImageTest, EnPassantSquareThatWouldAbortLaterIsRefused) {
  struct Row {
    const char* what;
    const char* position;
    const char* square;
    bool sound;
  };
  const Row rows[] = {
      {"as a set-up takes it", "4k3/8/8/3pP3/8/8/8/4K3 w - -", "d6", true},
      {"nobody beside", "4k3/8/8/8/8/8/8/4K3 w - -", "d6", true},
      {"no pawn to take", "4k3/8/8/4P3/8/8/8/4K3 w - -", "d6", false},
      {"no pawn to take from the a-file", "4k3/8/8/P7/8/8/8/4K3 w - -", "b6", false},
      {"no pawn to take from the h-file", "4k3/8/8/7P/8/8/8/4K3 w - -", "g6", false},
      {"own pawn to take", "4k3/8/8/3PP3/8/8/8/4K3 w - -", "d6", false},
      {"own pawn on the square", "4k3/8/3P4/3pP3/8/8/8/4K3 w - -", "d6", false},
      {"enemy piece on the square", "4k3/8/3n4/3pP3/8/8/8/4K3 w - -", "d6", false},
      {"king to take", "8/8/8/3kP3/8/8/8/4K3 w - -", "d6", false},
      {"other piece to take", "4k3/8/8/3nP3/8/8/8/4K3 w - -", "d6", true},
      {"other row", "4k3/8/8/8/3pP3/8/8/4K3 w - -", "d5", true},
      {"off the board", "4k3/8/8/8/8/8/8/4K3 w - -", "d1", false},
      {"off the board", "4k3/8/8/8/8/8/8/4K3 b - -", "d8", false},
      {"at the other edge", "4k3/8/7P/p7/8/8/8/4K3 w - -", "a6", true},
      {"at the other edge", "4k3/8/8/7p/P7/8/8/4K3 w - -", "h6", true},
  };
  for (const Row& row : rows) {
    support::SetUpPosition(row.position);
    GameRecord image = g;
    image.tag = kSavedTag;
    image.ep_sq = At(row.square);
    if (!row.sound) {
      ExpectRefusal(image, row.what);
      continue;
    }
    ExpectAcceptance(image, row.what);
    UseGame();
  }
}

TEST_F(ImageTest, PawnMoveOverTwoRowsThatWouldAbortLaterIsRefused) {
  support::SetUpPosition("4k3/3p4/3n4/4P3/8/8/8/4K3 b - -");
  GameRecord image = g;
  image.tag = kSavedTag;
  image.game_max = 1;
  image.game_moves[0] = MoveWord(Pawn, At("d7"), At("d5"));
  ExpectRefusal(image, "double step over a piece");
}

// --- anything at all -------------------------------------------------------------------------

std::uint32_t OddWord(std::mt19937& random) {
  switch (random() % 5) {
    case 0: return static_cast<std::uint32_t>(random() % 70);
    case 1: return 0u - static_cast<std::uint32_t>(random() % 4);
    case 2: return 1u << random() % 32;
    case 3:
      return static_cast<std::uint32_t>(random() % 8) << 12 |
             static_cast<std::uint32_t>(random() % 4096) |
             static_cast<std::uint32_t>(random() % 32) << 27;
    default: return static_cast<std::uint32_t>(random());
  }
}

// A word of the fields that steer the program, now and then of any other.
std::size_t OddOffset(std::mt19937& random) {
  const std::size_t starts[] = {
      4 + random() % 1188,
      offsetof(GameRecord, game_moves) + random() % (4 * (kRecorded + 1)),
      offsetof(GameRecord, undo) + random() % (20 * (kRecorded + 1)),
      offsetof(GameRecord, castle) + random() % 76,
      random() % sizeof(GameRecord),
  };
  return starts[random() % std::size(starts)] & ~std::size_t{3};
}

TEST_F(ImageTest, WhateverIsAcceptedCanBeUsed) {
  const GameRecord saved = SavedGame();
  std::mt19937 random(1);
  const auto image = std::make_unique<GameRecord>();
  int accepted = 0;
  for (int round = 0; round < 12000; ++round) {
    *image = saved;
    for (auto words = 1 + random() % 2; words > 0; --words) {
      const std::uint32_t word = OddWord(random);
      std::memcpy(reinterpret_cast<unsigned char*>(image.get()) + OddOffset(random), &word,
                  sizeof word);
    }
    if (!RestoreImage(*image)) continue;
    ++accepted;
    UseGame();
  }
  EXPECT_GT(accepted, 500);
}

}  // namespace
}  // namespace tarvyle
