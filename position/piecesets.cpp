#include "position/piecesets.h"

#include "position/record.h"

namespace tarvyle {

PieceSets board_sets;
std::uint64_t slot_rnd[kPieceSlots][kSquares];

namespace {

PieceSets SetsOfRecord() {
  PieceSets sets = {};
  for (int slot = 0; slot < kPieceSlots; ++slot) {
    const Square square = g.list_sq[slot];
    if (!OnBoard(square)) continue;
    const int colour = SlotOfColour(slot, White) ? White : Black;
    const int piece = g.board[square] & 7;  // within the table, whatever a record on trial says
    sets.of[colour][piece] |= SetOf(square);
    sets.colour[colour] |= SetOf(square);
    sets.slots |= 1u << slot;
    if (piece == Pawn) sets.pawn_slots |= 1u << slot;
    sets.slot_key ^= slot_rnd[slot][square];
  }
  return sets;
}

}  // namespace

// Numbers that only have to differ from one another; they never leave the process. The generator is
// SplitMix64.
void FillSlotKeys() {
  std::uint64_t state = 0;
  for (auto& keys : slot_rnd) {
    for (std::uint64_t& key : keys) {
      state += 0x9E3779B97F4A7C15;
      key = (state ^ state >> 30) * 0xBF58476D1CE4E5B9;
      key = (key ^ key >> 27) * 0x94D049BB133111EB;
      key ^= key >> 31;
    }
  }
}

void RebuildSets() { board_sets = SetsOfRecord(); }

bool SetsAreSound() { return board_sets == SetsOfRecord(); }

}  // namespace tarvyle
