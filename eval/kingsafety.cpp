#include "eval/kingsafety.h"

#include "eval/attacksets.h"
#include "eval/phase.h"
#include "position/castling.h"
#include "position/directions.h"
#include "position/piecesets.h"
#include "position/reach.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

namespace tarvyle {

namespace {

constexpr int kShieldBonus[8] = {4, 6, 2, 0, 0, 2, 6, 4};  // by the file of a shield pawn

// By the number of attacked king lines: 60 * sin(pi * lines / 20), peaking at 10; 0 for any more.
constexpr int kDangerLines = 21;
constexpr int kDanger[kDangerLines] = {0,  9,  19, 27, 35, 42, 49, 53, 57, 59, 60,
                                       59, 57, 53, 49, 42, 35, 27, 19, 9,  0};

// The eight neighbours and, on purpose, the target of the first knight jump of the direction table
// in use as well.
SquareSet RingOf(Square king) {
  SquareSet ring = king_set[king];
  const int ninth = ToWide(king) + dir[8];
  if (!OffBoard(ninth)) ring |= SetOf(FromWide(ninth));
  return ring;
}

// Rows in front of the king, as its side sees it. (Two shifts: one by 64 would have no meaning.)
constexpr SquareSet RowsInFront(int colour, Square king) {
  const int row = RowOf(king);
  return colour == White ? SetOf(8 * row) - 1 : ~SquareSet{0} << (8 * row) << 8;
}

int ShieldTerm(int colour, Square king, SquareSet ring) {
  const SquareSet near = ring & board_sets.of[colour][Pawn];
  int term = near != 0 ? 0 : -4;
  SquareSet shield = near & RowsInFront(colour, king);
  if (shield == 0) term -= 8;
  while (shield != 0) term += kShieldBonus[FileOf(TakeFirst(shield))];
  if ((board_sets.of[colour][Pawn] & FileSet(FileOf(king))) == 0) term -= 4;
  return term;
}

// Squares on lines and jumps to the king that the opponent attacks with a piece that could use
// that very line.
int AttackedLines(int colour, Square king, const AttackSets& attacks) {
  const SquareSet* enemy = board_sets.of[1 - colour];
  const SquareSet looked_at = ~board_sets.colour[1 - colour];
  const SquareSet occupied = Occupied();
  int attacked = 0;
  const SquareSet diagonal = (attacks.by[Bishop] | attacks.by[Queen]) & looked_at;
  if ((enemy[Bishop] | enemy[Queen]) != 0) {
    attacked += CountOf(BishopSet(king, occupied) & diagonal);
  }
  const SquareSet straight = (attacks.by[Rook] | attacks.by[Queen]) & looked_at;
  if ((enemy[Rook] | enemy[Queen]) != 0) attacked += CountOf(RookSet(king, occupied) & straight);
  return attacked + CountOf(knight_set[king] & attacks.by[Knight] & looked_at);
}

int LostCastling(int colour) {
  const bool left = LeftCastlEnable(colour);
  const bool right = RightCastlEnable(colour);
  return (left ? 0 : 2) + (right ? 0 : 4) + (left || right ? 0 : 12);
}

}  // namespace

bool LeftCastlEnable(int colour) { return LongRightStands(colour); }

bool RightCastlEnable(int colour) { return ShortRightStands(colour); }

int KingSFTY(int colour) {
  const double phase = Stage(colour);
  if (phase == 0.0) return 0;  // no danger from a lone minor piece
  const Square king = g.king_sq[colour];
  const AttackSets& attacks = attack_sets[1 - colour];

  const SquareSet ring = RingOf(king);
  const int free = CountOf(ring & ~attacks.all & ~board_sets.colour[colour]);
  int term = ShieldTerm(colour, king, ring) - AttackSum(attacks, ring);
  if (free == 0 && Contains(attacks.all, king)) term -= 10;
  if ((Ahead(colour, SetOf(king)) & attacks.by[Pawn]) != 0) term -= 4;

  const int lines = AttackedLines(colour, king, attacks);
  double mildness = 0.0;  // added before the truncation: an attacked king gets a point back
  if (lines > 0) {
    mildness = 1.0;
    if (free <= 1) term -= free == 0 ? 4 : 2;
    if (lines < kDangerLines) term -= kDanger[lines];
  }

  if (g.castled[colour] != 0) {
    const double gain = FileOf(king) < 5 ? 6.0 : 8.0;
    term = static_cast<int>(gain * phase + term);
  } else if (board_sets.of[1 - colour][Queen] != 0) {
    term -= LostCastling(colour);
  }
  return static_cast<int>(mildness + term * phase);
}

}  // namespace tarvyle
