#pragma once

#include <bit>
#include <cstdint>

#include "position/types.h"

// Sets of squares, one bit each (bit 0 = a8), and what each piece reaches as a set. Kept beside the
// game record for questions about many squares at once; the order of moves and of evaluation terms
// always comes from the piece list.

namespace tarvyle {

using SquareSet = std::uint64_t;

constexpr SquareSet SetOf(Square square) { return SquareSet{1} << square; }
constexpr bool Contains(SquareSet set, Square square) { return (set >> square & 1) != 0; }
inline Square FirstOf(SquareSet set) { return std::countr_zero(set); }
inline int CountOf(SquareSet set) { return std::popcount(set); }

// Takes the first square out of a set that is not empty.
inline Square TakeFirst(SquareSet& set) {
  const Square square = FirstOf(set);
  set &= set - 1;
  return square;
}

inline constexpr SquareSet kFileA = 0x0101010101010101;
inline constexpr SquareSet kFileH = kFileA << 7;
inline constexpr SquareSet kRow0 = 0xFF;  // the eighth rank

constexpr SquareSet FileSet(int file) { return kFileA << file; }
constexpr SquareSet RowSet(int row) { return kRow0 << (8 * row); }

// One step towards the promotion row, and the squares that a set of pawns attacks.
constexpr SquareSet Ahead(int colour, SquareSet set) {
  return colour == White ? set >> 8 : set << 8;
}
constexpr SquareSet PawnTargetsLeft(int colour, SquareSet pawns) {
  return colour == White ? (pawns & ~kFileA) >> 9 : (pawns & ~kFileA) << 7;
}
constexpr SquareSet PawnTargetsRight(int colour, SquareSet pawns) {
  return colour == White ? (pawns & ~kFileH) >> 7 : (pawns & ~kFileH) << 9;
}
constexpr SquareSet PawnTargets(int colour, SquareSet pawns) {
  return PawnTargetsLeft(colour, pawns) | PawnTargetsRight(colour, pawns);
}

// What a slider sees from one square, by the occupancy of its lines: a multiplication sends the
// relevant occupancies to places in `sets`.
struct LineTable {
  SquareSet relevant;
  std::uint64_t multiplier;
  const SquareSet* sets;
  int shift;

  std::size_t IndexOf(SquareSet occupied) const {
    return static_cast<std::size_t>((occupied & relevant) * multiplier >> shift);
  }
};

// What a knight and a king reach, by square.
extern SquareSet knight_set[kSquares];
extern SquareSet king_set[kSquares];
extern SquareSet pawn_set[2][kSquares];            // by colour of the pawn and its square
extern SquareSet between_set[kSquares][kSquares];  // squares between two on one line, or none
// By direction table (0: White's) and two squares: index of the direction that leads from the first
// towards the second, or kNoDirection where no piece could go.
inline constexpr std::uint8_t kNoDirection = 255;
extern std::uint8_t direction_index[2][kSquares][kSquares];
// What bishop and rook see, by square.
extern LineTable bishop_lines[kSquares];
extern LineTable rook_lines[kSquares];

// Fills all of these; called once at start-up.
void InitSets();

inline SquareSet BishopSet(Square from, SquareSet occupied) {
  const LineTable& table = bishop_lines[from];
  return table.sets[table.IndexOf(occupied)];
}

inline SquareSet RookSet(Square from, SquareSet occupied) {
  const LineTable& table = rook_lines[from];
  return table.sets[table.IndexOf(occupied)];
}

// What an officer or king on `from` reaches.
inline SquareSet ReachSet(int piece, Square from, SquareSet occupied) {
  switch (piece) {
    case Knight: return knight_set[from];
    case Bishop: return BishopSet(from, occupied);
    case Rook: return RookSet(from, occupied);
    case Queen: return BishopSet(from, occupied) | RookSet(from, occupied);
    default: return king_set[from];
  }
}

// Where the pieces of the game record stand, as sets. Follows the record: written by the helpers
// that lift and place a piece, rebuilt when a record is set.
struct PieceSets {
  SquareSet of[2][8];        // by colour and piece code
  SquareSet colour[2];       // all pieces of a colour
  std::uint32_t slots;       // slots in use, White's in the low half
  std::uint32_t pawn_slots;  // those of them that hold a pawn
  std::uint64_t slot_key;    // XOR of slot_rnd over all pieces: which slot stands where

  bool operator==(const PieceSets&) const = default;
};
extern PieceSets board_sets;

inline SquareSet Occupied() { return board_sets.colour[White] | board_sets.colour[Black]; }

// Keys by slot and square, for telling apart positions that differ only in the slots of like
// pieces.
extern std::uint64_t slot_rnd[32][kSquares];

// Builds `board_sets` from the game record.
void RebuildSets();

// Whether `board_sets` agrees with the game record.
bool SetsAreSound();

}  // namespace tarvyle
