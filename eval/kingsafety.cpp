#include "eval/kingsafety.h"

#include "eval/attacksets.h"
#include "eval/side.h"
#include "eval/weights.h"
#include "position/castling.h"
#include "position/directions.h"
#include "position/piecesets.h"
#include "position/reach.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

namespace tarvyle {

namespace {

// The eight neighbours and, on purpose, the target of the first knight jump of the direction table
// in use as well.
SquareSet RingOf(Square king) {
  SquareSet ring = king_set[king];
  const int ninth = ToWide(king) + dir[d_start[Knight]];
  if (!OffBoard(ninth)) ring |= SetOf(FromWide(ninth));
  return ring;
}

// Rows in front of the king, as its side sees it. (Two shifts: one by 64 would have no meaning.)
constexpr SquareSet RowsInFront(int colour, Square king) {
  const int row = RowOf(king);
  return colour == White ? SetOf(8 * row) - 1 : ~SquareSet{0} << (8 * row) << 8;
}

int ShieldTerm(const Side& side, Square king, SquareSet ring) {
  const SquareSet near = ring & side.own[Pawn];
  int term = near != 0 ? 0 : -weight::kNoPawnNearLoss;
  SquareSet shield = near & RowsInFront(side.colour, king);
  if (shield == 0) term -= weight::kNoShieldLoss;
  while (shield != 0) term += weight::kShield[FileOf(TakeFirst(shield))];
  if ((side.own[Pawn] & FileSet(FileOf(king))) == 0) term -= weight::kBareFileLoss;
  return term;
}

// Squares on lines and jumps to the king that the opponent attacks with a piece that could use
// that very line.
int AttackedLines(const Side& side, Square king) {
  const AttackSets& attacks = side.their_attacks;
  const SquareSet* enemy = side.theirs;
  const SquareSet looked_at = ~board_sets.colour[side.opponent];
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
  return (left ? 0 : weight::kNoLongCastlingLoss) + (right ? 0 : weight::kNoShortCastlingLoss) +
         (left || right ? 0 : weight::kNoCastlingLoss);
}

}  // namespace

bool LeftCastlEnable(int colour) { return LongRightStands(colour); }

bool RightCastlEnable(int colour) { return ShortRightStands(colour); }

int KingTerm(const Side& side) {
  if (side.phase == 0.0) return 0;  // no danger from a lone minor piece
  const int colour = side.colour;
  const Square king = g.king_sq[colour];
  const AttackSets& attacks = side.their_attacks;

  const SquareSet ring = RingOf(king);
  const int free = CountOf(ring & ~attacks.all & ~board_sets.colour[colour]);
  int term = ShieldTerm(side, king, ring) - weight::kRingAttackLoss * AttackSum(attacks, ring);
  if (free == 0 && Contains(attacks.all, king)) term -= weight::kShutInCheckLoss;
  if ((Ahead(colour, SetOf(king)) & attacks.by[Pawn]) != 0) term -= weight::kPawnBeforeLoss;

  const int lines = AttackedLines(side, king);
  double back = 0.0;
  if (lines > 0) {
    back = weight::kAttackedBack;
    if (free <= 1) term -= free == 0 ? weight::kShutInLoss : weight::kNearlyShutInLoss;
    if (lines < weight::kDangerLines) term -= weight::kDangerLoss[lines];
  }

  if (g.castled[colour] != 0) {
    const bool is_long = FileOf(king) < weight::kCastledLongFiles;
    const double gain = is_long ? weight::kCastledLong : weight::kCastledShort;
    term = static_cast<int>(gain * side.phase + term);
  } else if (side.theirs[Queen] != 0) {
    term -= LostCastling(colour);
  }
  return static_cast<int>(back + term * side.phase);
}

int KingSFTY(int colour) {
  const BoardAttacks attacks = AttacksOnBoard();
  return KingTerm(SideOf(colour, attacks));
}

}  // namespace tarvyle
