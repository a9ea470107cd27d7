#include "position/attack.h"

#include "position/castling.h"
#include "position/directions.h"
#include "position/piecesets.h"
#include "position/reach.h"
#include "position/record.h"

namespace tarvyle {

std::uint32_t atk[256];
int dir_atk[256];

namespace {

void MarkSlider(int piece, int step) {
  for (int distance = 1; distance <= 7; ++distance) {
    const int index = kAttackCentre + distance * step;
    atk[index] |= 1u << piece;
    dir_atk[index] = step;
  }
  // A pawn's captures are the bishop's first steps; the rows decide about its colour at use.
  if (piece == Bishop) atk[kAttackCentre + step] |= 1u << Pawn;
}

// Whether the squares between `from` and `to`, which lie on one line, are empty.
bool LineIsFree(Square from, Square to, int step) {
  const int goal = ToWide(from);
  for (int wide = ToWide(to) + step; !OffBoard(wide); wide += step) {
    if (wide == goal) return true;
    if (g.color[FromWide(wide)] != NoColour) return false;
  }
  return false;
}

// Knights, pawns and king of `colour` that attack `square`: those that stand where such a piece of
// the other colour would reach from there.
SquareSet Steppers(Square square, int colour) {
  const SquareSet* own = board_sets.of[colour];
  return (knight_set[square] & own[Knight]) | (king_set[square] & own[King]) |
         (pawn_set[1 - colour][square] & own[Pawn]);
}

}  // namespace

void InitAtk() {
  InitReach();
  FillSlotKeys();
  for (int piece = Knight; piece <= King; ++piece) {
    for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
      if (IsSlider(piece)) {
        MarkSlider(piece, dir_white[d]);
      } else {
        atk[kAttackCentre + dir_white[d]] |= 1u << piece;
      }
    }
  }
}

bool Attack(int piece, int colour, Square from, Square to) {
  const int index = AttackIndex(from, to);
  if ((atk[index] >> piece & 1) == 0) return false;
  if (piece == Pawn) return colour == White ? RowOf(from) > RowOf(to) : RowOf(from) < RowOf(to);
  return !IsSlider(piece) || LineIsFree(from, to, dir_atk[index]);
}

// AttackersOf cut short at the first one found: it is asked at every node.
bool SqAttack(Square square, int colour) {
  if (Steppers(square, colour) != 0) return true;
  const SquareSet* own = board_sets.of[colour];
  const SquareSet occupied = Occupied();
  return (BishopSet(square, occupied) & (own[Bishop] | own[Queen])) != 0 ||
         (RookSet(square, occupied) & (own[Rook] | own[Queen])) != 0;
}

SquareSet AttackersOf(Square square, int colour, SquareSet occupied) {
  const SquareSet* own = board_sets.of[colour];
  return Steppers(square, colour) | (BishopSet(square, occupied) & (own[Bishop] | own[Queen])) |
         (RookSet(square, occupied) & (own[Rook] | own[Queen]));
}

bool Check() { return SqAttack(g.king_sq[g.side], g.xside); }

bool LegalCastl(Move move) {
  const int side = g.side;
  const Square king = kKingHome[side];
  const auto safe = [](Square square) { return !SqAttack(square, g.xside); };
  if ((move & kShortCastling) != 0 && ShortCastlingReady(side) && safe(king) && safe(king + 1) &&
      safe(king + 2)) {
    return true;
  }
  // The rook's way over the b-file may be attacked, the king's may not.
  return (move & kLongCastling) != 0 && LongCastlingReady(side) && safe(king) && safe(king - 1) &&
         safe(king - 2);
}

}  // namespace tarvyle
