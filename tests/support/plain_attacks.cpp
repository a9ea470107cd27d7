#include "tests/support/plain_attacks.h"

#include <array>
#include <optional>
#include <span>

namespace tarvyle::support {

using namespace plain;

std::uint32_t PlainAttackWord(int colour, Square square) {
  const Cell target = CellOf(square);
  std::uint32_t count = 0;
  std::uint32_t types = 0;
  const auto meet = [&](int code) {
    ++count;
    types |= TypeBit(code);
  };
  for (const Step step : StepsOf(Queen)) {
    const auto first = FirstAlong(target, step);
    if (!first || ColourAt(first->cell) != colour) continue;
    const int code = CodeAt(first->cell);
    if (SlidesAlong(code, step)) {
      meet(code);
      const auto second = FirstAlong(first->cell, step);
      if (second && ColourAt(second->cell) == colour && SlidesAlong(CodeAt(second->cell), step)) {
        ++count;
      }
    } else if (first->distance == 1 && code == King) {
      meet(King);
    } else if (first->distance == 1 && code == Pawn && step.file != 0 &&
               step.row == -Forward(colour)) {
      meet(Pawn);
    }
  }
  for (const Step jump : kJumps) {
    if (PieceAt(target + jump, Knight, colour)) meet(Knight);
  }
  return count | types;
}

}  // namespace tarvyle::support
