#pragma once

#include <optional>
#include <string>
#include <vector>

#include "position/types.h"

namespace tarvyle::tools {

// A position of a saved game.
struct GamePosition {
  std::string board;  // 64 piece letters from a8 to h1, a blank for an empty square
  bool check;
};

// A move of a saved game and where it led.
struct GameMove {
  Move move;
  std::string san;
  int number;                // of the full move
  int side;                  // that made it
  std::optional<int> score;  // for White, 1/1000 pawn, where the engine searched the move; a mate
                             // counts from `after`; none of a move that mates
  GamePosition after;
};

struct SavedGame {
  std::string start_fen;  // "" for the usual start position
  GamePosition start;
  std::vector<GameMove> moves;
  std::vector<std::string> taken_back;  // moves that "redo" would play
  std::string white;
  std::string black;
  std::string date;    // of the file, "2026.11.30"
  std::string result;  // "1-0", "0-1", "1/2-1/2" or "*"
  std::string reason;  // "checkmate", "stalemate", ..., or "" while the game goes on
};

// Reads a saved game by the rules of the engine's "load" and makes it the game. A side is named
// Tarvyle when the engine chose more than half of its moves, else Player; "?" when it made none.
// Throws std::runtime_error that says what is wrong with the file.
SavedGame ReadSavedGame(const std::string& path);

}  // namespace tarvyle::tools
