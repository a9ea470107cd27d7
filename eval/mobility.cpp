#include "eval/mobility.h"

#include "eval/attackmap.h"
#include "eval/tables.h"
#include "position/attack.h"
#include "position/record.h"

namespace tarvyle {

namespace {

// Walks on from `wide` over empty squares. Returns the square of the piece that ends the walk, or
// -1 at the edge; `wide` is left there, `empty` counts the squares passed.
Square FirstPiece(int& wide, int step, int& empty) {
  for (wide += step; !OffBoard(wide); wide += step) {
    const Square square = FromWide(wide);
    if (g.color[square] != NoColour) return square;
    ++empty;
  }
  return -1;
}

// Bonus for `behind`, an enemy piece that stands behind `front` on a line of ours.
int PinBonus(Square front, Square behind, int colour, const std::uint32_t* own_attacks) {
  const bool king_behind = g.board[behind] == King;
  if (g.color[front] == colour) return king_behind ? 8 : 5;  // x-ray through an own piece
  if (!king_behind) return 6;
  return AttackCount(own_attacks[front]) >= 2 ? 8 : 7;
}

}  // namespace

void Mobile_Pin_XRay(Square square, int piece, int colour, RayScan& result,
                     const std::uint32_t* opponent_attacks, const std::uint32_t* own_attacks) {
  result = {0, 0};
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    int wide = ToWide(square);
    const Square front = FirstPiece(wide, dir[d], result.empty);
    if (front < 0 || g.board[front] == King || g.board[front] == Pawn) continue;
    int passed = 0;
    const Square behind = FirstPiece(wide, dir[d], passed);
    if (behind < 0 || g.color[behind] == colour) continue;
    // Worth a bonus when it is dearer than the scanning piece, or undefended.
    if (comp_value[g.board[behind]] > comp_value[piece] || opponent_attacks[behind] == 0) {
      result.bonus += PinBonus(front, behind, colour, own_attacks);
    }
  }
}

}  // namespace tarvyle
