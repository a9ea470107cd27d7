#pragma once

#include <cstddef>
#include <cstdint>

#include "position/sets.h"
#include "position/types.h"

// What each piece reaches from each square, as sets, and where two squares lie to each other.

namespace tarvyle {

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

// All tables below are filled once, by InitReach.

// What a knight and a king reach and a pawn of either colour attacks, by square.
extern SquareSet knight_set[kSquares];
extern SquareSet king_set[kSquares];
extern SquareSet pawn_set[2][kSquares];

// What bishop and rook see, by square.
extern LineTable bishop_lines[kSquares];
extern LineTable rook_lines[kSquares];

// By two squares: those between them when they stand on one line, else none.
extern SquareSet between_set[kSquares][kSquares];

// By direction table (0: White's) and two squares: index of the direction that leads from the first
// towards the second, or kNoDirection where no piece could go.
extern std::uint8_t direction_index[2][kSquares][kSquares];
inline constexpr std::uint8_t kNoDirection = 255;

// Fills these tables; called by InitAtk.
void InitReach();

// What bishop and rook see when `occupied` are the occupied squares, the first piece of each line
// included.
inline SquareSet BishopSet(Square from, SquareSet occupied) {
  const LineTable& table = bishop_lines[from];
  return table.sets[table.IndexOf(occupied)];
}
inline SquareSet RookSet(Square from, SquareSet occupied) {
  const LineTable& table = rook_lines[from];
  return table.sets[table.IndexOf(occupied)];
}

// The same for any piece but a pawn.
inline SquareSet ReachSet(int piece, Square from, SquareSet occupied) {
  switch (piece) {
    case Knight: return knight_set[from];
    case Bishop: return BishopSet(from, occupied);
    case Rook: return RookSet(from, occupied);
    case Queen: return BishopSet(from, occupied) | RookSet(from, occupied);
    default: return king_set[from];
  }
}

}  // namespace tarvyle
