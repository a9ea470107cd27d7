#pragma once

#include "eval/side.h"
#include "position/sets.h"

namespace tarvyle {

// What the opponent's attacks mean for one side's pieces.
struct Threats {
  SquareSet attacked;     // attacked pieces
  SquareSet hanging;      // of those, undefended ones and ones that a cheaper piece attacks
  SquareSet outbid;       // others whose cheapest attacker is cheaper than the cheapest defender
  SquareSet outnumbered;  // others, pawns that no pawn defends, with more attackers than defenders
};

// Sorts the pieces of `side` by the attacks on them.
Threats FindThreats(const Side& side);

// What the threats cost the pieces in `pieces` (never above 0). The second hanging piece costs
// more, so the sum over some pieces is what it is when exactly they are walked.
int ThreatTerms(const Side& side, const Threats& threats, SquareSet pieces);

// Code of the dearest among the pieces of a set; 0 for none.
int DearestPiece(const Side& side, SquareSet pieces);

}  // namespace tarvyle
