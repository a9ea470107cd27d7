#include "tests/support/plain_kingsafety.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "position/directions.h"
#include "position/record.h"
#include "position/types.h"
#include "tests/support/plain_attacks.h"
#include "tests/support/plain_board.h"
#include "tests/support/plain_phase.h"

namespace tarvyle::support {

using namespace plain;

namespace {

bool RookAtHome(int colour, int file, std::uint32_t right) {
  const int home = colour == White ? 7 : 0;
  return PieceAt({home, 4}, King, colour) && PieceAt({home, file}, Rook, colour) &&
         (g.castle & right) != 0;
}

int DangerOf(int lines) {
  if (lines > 20) return 0;
  return static_cast<int>(std::lround(60 * std::sin(std::numbers::pi * lines / 20)));
}

}  // namespace

int PlainAttackedLines(int colour) {
  const int o = 1 - colour;
  const Cell king = KingOf(colour);
  int lines = 0;
  for (const Step step : StepsOf(Queen)) {
    const int slider = step.row != 0 && step.file != 0 ? Bishop : Rook;
    if (Count(o, slider) + Count(o, Queen) == 0) continue;
    const auto first = FirstAlong(king, step);
    for (Cell cell = king + step; Inside(cell); cell = cell + step) {
      if (ColourAt(cell) != o &&
          (HasType(WordAt(o, cell), slider) || HasType(WordAt(o, cell), Queen))) {
        ++lines;
      }
      if (first && SquareOf(first->cell) == SquareOf(cell)) break;
    }
  }
  for (const Step jump : kJumps) {
    const Cell cell = king + jump;
    if (Inside(cell) && ColourAt(cell) != o && HasType(WordAt(o, cell), Knight)) ++lines;
  }
  return lines;
}

void PlainKing::Add(const std::string& term, int amount) {
  sum += amount;
  terms[term] += amount;
}

PlainKing PlainKingTerms(int colour) {
  const int o = 1 - colour;
  const Cell king = KingOf(colour);
  PlainKing result;
  std::vector<Step> ring(kSteps.begin(), kSteps.end());
  ring.push_back(dir == dir_black ? Step{1, -2} : Step{-2, -1});
  int free = 0;
  int pawns_near = 0;
  int shields = 0;
  for (const Step step : ring) {
    const Cell cell = king + step;
    if (!Inside(cell)) continue;
    result.Add("attacks on the ring", -Attackers(WordAt(o, cell)));
    if (WordAt(o, cell) == 0 && ColourAt(cell) != colour) ++free;
    if (!PieceAt(cell, Pawn, colour)) continue;
    ++pawns_near;
    if ((cell.row - king.row) * Forward(colour) <= 0) continue;
    ++shields;
    result.Add("shield", std::array{4, 6, 2, 0, 0, 2, 6, 4}[cell.file]);
  }
  if (pawns_near == 0) result.Add("no pawn near", -4);
  if (shields == 0) result.Add("no shield", -8);
  if (PawnsOnFile(colour, king.file) == 0) result.Add("no pawn on the king's file", -4);
  if (WordAt(o, king) != 0 && free == 0) result.Add("check without a free square", -10);
  if (Count(o, Pawn) > 0 && HasType(WordAt(o, king + Step{Forward(colour), 0}), Pawn)) {
    result.Add("pawn attacks the front square", -4);
  }
  const int lines = PlainAttackedLines(colour);
  if (lines > 0) result.mildness = 1;
  if (lines > 0 && free == 0) result.Add("lines and no free square", -4);
  if (lines > 0 && free == 1) result.Add("lines and one free square", -2);
  result.Add("danger", -DangerOf(lines));
  if (g.castled[colour] == 0 && Count(o, Queen) > 0) {
    const bool left = RookAtHome(colour, 0, 1u << (2 * colour));
    const bool right = RookAtHome(colour, 7, 2u << (2 * colour));
    if (!left) result.Add("long castling lost", -2);
    if (!right) result.Add("short castling lost", -4);
    if (!left && !right) result.Add("no castling left", -12);
  }
  if (g.castled[colour] != 0) result.reward = king.file < 5 ? 6 : 8;
  return result;
}

int PlainKingSafety(int colour) {
  if (PlainWeight(colour) < 5) return 0;
  const PlainKing king = PlainKingTerms(colour);
  const double s = PlainPhase(colour);
  double k = king.sum;
  if (king.reward > 0) k = std::trunc(king.reward * s + k);
  return static_cast<int>(std::trunc(king.mildness + k * s));
}

}  // namespace tarvyle::support
