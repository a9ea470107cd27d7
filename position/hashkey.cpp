#include "position/hashkey.h"

namespace tarvyle {

std::uint64_t hashRnd[1024];
std::uint32_t seed16 = 11111;

std::uint32_t rand16() {
  seed16 = seed16 * 1103515245u + 12345u;
  return seed16 >> 16 & 0x7FFF;
}

std::uint64_t Rand64() {
  std::uint64_t key = 0;
  for (int shift = 60; shift >= 0; shift -= 15) {
    key ^= static_cast<std::uint64_t>(rand16()) << shift;
  }
  return key;
}

void FillKeys(int colour) {
  for (int piece = Pawn; piece <= King; ++piece) {
    for (Square square = 0; square < kSquares; ++square) {
      hashRnd[KeyIndex(piece, colour, square)] = Rand64();
    }
  }
}

}  // namespace tarvyle
