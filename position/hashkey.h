#pragma once

#include <cstdint>

#include "position/types.h"

// The piece-square keys from which position keys are built, and their generator. Learn files store
// keys, so the generator, its start value and the order of drawing never change.

namespace tarvyle {

// Keys by KeyIndex; piece codes 0 and 7 stay 0.
extern std::uint64_t hashRnd[1024];

constexpr int KeyIndex(int piece, int colour, Square square) {
  return (colour * 8 + piece) * 64 + square;
}

// State of the generator, a linear congruential one; starts as 11111.
extern std::uint32_t seed16;

// Advances `seed16` once and returns bits 16-30 of it (0..32767).
std::uint32_t rand16();

// Five draws of rand16 in one 64-bit number; only four bits of the first survive.
std::uint64_t Rand64();

// Fills the keys of one colour, pawn to king and a8 to h1. Called for White, then Black, once.
void FillKeys(int colour);

// The key of a piece on a square.
inline std::uint64_t PieceKey(int piece, int colour, Square square) {
  return hashRnd[KeyIndex(piece, colour, square)];
}

}  // namespace tarvyle
