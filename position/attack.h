#pragma once

#include <cstdint>

#include "position/sets.h"
#include "position/types.h"

// Attack tables, and the questions about attacked squares.

namespace tarvyle {

// By AttackIndex. `atk`: bit p is set when a piece of code p on the attacker's square reaches the
// target on an empty board (bit 1: all four diagonal neighbours). `dir_atk`: for sliding pieces,
// the step that leads from the target towards the attacker.
extern std::uint32_t atk[256];
extern int dir_atk[256];

// The index of a square and itself; the least one, of a8 and h1, is 0.
inline constexpr int kAttackCentre = 119;

// Attacker - target in 16-wide form, shifted so that it is never negative.
constexpr int AttackIndex(Square attacker, Square target) {
  return ToWide(attacker) - ToWide(target) + kAttackCentre;
}

// Fills `atk` and `dir_atk`, the tables of reach.h, and `slot_rnd`; called once at start-up.
void InitAtk();

// Whether a piece of that code and colour standing on `from` attacks `to` on the current board.
// Offered to others; the engine itself never calls it.
bool Attack(int piece, int colour, Square from, Square to);

// Whether any piece of `colour` attacks `square`.
bool SqAttack(Square square, int colour);

// All pieces of `colour` that attack `square` when `occupied` are the occupied squares.
SquareSet AttackersOf(Square square, int colour, SquareSet occupied);

// Whether the king of the side to move is attacked.
bool Check();

// Whether a castling move may be played now: right, king and rook at home, empty squares between
// them, and no attack on the king's way. False for any other move.
bool LegalCastl(Move move);

}  // namespace tarvyle
