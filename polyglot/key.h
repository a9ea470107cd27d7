#pragma once

#include <cstdint>

namespace tarvyle::polyglot {

// The key under which a book of this format holds the position on the board. Castling rights count
// where king and rook stand for them, as in the engine's position texts; en passant counts when a
// pawn of the side to move stands beside the one that has passed, pinned or not.
std::uint64_t PositionKey();

}  // namespace tarvyle::polyglot
