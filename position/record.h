#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "position/types.h"

// The game record: the one block that holds the position and the whole game, and that is also,
// byte for byte, the saved-game file.

namespace tarvyle {

static_assert(std::endian::native == std::endian::little, "the file image is little-endian");

// A 64-bit key as two words, low word first: the file image holds keys at offsets that are
// multiples of four only.
struct Key64 {
  std::uint32_t low;
  std::uint32_t high;

  // cppcheck-suppress uninitMemberVar  ; as uninitialised as a number is
  Key64() = default;
  constexpr Key64(std::uint64_t key)  // NOLINT: a key is used as the number that it is
      : low(static_cast<std::uint32_t>(key)), high(static_cast<std::uint32_t>(key >> 32)) {}
  constexpr operator std::uint64_t() const {  // NOLINT: as above
    return std::bit_cast<std::uint64_t>(*this);
  }
  constexpr Key64& operator^=(std::uint64_t other) {
    return *this = std::bit_cast<Key64>(static_cast<std::uint64_t>(*this) ^ other);
  }
};

// What taking a move back needs. Taking back zeroes all but `fifty_before`.
struct UndoRecord {
  std::int32_t cap_sq;          // square of the captured piece (en passant: the pawn's own), or 0
  std::int32_t cap_piece;       // its code
  std::int32_t cap_idx;         // its piece-list slot
  std::uint32_t castle_before;  // rights before the move
  std::int32_t fifty_before;    // `fifty` before the move
};

inline constexpr int kMaxGameMoves = 400;  // moves of a game
inline constexpr int kRecordMoves = 500;   // the same and room for a search above them
inline constexpr std::uint32_t kSavedTag = 11;

// Arrays indexed by colour have White first; [2][8] is [colour][piece code, file or row].
struct GameRecord {
  std::uint32_t tag;                  // kSavedTag in a saved file; 0 after a set-up
  std::int32_t board[kSquares];       // piece code, 0 if empty
  std::int32_t color[kSquares];       // colour, NoColour if empty
  std::int32_t list_idx[kSquares];    // piece-list slot, -1 if empty
  std::int32_t list_sq[kPieceSlots];  // square of the piece in each slot, -1 if free or captured
  std::int32_t list_first[2];         // first slot of each colour, FirstSlot
  std::int32_t list_last[2];          // last slot used (during a set-up: the next free one)
  std::int32_t piece_cnt[2][8];       // pieces of each code
  std::int32_t material[2];           // sum of value[] on the board, king included
  std::int32_t pawn_file_cnt[2][8];   // pawns on each file
  std::int32_t pawn_row_cnt[2][8];    // pawns on each row
  std::uint32_t castle;               // castling rights
  std::int32_t side;                  // colour to move
  std::int32_t xside;                 // the other colour
  std::int32_t castled[2];            // castling moves of each colour that are not taken back
  std::int32_t king_sq[2];            // king squares
  std::int32_t ep_sq;                 // en-passant target of the set-up text, 0 if none
  Key64 key;                          // XOR of hashRnd over all pieces
  Key64 color_key[2];                 // the same over one colour's pieces
  Key64 start_key;                    // `key` of the set-up position; nothing reads it
  std::int32_t game_len;              // moves played on the board at the search root
  std::int32_t game_max;              // moves recorded (more than played after "undo")
  std::int32_t fifty;  // half-moves since the last capture, pawn move (promotions too), castling or
                       // null move
  Move game_moves[kRecordMoves];          // moves since the set-up; the search's follow the game's
  Key64 game_keys[kRecordMoves];          // `key` after the move of the same index
  UndoRecord undo[kRecordMoves];          // what taking back the move of the same index needs
  std::int32_t game_score[kRecordMoves];  // score recorded with each move of the game
};

inline constexpr std::size_t kRecordSize = 19192;
static_assert(sizeof(UndoRecord) == 20);
static_assert(sizeof(GameRecord) == kRecordSize);
static_assert(offsetof(GameRecord, board) == 4);
static_assert(offsetof(GameRecord, color) == 260);
static_assert(offsetof(GameRecord, list_idx) == 516);
static_assert(offsetof(GameRecord, list_sq) == 772);
static_assert(offsetof(GameRecord, list_first) == 900);
static_assert(offsetof(GameRecord, list_last) == 908);
static_assert(offsetof(GameRecord, piece_cnt) == 916);
static_assert(offsetof(GameRecord, material) == 980);
static_assert(offsetof(GameRecord, pawn_file_cnt) == 988);
static_assert(offsetof(GameRecord, pawn_row_cnt) == 1052);
static_assert(offsetof(GameRecord, castle) == 1116);
static_assert(offsetof(GameRecord, side) == 1120);
static_assert(offsetof(GameRecord, xside) == 1124);
static_assert(offsetof(GameRecord, castled) == 1128);
static_assert(offsetof(GameRecord, king_sq) == 1136);
static_assert(offsetof(GameRecord, ep_sq) == 1144);
static_assert(offsetof(GameRecord, key) == 1148);
static_assert(offsetof(GameRecord, color_key) == 1156);
static_assert(offsetof(GameRecord, start_key) == 1172);
static_assert(offsetof(GameRecord, game_len) == 1180);
static_assert(offsetof(GameRecord, game_max) == 1184);
static_assert(offsetof(GameRecord, fifty) == 1188);
static_assert(offsetof(GameRecord, game_moves) == 1192);
static_assert(offsetof(GameRecord, game_keys) == 3192);
static_assert(offsetof(GameRecord, undo) == 7192);
static_assert(offsetof(GameRecord, game_score) == 17192);

// The game; begun anew by each set-up. Its position fields are written only in this folder.
extern GameRecord g;

inline bool IsEmpty(Square square) { return g.color[square] == NoColour; }
inline bool StandsOn(int piece, int colour, Square square) {
  return g.board[square] == piece && g.color[square] == colour;
}

// Whether a pawn of `colour` stands beside a square, on its row.
inline bool PawnBeside(Square square, int colour) {
  return (FileOf(square) > 0 && StandsOn(Pawn, colour, square - 1)) ||
         (FileOf(square) < 7 && StandsOn(Pawn, colour, square + 1));
}

// Distance from the search root, 0 outside the search. Raised by MakeMove, lowered by UnMakeMove,
// set to 0 where the game moves on, and by the search's BeginGame.
extern int ply;

// The last move made, or 0 directly after a set-up.
inline Move LastMove() {
  const int made = g.game_len + ply;
  return made > 0 ? g.game_moves[made - 1] : 0;
}

// Counters of the positions entered, by key & kRepetitionMask: raised by a set-up and by MakeMove,
// lowered by UnMakeMove. A new game does not reset them; they wrap as unsigned numbers.
inline constexpr std::uint32_t kRepetitionMask = 0x3FFF;
extern std::uint32_t repetition_set[kRepetitionMask + 1];

// Zeroes the repetition counters: for a process that has played nothing, and for a front end that
// is told each game anew.
void ClearRepetitions();

}  // namespace tarvyle
