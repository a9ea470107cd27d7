#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The engine as a library: started once, reset to what a fresh process has, searched at fixed
// depth.

namespace tarvyle::tools {

// Builds all tables; "hash size" 38. Called once. False without memory.
bool StartEngine();

// What a process has right after its start with this book file (none: an empty learn table and no
// book): the start position, empty learn table, history and counters. False when the book cannot be
// read.
bool FreshProcess(const std::string& book_file = {});

// Sets up "FEN" or "FEN moves m1 m2 ...". False, with some position on the board, when refused.
bool SetUpRoot(std::string_view root);

// Score and node count after one iteration.
struct Iteration {
  int depth;
  int score;
  std::uint64_t nodes;
};

// What one search at fixed depth did.
struct SearchReport {
  std::vector<Iteration> iterations;
  std::vector<std::string> lines;  // thinking lines without their time column
  std::string best_move;           // empty when there is none
  int score = 0;
  int depth = 0;
  std::uint64_t nodes = 0;
};

// Searches the current position with iterations 2..depth, without a clock, with a fixed seed. Asks
// `world.should_stop` when there is one.
SearchReport SearchToDepth(int depth, unsigned seed);

}  // namespace tarvyle::tools
