#pragma once

#include <string_view>

// Commands that are not the protocol's but customary.

namespace tarvyle::uci {

// "perft N": legal leaf nodes below each move, and their sum. "stop" ends it.
void ObeyPerft(std::string_view words);

// "go perft N": the same with the sum in the words that scripts look for, "Nodes searched: N".
void ObeyGoPerft(std::string_view words);

// "eval": the static evaluation, in pawns, from White's point of view.
void ObeyEval(std::string_view words);

// "d": the board and its text.
void ObeyShow(std::string_view words);

// "bench [depth]": as `tarv bench`. "stop" ends it. What was learned in the game is forgotten.
void ObeyBench(std::string_view words);

}  // namespace tarvyle::uci
