#include "eval/attackmap.h"

#include <bit>
#include <cstring>

#include "position/attack.h"
#include "position/directions.h"
#include "position/record.h"

namespace tarvyle {

std::uint32_t p_attack[2][kSquares];

namespace {

void Mark(std::uint32_t* words, int wide, std::uint32_t bit) {
  std::uint32_t& word = words[FromWide(wide)];
  word = (word + 1) | bit;
}

void MarkPawn(std::uint32_t* words, int colour, Square from) {
  const int ahead = ToWide(from) + 2 * dP[colour];  // in this form a row is 16 wide
  if (!OffBoard(ahead - 1)) Mark(words, ahead - 1, piece_cntrl[Pawn]);
  if (!OffBoard(ahead + 1)) Mark(words, ahead + 1, piece_cntrl[Pawn]);
}

void MarkStepper(std::uint32_t* words, int piece, Square from) {
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    const int wide = ToWide(from) + dir_white[d];
    if (!OffBoard(wide)) Mark(words, wide, piece_cntrl[piece]);
  }
}

// Marks from `wide` on along `step`, up to and including the first piece. Returns the square of
// that piece, or -1 at the edge.
Square MarkRay(std::uint32_t* words, int wide, int step, std::uint32_t bit) {
  for (wide += step; !OffBoard(wide); wide += step) {
    Mark(words, wide, bit);
    if (g.color[FromWide(wide)] != NoColour) return FromWide(wide);
  }
  return -1;
}

// Whether the piece on `blocker` is an own slider that can itself move along the line from `from`.
bool LetsThrough(int colour, Square from, Square blocker) {
  const int piece = g.board[blocker];
  return g.color[blocker] == colour && IsSlider(piece) &&
         (atk[AttackIndex(from, blocker)] >> piece & 1) != 0;
}

void MarkSlider(std::uint32_t* words, int piece, int colour, Square from) {
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    const int step = dir_white[d];
    const Square blocker = MarkRay(words, ToWide(from), step, piece_cntrl[piece]);
    if (blocker >= 0 && LetsThrough(colour, from, blocker)) {
      MarkRay(words, ToWide(blocker), step, 0);
    }
  }
}

}  // namespace

void GenerateAttackes() {
  std::memset(p_attack, 0, sizeof p_attack);
  for (int colour = White; colour <= Black; ++colour) {
    std::uint32_t* words = p_attack[colour];
    for (int slot = g.list_first[colour]; slot <= g.list_last[colour]; ++slot) {
      const Square from = g.list_sq[slot];
      if (from == -1) continue;
      const int piece = g.board[from];
      if (piece == Pawn) {
        MarkPawn(words, colour, from);
      } else if (IsSlider(piece)) {
        MarkSlider(words, piece, colour, from);
      } else {
        MarkStepper(words, piece, from);
      }
    }
  }
}

std::uint32_t get_less(std::uint32_t word) {
  constexpr std::uint32_t kTypeBits = 0xFC00;
  return std::bit_floor(word & kTypeBits);
}

}  // namespace tarvyle
