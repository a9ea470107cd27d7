#include "eval/mobility.h"

#include "eval/attackmap.h"
#include "eval/attacksets.h"
#include "eval/tables.h"
#include "eval/weights.h"
#include "position/directions.h"
#include "position/piecesets.h"
#include "position/reach.h"
#include "position/record.h"
#include "position/sets.h"

namespace tarvyle {

namespace {

// Walks on from `wide` over empty squares. Returns the square of the piece that ends the walk, or
// -1 at the edge; `wide` is left there, `empty` counts the squares passed.
Square FirstPiece(int& wide, int step, int& empty) {
  for (wide += step; !OffBoard(wide); wide += step) {
    const Square square = FromWide(wide);
    if (g.color[square] != NoColour) return square;
    ++empty;
  }
  return -1;
}

// Bonus for an enemy piece behind another one on a slider's line: an x-ray through an own piece, or
// a pin, which is worth more before the king, and most when the pinned piece is attacked twice. Its
// attacks are counted only then.
template <typename Count>
int BonusBehind(bool own_front, bool king_behind, Count attacks_on_front) {
  if (own_front) return king_behind ? weight::kXRayOfKing : weight::kXRay;
  if (!king_behind) return weight::kPin;
  return attacks_on_front() >= 2 ? weight::kPinToKingTwice : weight::kPinToKing;
}

// Enemy pieces that are worth more than the scanning one.
SquareSet DearerPieces(const Side& side, int piece) {
  SquareSet dearer = side.theirs[King];
  if (piece != Queen) dearer |= side.theirs[Queen];
  if (piece == Bishop) dearer |= side.theirs[Rook];
  return dearer;
}

}  // namespace

void Mobile_Pin_XRay(Square square, int piece, int colour, RayScan& result,
                     const std::uint32_t* opponent_attacks, const std::uint32_t* own_attacks) {
  result = {0, 0};
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    int wide = ToWide(square);
    const Square front = FirstPiece(wide, dir_white[d], result.empty);
    if (front < 0 || g.board[front] == King || g.board[front] == Pawn) continue;
    int passed = 0;
    const Square behind = FirstPiece(wide, dir_white[d], passed);
    if (behind < 0 || g.color[behind] == colour) continue;
    // Worth a bonus when it is dearer than the scanning piece, or undefended.
    if (comp_value[g.board[behind]] > comp_value[piece] || opponent_attacks[behind] == 0) {
      result.bonus += BonusBehind(g.color[front] == colour, g.board[behind] == King,
                                  [&] { return AttackCount(own_attacks[front]); });
    }
  }
}

int LineBonus(const Side& side, int piece, Square square) {
  const SquareSet enemies = board_sets.colour[side.opponent];
  // Undefended or dearer pieces that the slider would see on an empty board but does not see now.
  SquareSet targets = (enemies & ~side.their_attacks.all) | DearerPieces(side, piece);
  targets &= ReachSet(piece, square, 0) & ~side.reach[square];
  int bonus = 0;
  while (targets != 0) {
    const Square behind = TakeFirst(targets);
    const SquareSet passed = between_set[square][behind] & Occupied();
    if (HasSeveral(passed)) continue;
    const SquareSet never_pinned =
        side.own[Pawn] | side.theirs[Pawn] | side.own[King] | side.theirs[King];
    if ((passed & never_pinned) != 0) continue;
    const bool king_behind = Contains(side.theirs[King], behind);
    const Square front = FirstOf(passed);
    bonus += BonusBehind(Contains(board_sets.colour[side.colour], front), king_behind,
                         [&] { return AttackCountAt(side.attacks, front); });
  }
  return bonus;
}

}  // namespace tarvyle
