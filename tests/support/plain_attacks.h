#pragma once

#include <cstdint>

#include "position/types.h"
#include "tests/support/plain_board.h"

// Attack words as the plain evaluation finds them: from each square outwards.

namespace tarvyle::support {

// The attack word of a square, found by looking outwards from it.
std::uint32_t PlainAttackWord(int colour, Square square);

namespace plain {

inline std::uint32_t TypeBit(int code) { return 0x10000u >> code; }

inline bool HasType(std::uint32_t word, int code) { return (word & TypeBit(code)) != 0; }

inline int Attackers(std::uint32_t word) { return static_cast<int>(word % 16); }

inline std::uint32_t WordAt(int colour, Cell cell) {
  return Inside(cell) ? PlainAttackWord(colour, SquareOf(cell)) : 0;
}

}  // namespace plain

}  // namespace tarvyle::support
