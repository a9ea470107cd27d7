#include "polyglot/key.h"

#include <array>
#include <cstddef>

#include "polyglot/keytable.h"
#include "position/castling.h"
#include "position/enpassant.h"
#include "position/record.h"
#include "position/types.h"

namespace tarvyle::polyglot {

namespace {

std::uint64_t Constant(int index) { return kKeyTable[static_cast<std::size_t>(index)]; }

std::uint64_t PieceKeys() {
  std::uint64_t key = 0;
  for (Square square = 0; square < kSquares; ++square) {
    if (IsEmpty(square)) continue;
    const int kind = 2 * (g.board[square] - Pawn) + (g.color[square] == White ? 1 : 0);
    key ^= Constant(64 * kind + 8 * (7 - RowOf(square)) + FileOf(square));
  }
  return key;
}

std::uint64_t CastlingKeys() {
  std::uint64_t key = 0;
  for (int colour = White; colour <= Black; ++colour) {
    if (ShortRightStands(colour)) key ^= Constant(kCastlingKeys + 2 * colour);
    if (LongRightStands(colour)) key ^= Constant(kCastlingKeys + 2 * colour + 1);
  }
  return key;
}

std::uint64_t EnPassantKey() {
  const Square square = EnPassantSquare();
  if (square == 0 || !PawnBeside(square - dP[g.side], g.side)) return 0;
  return Constant(kEnPassantKeys + FileOf(square));
}

}  // namespace

std::uint64_t PositionKey() {
  const std::uint64_t key = PieceKeys() ^ CastlingKeys() ^ EnPassantKey();
  return g.side == White ? key ^ Constant(kWhiteToMoveKey) : key;
}

}  // namespace tarvyle::polyglot
