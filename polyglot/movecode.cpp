#include "polyglot/movecode.h"

#include <initializer_list>

#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"

namespace tarvyle::polyglot {

namespace {

constexpr int kPromotionShift = 12;

constexpr int SquareCode(Square square) { return 8 * (7 - RowOf(square)) + FileOf(square); }

constexpr std::uint16_t Code(Square from, Square to, int promotion) {
  return static_cast<std::uint16_t>(promotion << kPromotionShift | SquareCode(from) << 6 |
                                    SquareCode(to));
}

constexpr int PromotionCode(int piece) { return piece - Knight + 1; }

Square RookTakenBy(Move castling) {
  const int colour = OriginOf(castling) == kKingHome[White] ? White : Black;
  return (castling & kShortCastling) != 0 ? kShortRookHome[colour] : kLongRookHome[colour];
}

std::uint16_t PlainCode(Move move) {
  const int promotion = (move & kPromotion) != 0 ? PromotionCode(PieceOf(move)) : 0;
  return Code(OriginOf(move), TargetOf(move), promotion);
}

bool HasCode(Move move, std::uint16_t code) {
  return CodeOfMove(move) == code || PlainCode(move) == code;
}

}  // namespace

std::uint16_t CodeOfMove(Move move) {
  if ((move & kCastling) != 0) return Code(OriginOf(move), RookTakenBy(move), 0);
  return PlainCode(move);
}

Move MoveOfCode(std::uint16_t code) {
  if (!LegalMoveList()) return 0;
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
    const Move move = tree[i];
    if (HasCode(move, code)) return move;
    if ((move & kPromotion) == 0) continue;
    // These two are legal where promoting to a queen is, and never listed.
    for (const int piece : {Bishop, Rook}) {
      const Move other = (move & ~kPieceMask) | static_cast<Move>(piece << 12);
      if (HasCode(other, code)) return other;
    }
  }
  return 0;
}

}  // namespace tarvyle::polyglot
