#pragma once

#include <cstdint>

#include "position/types.h"

// One attack word per colour and square: how many pieces attack it, and of which types. For others:
// the engine itself uses the sets of attacksets.h, which hold the same knowledge.

namespace tarvyle {

// By colour and square, as of the last GenerateAttackes. Bits 0-3 of a word hold the number of
// attacks, x-rays through an own slider included; the type bits are those of piece_cntrl (x-rays
// set none). 0: not attacked.
// Offered to others; the engine itself never reads it.
extern std::uint32_t p_attack[2][kSquares];

// Attack-type bit by piece code: the cheaper the piece, the higher the bit.
inline constexpr std::uint32_t piece_cntrl[7] = {0, 32768, 16384, 8192, 4096, 2048, 1024};

// The same with the bishop on the knight's bit: minor pieces count as equal.
// Offered to others; the engine itself never reads it.
inline constexpr std::uint32_t comp_piece_cntrl[7] = {0, 32768, 16384, 16384, 4096, 2048, 1024};

// Number of attackers in an attack word.
constexpr int AttackCount(std::uint32_t word) { return static_cast<int>(word & 15); }

// Rebuilds `p_attack` from the board.
// Offered to others; the engine itself never calls it.
void GenerateAttackes();

// Type bit of the cheapest attacker in the low 16 bits of an attack word; 0 when there is none.
// Offered to others; the engine itself never calls it.
std::uint32_t get_less(std::uint32_t word);

}  // namespace tarvyle
