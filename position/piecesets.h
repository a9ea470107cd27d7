#pragma once

#include <cstdint>

#include "position/sets.h"
#include "position/types.h"

// The pieces of the game record as sets of squares, kept beside it.

namespace tarvyle {

// Where the pieces of the game record stand. Follows the record: written by the helpers of
// pieces.h, rebuilt when a record is set.
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
// pieces. Filled once, by FillSlotKeys.
extern std::uint64_t slot_rnd[kPieceSlots][kSquares];

// Fills `slot_rnd`; called by InitAtk.
void FillSlotKeys();

// Builds `board_sets` from the game record.
void RebuildSets();

// Whether `board_sets` agrees with the game record.
bool SetsAreSound();

}  // namespace tarvyle
