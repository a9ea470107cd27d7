#include "eval/pawns.h"

#include "eval/attacksets.h"
#include "eval/distance.h"
#include "eval/tables.h"
#include "eval/weights.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/types.h"

namespace tarvyle {

namespace {

constexpr int kPawnsAtStart = 8;

// What pawns of one kind lose, of which the third loses more.
int LossOf(int count, int each) { return each * count + (count >= 3 ? weight::kThirdLoss : 0); }

// Files that hold a pawn of a set, and those that hold more than one, as bits of a byte.
struct FileBits {
  unsigned any;
  unsigned many;
};

FileBits FilesOf(SquareSet pawns) {
  SquareSet any = pawns | pawns >> 32;
  SquareSet many = pawns & pawns >> 32;
  many |= many >> 16 | (any & any >> 16);
  any |= any >> 16;
  many |= many >> 8 | (any & any >> 8);
  any |= any >> 8;
  return {static_cast<unsigned>(any & 0xFF), static_cast<unsigned>(many & 0xFF)};
}

constexpr SquareSet FilesSet(unsigned bits) { return kFileA * bits; }

// Every square that lies behind a square of a set, as a side's pawns see it.
SquareSet Behind(int colour, SquareSet set) {
  if (colour == White) {
    set = set << 8 | set << 16;
    set |= set << 16;
    return set | set << 32;
  }
  set = set >> 8 | set >> 16;
  set |= set >> 16;
  return set | set >> 32;
}

// A pawn is passed when neither an enemy pawn nor a square that one attacks lies on its way; own
// pawns ahead do not matter. With its front square off the board it counts as passed.
SquareSet PassedPawns(const Side& side, SquareSet pawns) {
  const SquareSet stops = side.theirs[Pawn] | side.their_attacks.by[Pawn];
  return pawns & ~Behind(side.colour, stops);
}

// Pure pawn ending in which the enemy king cannot reach the promotion square in time. Whose move
// it is, and the double step, are deliberately left out.
bool OutrunsKing(const Side& side, Square square) {
  if (side.phase != 0.0) return false;
  if ((side.theirs[Knight] | side.theirs[Bishop] | side.theirs[Rook]) != 0) return false;
  const Square goal = prom_row[side.colour] * 8 + FileOf(square);
  return Distance(square, goal) < Distance(g.king_sq[side.opponent], goal);
}

int PassedBonus(const Side& side, Square square) {
  const int colour = side.colour;
  const int row = RowOf(square);
  const SquareSet here = SetOf(square);
  const int row_bonus = PASSED_PAWN_ROW[colour * 8 + row];
  int bonus = weight::kPassed + row_bonus;
  if (((here | Ahead(colour, here)) & side.attacks.by[Pawn]) != 0) bonus += weight::kPassedByPawn;
  if ((here & side.attacks.by[Rook]) != 0 &&
      (Ahead(1 - colour, here) & side.attacks.by[Rook]) != 0 && opponent_board[row] == colour) {
    bonus += weight::kPassedByRook;
  }
  if (OutrunsKing(side, square)) bonus += weight::kOutrunsKing * row_bonus;
  return bonus;
}

// Minor and major pieces, kings left out.
int PieceCount(int colour) {
  const auto& count = g.piece_cnt[colour];
  return count[Knight] + count[Bishop] + count[Rook] + count[Queen];
}

}  // namespace

PawnSum PawnTerms(const Side& side, SquareSet pawns) {
  const FileBits own = FilesOf(side.own[Pawn]);
  const FileBits theirs = FilesOf(side.theirs[Pawn]);
  const SquareSet fronts = Ahead(side.colour, pawns);
  const int doubled = CountOf(pawns & FilesSet(own.many));
  const unsigned lonely = own.any & ~(own.any << 1 | own.any >> 1);
  const int isolated = CountOf(pawns & FilesSet(lonely));
  const int unsupported = CountOf(pawns) - CountOf(fronts & side.attacks.by[Pawn]);
  const int blocked = CountOf(fronts & board_sets.colour[side.opponent]);
  PawnSum sum;
  sum.losses = -(weight::kUnsupportedLoss * unsupported + weight::kBlockedLoss * blocked +
                 LossOf(doubled, weight::kDoubledLoss) + LossOf(isolated, weight::kIsolatedLoss));
  sum.gains = weight::kFreeFile * CountOf(pawns & ~FilesSet(theirs.any));
  for (SquareSet passed = PassedPawns(side, pawns); passed != 0;) {
    sum.gains += PassedBonus(side, TakeFirst(passed));
  }
  return sum;
}

int SideTerms(const Side& side) {
  const int pawns = g.piece_cnt[side.colour][Pawn];
  const auto& files = g.pawn_file_cnt[side.colour];
  int term = weight::kMissingPawnLoss * (pawns - kPawnsAtStart);  // a set-up may place more
  if (pawns == 0) term -= weight::kNoPawnLoss;
  term -= weight::kCentreLoss[(files[3] == 0 ? 1 : 0) + (files[4] == 0 ? 1 : 0)];
  const bool any_pawn = pawns > 0 || g.piece_cnt[side.opponent][Pawn] > 0;
  if (any_pawn && PieceCount(side.colour) > PieceCount(side.opponent)) {
    term += weight::kMorePieces;
  }
  return term;
}

}  // namespace tarvyle
