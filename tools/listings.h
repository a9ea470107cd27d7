#pragma once

#include <string>
#include <string_view>

// Answers of `tarv positions`, `tarv movelists` and `tarv perft` to one line.

namespace tarvyle::tools {

// FEN -> FEN, evaluation, keys, extra key, position text; or FEN and "refused".
std::string DescribePosition(std::string_view line);

// FEN -> FEN, all moves with their words, captures with their words, legal moves.
std::string DescribeMoves(std::string_view line);

// FEN, depth -> FEN, depth, number of legal leaf nodes.
std::string DescribePerft(std::string_view line);

// Prints the leaf nodes below each root move and their sum; or only the sum. Throws
// std::runtime_error for a refused position.
void PrintPerft(const std::string& fen, int depth, bool divide);

}  // namespace tarvyle::tools
