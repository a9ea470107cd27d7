#pragma once

#include <string>

namespace tarvyle::uci {

// A search score as the protocol has it: "cp" and hundredths of a pawn, or "mate" and the number of
// moves, negative when the side to move is mated; from the side to move's point of view.
// `line_length` is the number of plies of the line that it belongs to: a mate that the table
// remembers may be farther away than its score says, but never nearer than the line shown.
std::string UciScore(int score, int line_length);

// Number of moves in which the side to move mates by such a score, or 0 when it does not.
int MatesIn(int score, int line_length);

}  // namespace tarvyle::uci
