#include "eval/attacksets.h"

#include "position/piecesets.h"
#include "position/reach.h"
#include "position/record.h"

namespace tarvyle {

namespace {

// Adds one attack to every square of a set: a carry chain over the bits of 64 counters.
inline void Add(AttackSets& sets, SquareSet attacked) {
  SquareSet carry = sets.count[0] & attacked;
  sets.count[0] ^= attacked;
  const SquareSet carry2 = sets.count[1] & carry;
  sets.count[1] ^= carry;
  carry = sets.count[2] & carry2;
  sets.count[2] ^= carry2;
  sets.count[3] ^= carry;
}

// What a slider sees, and, behind own sliders that move along the same lines (`partners`), what it
// sees through them: those squares get a bare count. One such step only.
template <SquareSet (*kReach)(Square, SquareSet)>
inline SquareSet AddSlider(AttackSets& sets, Square from, SquareSet occupied, SquareSet partners) {
  const SquareSet reach = kReach(from, occupied);
  Add(sets, reach);
  partners &= reach;
  if (partners != 0) {
    const SquareSet behind = kReach(from, occupied ^ partners) & ~reach;
    Add(sets, behind);
    sets.all |= behind;
  }
  return reach;
}

void FindAttacks(int colour, SquareSet occupied, BoardAttacks& attacks) {
  AttackSets sets = {};
  const SquareSet* own = board_sets.of[colour];
  const SquareSet left = PawnTargetsLeft(colour, own[Pawn]);
  const SquareSet right = PawnTargetsRight(colour, own[Pawn]);
  sets.by[Pawn] = left | right;
  sets.count[0] = left ^ right;
  sets.count[1] = left & right;

  sets.by[King] = king_set[g.king_sq[colour]];
  Add(sets, sets.by[King]);
  for (SquareSet rest = own[Knight]; rest != 0;) {
    const SquareSet reach = knight_set[TakeFirst(rest)];
    sets.by[Knight] |= reach;
    Add(sets, reach);
  }
  const SquareSet diagonal = own[Bishop] | own[Queen];
  const SquareSet straight = own[Rook] | own[Queen];
  for (SquareSet rest = own[Bishop]; rest != 0;) {
    const Square from = TakeFirst(rest);
    const SquareSet reach = AddSlider<BishopSet>(sets, from, occupied, diagonal);
    attacks.reach[from] = reach;
    sets.by[Bishop] |= reach;
  }
  for (SquareSet rest = own[Rook]; rest != 0;) {
    const Square from = TakeFirst(rest);
    const SquareSet reach = AddSlider<RookSet>(sets, from, occupied, straight);
    attacks.reach[from] = reach;
    sets.by[Rook] |= reach;
  }
  for (SquareSet rest = own[Queen]; rest != 0;) {
    const Square from = TakeFirst(rest);
    const SquareSet reach = AddSlider<BishopSet>(sets, from, occupied, diagonal) |
                            AddSlider<RookSet>(sets, from, occupied, straight);
    attacks.reach[from] = reach;
    sets.by[Queen] |= reach;
  }
  sets.all |= sets.by[Pawn] | sets.by[Knight] | sets.by[Bishop] | sets.by[Rook] | sets.by[Queen] |
              sets.by[King];
  attacks.of[colour] = sets;
}

}  // namespace

BoardAttacks AttacksOnBoard() {
  BoardAttacks attacks;
  const SquareSet occupied = Occupied();
  FindAttacks(White, occupied, attacks);
  FindAttacks(Black, occupied, attacks);
  return attacks;
}

}  // namespace tarvyle
