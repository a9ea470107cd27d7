#include "position/legalfilter.h"

#include "position/attack.h"
#include "position/piecesets.h"
#include "position/reach.h"
#include "position/record.h"

namespace tarvyle {

namespace {

// Pieces of `colour` that stand alone between its king and an enemy slider.
SquareSet PinnedPieces(int colour, Square king, SquareSet occupied) {
  const SquareSet* enemy = board_sets.of[1 - colour];
  SquareSet pinners = (BishopSet(king, 0) & (enemy[Bishop] | enemy[Queen])) |
                      (RookSet(king, 0) & (enemy[Rook] | enemy[Queen]));
  SquareSet pinned = 0;
  while (pinners != 0) {
    const SquareSet shields = between_set[king][TakeFirst(pinners)] & occupied;
    if (!HasSeveral(shields)) pinned |= shields & board_sets.colour[colour];
  }
  return pinned;
}

bool SameLine(Square king, Square a, Square b) {
  return direction_index[0][king][a] == direction_index[0][king][b];
}

}  // namespace

LegalFilter::LegalFilter()
    : side_(g.side),
      king_(g.king_sq[side_]),
      occupied_(Occupied()),
      pinned_(PinnedPieces(side_, king_, occupied_)),
      targets_(~SquareSet{0}) {
  const SquareSet checkers = AttackersOf(king_, 1 - side_, occupied_);
  if (checkers == 0) return;
  targets_ = HasSeveral(checkers) ? 0 : checkers | between_set[king_][FirstOf(checkers)];
}

bool LegalFilter::IsLegal(Move move) const {
  const Square from = OriginOf(move);
  const Square to = TargetOf(move);
  if ((move & (kCastling | kEnPassant)) != 0) {
    return (move & kEnPassant) != 0 ? EnPassantIsLegal(move) : LegalCastl(move);
  }
  if (from == king_) return AttackersOf(to, 1 - side_, occupied_ ^ SetOf(from)) == 0;
  return Contains(targets_, to) && (!Contains(pinned_, from) || SameLine(king_, from, to));
}

// Two pawns leave their squares at once, so a line may open that neither of them shielded alone.
bool LegalFilter::EnPassantIsLegal(Move move) const {
  const Square taken = TargetOf(move) - dP[side_];
  const SquareSet occupied =
      (occupied_ ^ SetOf(OriginOf(move)) ^ SetOf(taken)) | SetOf(TargetOf(move));
  return (AttackersOf(king_, 1 - side_, occupied) & ~SetOf(taken)) == 0;
}

}  // namespace tarvyle
