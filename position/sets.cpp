#include "position/sets.h"

#include "position/record.h"

namespace tarvyle {

PieceSets board_sets;
std::uint64_t slot_rnd[32][kSquares];

void RebuildSets() {
  board_sets = {};
  for (int slot = 0; slot < 32; ++slot) {
    const Square square = g.list_sq[slot];
    if (!OnBoard(square)) continue;
    const int colour = slot >> 4;
    const int piece = g.board[square] & 7;
    board_sets.of[colour][piece] |= SetOf(square);
    board_sets.colour[colour] |= SetOf(square);
    board_sets.slots |= 1u << slot;
    if (piece == Pawn) board_sets.pawn_slots |= 1u << slot;
    board_sets.slot_key ^= slot_rnd[slot][square];
  }
}

}  // namespace tarvyle
