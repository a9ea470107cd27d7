#pragma once

#include <optional>
#include <vector>

#include "position/types.h"

// A second, plain move generator: it walks from each piece of the piece list by rows and files, in
// the order of directions that a side's table has, and writes every move where it meets it. It
// shares no code with the engine's but the game record; PlainlyLegal alone makes its move by
// MakeMove.

namespace tarvyle::support {

// All pseudo-legal moves of the side to move, or none at all where it could capture the enemy king.
std::optional<std::vector<Move>> PlainMoves();

// Its captures, en passant left out, and its promotions, in the order of the direction table of
// `table`, a colour.
std::optional<std::vector<Move>> PlainCaptures(int table);

// Whether a move that PlainMoves lists leaves its king safe and, castling, leads him over safe
// squares: found by making it and looking outwards from the king. The position is as before.
bool PlainlyLegal(Move move);

// Whether `colour` attacks a square.
bool PlainlyAttacked(Square square, int colour);

}  // namespace tarvyle::support
