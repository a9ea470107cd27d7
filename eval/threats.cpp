#include "eval/threats.h"

#include "eval/attacksets.h"
#include "eval/weights.h"
#include "position/piecesets.h"
#include "position/types.h"

namespace tarvyle {

namespace {

// Squares whose cheapest attacker in `a` is of a cheaper type than in `b`; minor pieces are equal,
// and an attack that shows no type is the dearest.
SquareSet CheaperIn(const AttackSets& a, const AttackSets& b) {
  SquareSet seen = b.by[Pawn];
  SquareSet cheaper = a.by[Pawn] & ~seen;
  seen |= b.by[Knight] | b.by[Bishop];
  cheaper |= (a.by[Knight] | a.by[Bishop]) & ~seen;
  for (int piece = Rook; piece <= King; ++piece) {
    seen |= b.by[piece];
    cheaper |= a.by[piece] & ~seen;
  }
  return cheaper;
}

// Squares with fewer attacks in `a` than in `b`: the highest bit that differs decides.
SquareSet FewerIn(const AttackSets& a, const AttackSets& b) {
  SquareSet fewer = 0;
  for (int bit = 0; bit < 4; ++bit) {
    const SquareSet differs = a.count[bit] ^ b.count[bit];
    fewer = (fewer & ~differs) | (b.count[bit] & differs);
  }
  return fewer;
}

// Pieces of the side that a piece of a cheaper class attacks.
SquareSet AttackedByCheaper(const Side& side) {
  SquareSet attacks = side.their_attacks.by[Pawn];
  SquareSet pieces = (side.own[Knight] | side.own[Bishop]) & attacks;
  attacks |= side.their_attacks.by[Knight] | side.their_attacks.by[Bishop];
  pieces |= side.own[Rook] & attacks;
  attacks |= side.their_attacks.by[Rook];
  pieces |= side.own[Queen] & attacks;
  attacks |= side.their_attacks.by[Queen];
  return pieces | (side.own[King] & attacks);
}

}  // namespace

Threats FindThreats(const Side& side) {
  Threats threats = {};
  threats.attacked = board_sets.colour[side.colour] & side.their_attacks.all;
  if (threats.attacked == 0) return threats;
  threats.hanging = threats.attacked & (~side.attacks.all | AttackedByCheaper(side));
  const SquareSet guarded = threats.attacked & ~threats.hanging;
  if (guarded == 0) return threats;
  threats.outbid = guarded & CheaperIn(side.their_attacks, side.attacks);
  threats.outnumbered = guarded & side.own[Pawn] & ~side.attacks.by[Pawn];
  if (threats.outnumbered != 0) threats.outnumbered &= FewerIn(side.attacks, side.their_attacks);
  return threats;
}

int ThreatTerms(const Side& side, const Threats& threats, SquareSet pieces) {
  if ((threats.attacked & pieces) == 0) return 0;
  int loss = weight::kAttackLoss * AttackSum(side.their_attacks, threats.attacked & pieces) +
             weight::kOutbidLoss * CountOf(threats.outbid & pieces) +
             weight::kOutnumberedLoss * CountOf(threats.outnumbered & pieces);
  const SquareSet hanging = threats.hanging & pieces;
  if (hanging != 0) {
    loss += weight::kHangingLoss * CountOf(hanging) +
            weight::kHangingPawnLoss * CountOf(hanging & side.own[Pawn]);
    if (HasSeveral(hanging)) loss += weight::kSeveralHangLoss;
  }
  return -loss;
}

int DearestPiece(const Side& side, SquareSet pieces) {
  for (int piece = King; pieces != 0 && piece >= Pawn; --piece) {
    if ((side.own[piece] & pieces) != 0) return piece;
  }
  return 0;
}

}  // namespace tarvyle
