#pragma once

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <span>

#include "position/record.h"
#include "position/types.h"

// The board as the plain evaluation sees it: rows and files, steps, and what is met along them. It
// shares nothing with the engine but the board itself.

namespace tarvyle::support::plain {

struct Cell {
  int row;
  int file;
};

using Step = Cell;

inline constexpr std::array<Step, 8> kSteps = {  // straight ones, then diagonal ones
    {{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, -1}, {-1, 1}, {1, -1}, {1, 1}}};
inline constexpr std::array<Step, 8> kJumps = {
    {{-2, -1}, {-2, 1}, {-1, -2}, {-1, 2}, {1, -2}, {1, 2}, {2, -1}, {2, 1}}};

inline Cell operator+(Cell a, Step b) { return {a.row + b.row, a.file + b.file}; }
inline bool Inside(Cell cell) {
  return cell.row >= 0 && cell.row < 8 && cell.file >= 0 && cell.file < 8;
}
inline Cell CellOf(Square square) { return {square / 8, square % 8}; }
inline Square SquareOf(Cell cell) { return cell.row * 8 + cell.file; }
inline int CodeAt(Cell cell) { return g.board[SquareOf(cell)]; }
inline int ColourAt(Cell cell) { return g.color[SquareOf(cell)]; }
inline bool PieceAt(Cell cell, int code, int colour) {
  return Inside(cell) && CodeAt(cell) == code && ColourAt(cell) == colour;
}

inline int KingMoves(Cell a, Cell b) {
  return std::max(std::abs(a.row - b.row), std::abs(a.file - b.file));
}

inline Cell KingOf(int colour) {
  for (Square square = 0; square < 64; ++square) {
    if (PieceAt(CellOf(square), King, colour)) return CellOf(square);
  }
  return {-1, -1};
}

inline int Count(int colour, int code) {
  int count = 0;
  for (Square square = 0; square < 64; ++square) count += PieceAt(CellOf(square), code, colour);
  return count;
}

inline int PawnsOnFile(int colour, int file) {
  int count = 0;
  for (int row = 0; row < 8; ++row) count += PieceAt({row, file}, Pawn, colour);
  return count;
}

inline bool PawnsOnRow(int colour, int row) {
  for (int file = 0; file < 8; ++file) {
    if (PieceAt({row, file}, Pawn, colour)) return true;
  }
  return false;
}

struct Met {
  Cell cell;
  int distance;
};

// The first piece along a step, or none before the edge.
inline std::optional<Met> FirstAlong(Cell from, Step step) {
  int distance = 1;
  for (Cell cell = from + step; Inside(cell); cell = cell + step, ++distance) {
    if (CodeAt(cell) != NoPiece) return Met{cell, distance};
  }
  return std::nullopt;
}

inline bool SlidesAlong(int code, Step step) {
  const bool diagonal = step.row != 0 && step.file != 0;
  return code == Queen || code == (diagonal ? Bishop : Rook);
}

inline std::span<const Step> StepsOf(int code) {
  const std::span<const Step> steps = kSteps;
  if (code == Rook) return steps.first(4);
  return code == Bishop ? steps.last(4) : steps;
}

inline int RankOf(int colour, int row) { return colour == White ? 7 - row : row; }

inline int Forward(int colour) { return colour == White ? -1 : 1; }

}  // namespace tarvyle::support::plain
