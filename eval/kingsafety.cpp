#include "eval/kingsafety.h"

#include "eval/attackmap.h"
#include "eval/phase.h"
#include "position/attack.h"
#include "position/castling.h"

namespace tarvyle {

namespace {

constexpr int kShieldBonus[8] = {4, 6, 2, 0, 0, 2, 6, 4};  // by the file of a shield pawn

// By the number of attacked king lines: 60 * sin(pi * a / 20), peaking at 10, 0 above 20.
constexpr int kDangerLines = 27;
constexpr int kDanger[kDangerLines] = {0,  9,  19, 27, 35, 42, 49, 53, 57, 59, 60, 59, 57, 53,
                                       49, 42, 35, 27, 19, 9,  0,  0,  0,  0,  0,  0,  0};

struct Ring {
  int term = 0;  // sum of the shield bonus and the attackers of the ring
  int free = 0;  // squares that the king could use
  bool pawn_near = false;
  bool shielded = false;
};

bool InFront(Square square, Square king, int colour) {
  return colour == White ? RowOf(square) < RowOf(king) : RowOf(square) > RowOf(king);
}

void LookAtRingSquare(Ring& ring, Square square, Square king, int colour) {
  const std::uint32_t attack = p_attack[1 - colour][square];
  ring.term -= AttackCount(attack);
  if (attack == 0 && g.color[square] != colour) ++ring.free;
  if (!Holds(square, Pawn, colour)) return;
  ring.pawn_near = true;
  if (InFront(square, king, colour)) {
    ring.shielded = true;
    ring.term += kShieldBonus[FileOf(square)];
  }
}

// The eight neighbours and, on purpose, the target of the first knight jump as well.
Ring LookAround(Square king, int colour) {
  Ring ring;
  for (int d = 0; d <= 8; ++d) {
    const int wide = ToWide(king) + dir[d];
    if (!OffBoard(wide)) LookAtRingSquare(ring, FromWide(wide), king, colour);
  }
  return ring;
}

int AttackedOnRays(Square king, int colour, int first, int last, std::uint32_t types) {
  int attacked = 0;
  for (int d = first; d <= last; ++d) {
    for (int wide = ToWide(king) + dir[d]; !OffBoard(wide); wide += dir[d]) {
      const Square square = FromWide(wide);
      if (g.color[square] == 1 - colour) break;
      if ((p_attack[1 - colour][square] & types) != 0) ++attacked;
      if (g.color[square] == colour) break;
    }
  }
  return attacked;
}

int AttackedJumps(Square king, int colour) {
  int attacked = 0;
  for (int d = d_start[Knight]; d <= d_stop[Knight]; ++d) {
    const int wide = ToWide(king) + dir[d];
    if (OffBoard(wide) || g.color[FromWide(wide)] == 1 - colour) continue;
    if ((p_attack[1 - colour][FromWide(wide)] & kKnightBit) != 0) ++attacked;
  }
  return attacked;
}

// Squares on lines and jumps to the king that the opponent attacks with a piece that could use
// that very line.
int AttackedLines(Square king, int colour) {
  const auto& enemy = g.piece_cnt[1 - colour];
  int attacked = 0;
  if (enemy[Bishop] + enemy[Queen] > 0) {
    attacked += AttackedOnRays(king, colour, 4, 7, kBishopBit | kQueenBit);
  }
  if (enemy[Rook] + enemy[Queen] > 0) {
    attacked += AttackedOnRays(king, colour, 0, 3, kRookBit | kQueenBit);
  }
  if (enemy[Knight] > 0) attacked += AttackedJumps(king, colour);
  return attacked;
}

int LostCastling(int colour) {
  const bool left = LeftCastlEnable(colour);
  const bool right = RightCastlEnable(colour);
  return (left ? 0 : 2) + (right ? 0 : 4) + (left || right ? 0 : 12);
}

int ShieldTerm(const Ring& ring, Square king, int colour) {
  const int enemy = 1 - colour;
  int term = ring.term;
  if (!ring.pawn_near) term -= 4;
  if (!ring.shielded) term -= 8;
  if (g.pawn_file_cnt[colour][FileOf(king)] == 0) term -= 4;
  if (p_attack[enemy][king] != 0 && ring.free == 0) term -= 10;
  if (g.piece_cnt[enemy][Pawn] > 0 && AttackedBy(enemy, king + dP[colour], kPawnBit)) term -= 4;
  return term;
}

}  // namespace

bool LeftCastlEnable(int colour) {
  return Holds(kKingHome[colour], King, colour) && Holds(kLongRookHome[colour], Rook, colour) &&
         (g.castle & LongRight(colour)) != 0;
}

bool RightCastlEnable(int colour) {
  return Holds(kKingHome[colour], King, colour) && Holds(kShortRookHome[colour], Rook, colour) &&
         (g.castle & ShortRight(colour)) != 0;
}

int KingSFTY(int colour) {
  const double phase = Stage(colour);
  if (phase == 0.0) return 0;  // no danger from a lone minor piece
  const Square king = g.king_sq[colour];

  const Ring ring = LookAround(king, colour);
  int term = ShieldTerm(ring, king, colour);

  const int lines = AttackedLines(king, colour);
  double mildness = 0.0;  // added before the truncation: an attacked king gets a point back
  if (lines > 0) {
    mildness = 1.0;
    if (ring.free <= 1) term -= ring.free == 0 ? 4 : 2;
    if (lines < kDangerLines) term -= kDanger[lines];
  }

  if (g.castled[colour] != 0) {
    const double gain = FileOf(king) < 5 ? 6.0 : 8.0;
    term = static_cast<int>(gain * phase + term);
  } else if (g.piece_cnt[1 - colour][Queen] > 0) {
    term -= LostCastling(colour);
  }
  return static_cast<int>(mildness + term * phase);
}

}  // namespace tarvyle
