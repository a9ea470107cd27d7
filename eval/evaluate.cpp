#include "eval/evaluate.h"

#include <bit>
#include <cstdint>

#include "eval/attacksets.h"
#include "eval/cache.h"
#include "eval/distance.h"
#include "eval/kingsafety.h"
#include "eval/mobility.h"
#include "eval/pawns.h"
#include "eval/scoretable.h"
#include "eval/side.h"
#include "eval/tables.h"
#include "eval/threats.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

namespace tarvyle {

int maxHungValue[2];

namespace {

// By the number of empty squares seen, up to the most that there can be.
constexpr int kRookMobility[15] = {0, 1, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 9, 9, 10};
constexpr int kBishopMobility[14] = {0, 1, 2, 4, 5, 6, 7, 8, 9, 10, 10, 11, 11, 12};
constexpr int kQueenMobility[28] = {0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3,
                                    3, 4, 4, 4, 4, 4, 5, 5, 5, 5, 5, 5, 5, 6};

constexpr int kRookFileBonus[8] = {0, 0, 1, 1, 1, 1, 0, 0};  // by file

// No pawn, queen or rook, and at most a minor piece or two knights on either side.
bool NobodyCanWin() {
  const auto& sets = board_sets.of;
  if ((sets[White][Pawn] | sets[White][Rook] | sets[White][Queen] | sets[Black][Pawn] |
       sets[Black][Rook] | sets[Black][Queen]) != 0) {
    return false;
  }
  for (int colour = White; colour <= Black; ++colour) {
    const auto& count = g.piece_cnt[colour];
    if (3 * count[Knight] + 4 * count[Bishop] >= 7) return false;
  }
  return true;
}

int EmptySeen(Square square) { return CountOf(slider_reach[square] & ~Occupied()); }

int KnightTerm(const Side& side, Square square) {
  int term = 50 + (g.piece_cnt[White][Pawn] + g.piece_cnt[Black][Pawn]) / 2;
  term -= Distance(square, g.king_sq[side.opponent]);
  if (Contains(side.attacks.by[Knight], square)) term += 1;
  if (!Contains(side.attacks.by[Pawn], square)) term -= 1;
  return term;
}

int BishopTerm(const Side& side, Square square) {
  const int pair = g.piece_cnt[side.colour][Bishop] >= 2 ? 8 : 0;
  return 51 + LineBonus(side, Bishop, square) + kBishopMobility[EmptySeen(square)] + pair +
         main_diag[square];
}

int RookFileTerm(const Side& side, int file) {
  if ((side.own[Pawn] & FileSet(file)) != 0) return 0;
  return (side.theirs[Pawn] & FileSet(file)) != 0 ? 4 : 10;
}

// A rook on its seventh row is worth a bonus when it finds pawns there or a king behind them.
int RookRowTerm(const Side& side, int row) {
  const int own_rank = rank[side.colour * 8 + row];
  if (own_rank == 0) return 1;
  if (own_rank != 6) return 0;
  const int king_row = RowOf(g.king_sq[side.opponent]);
  const bool target =
      (side.theirs[Pawn] & RowSet(row)) != 0 || rank[side.colour * 8 + king_row] == 7;
  return target ? 8 : 0;
}

// What goes into a rook's truncation.
int RookTerm(const Side& side, Square square) {
  const int file = FileOf(square);
  return 37 + kRookFileBonus[file] + FileDistance(square, g.king_sq[side.opponent]) / 2 +
         LineBonus(side, Rook, square) + kRookMobility[EmptySeen(square)];
}

// What is added after it.
int RookPlaceTerm(const Side& side, Square square) {
  const int helped = Contains(side.attacks.by[Rook], square) ? 1 : 0;
  const int pair = g.piece_cnt[side.colour][Rook] >= 2 ? 1 : 0;
  return helped + pair + RookFileTerm(side, FileOf(square)) + RookRowTerm(side, RowOf(square));
}

int QueenTerm(const Side& side, Square square) {
  const auto& count = g.piece_cnt[side.colour];
  const Square enemy_king = g.king_sq[side.opponent];
  int term = 107 + LineBonus(side, Queen, square) + kQueenMobility[EmptySeen(square)];
  if (Contains(side.attacks.by[Rook], square)) term += 1;
  if (Contains(side.attacks.by[Bishop], square)) term += 1;
  if (Distance(square, g.king_sq[side.colour]) >= 3) term -= 1;
  if (Distance(square, enemy_king) < 4) term += 5;
  term += (14 - Taxi(square, enemy_king)) / 2;
  const int helpers = count[Knight] + count[Bishop] + count[Rook];
  if (helpers > 0) term += helpers == 1 ? 2 : 6;
  return term;
}

// The rook's conversion: the total of everything before it, and its own terms, go through a
// truncation, on purpose. Returns what that adds to `total`.
int Truncated(double phase, int total) {
  return static_cast<int>(10 * (1 - phase) + total) - total;
}

// From this total on the truncation adds the same whatever the total. Below, it depends: a negative
// sum is truncated the other way, and in two phases 10 * (1 - phase) falls short of a whole number
// by so little that adding 3 rounds the gap away, where adding 2 may keep it.
constexpr int kSteadyTotal = 3;

// Walks one side's piece list. The slots come in order, because each rook truncates the sum of all
// before it; what belongs to no slot in particular is summed over sets of pieces.
class SideSum {
 public:
  explicit SideSum(const Side& side)
      : side_(side),
        threats_(FindThreats(side)),
        pawn_terms_(PawnTerms(side, side.own[Pawn])),
        threat_terms_(ThreatTerms(side, threats_, ~SquareSet{0})),
        steady_(Truncated(side.phase, kSteadyTotal)) {}

  int DearestHanging() const { return DearestPiece(side_, threats_.hanging); }

  int Total() {
    const std::uint32_t own_slots = board_sets.slots >> (16 * side_.colour) & 0xFFFF;
    std::uint32_t slots = own_slots & ~(board_sets.pawn_slots >> (16 * side_.colour));
    for (; slots != 0; slots &= slots - 1) {
      AddPiece(std::countr_zero(slots) + 16 * side_.colour);
    }
    return officers_ + threat_terms_ + PawnTotal() + SideTerms(side_);
  }

 private:
  int PawnTotal() const {
    return pawn_terms_.losses + pawn_terms_.gains + PawnTables(side_.own[Pawn]);
  }

  int PawnTables(SquareSet pawns) const {
    const int* table = score_table[side_.colour][Pawn];
    int sum = 0;
    while (pawns != 0) sum += table[TakeFirst(pawns)];
    return sum;
  }

  void AddPiece(int slot) {
    const Square square = g.list_sq[slot];
    const int piece = g.board[square];
    officers_ += score_table[side_.colour][piece][square];
    switch (piece) {
      case Knight: officers_ += KnightTerm(side_, square); break;
      case Bishop: officers_ += BishopTerm(side_, square); break;
      case Rook: AddRook(slot, square); break;
      case Queen: officers_ += QueenTerm(side_, square); break;
      default: officers_ += KingSFTY(side_.colour); break;
    }
  }

  void AddRook(int slot, Square square) {
    officers_ += RookTerm(side_, square);
    // At most the total up to here: all threats and pawn losses cost no less than those so far.
    const int least = officers_ + threat_terms_ + pawn_terms_.losses;
    officers_ += least >= kSteadyTotal ? steady_ : TruncatedAt(slot);
    officers_ += RookPlaceTerm(side_, square);
  }

  // What the truncation adds at the rook in `slot`, by the exact total up to there.
  int TruncatedAt(int slot) const {
    SquareSet before = 0;
    for (int i = g.list_first[side_.colour]; i <= slot; ++i) {
      if (g.list_sq[i] != -1) before |= SetOf(g.list_sq[i]);
    }
    const SquareSet pawns = side_.own[Pawn] & before;
    const PawnSum terms = PawnTerms(side_, pawns);
    return Truncated(side_.phase, officers_ + ThreatTerms(side_, threats_, before) + terms.losses +
                                      terms.gains + PawnTables(pawns));
  }

  const Side& side_;
  const Threats threats_;
  const PawnSum pawn_terms_;
  const int threat_terms_;
  const int steady_;
  int officers_ = 0;  // pieces other than pawns so far, without threats
};

int SideTotal(int colour, std::uint8_t& hanging) {
  const Side side = SideOf(colour);
  SideSum sum(side);
  hanging = static_cast<std::uint8_t>(sum.DearestHanging());
  return sum.Total();
}

CachedScore EvaluateAfresh(std::uint64_t key) {
  BuildAttackSets();
  CachedScore score;
  score.key = key;
  score.positional = SideTotal(White, score.hanging[White]);
  score.positional -= SideTotal(Black, score.hanging[Black]);
  return score;
}

}  // namespace

int Evaluate(int alpha, int beta) {
  maxHungValue[White] = 0;
  maxHungValue[Black] = 0;
  if (NobodyCanWin()) return 0;
  const int material = g.material[g.side] - g.material[g.xside];
  if (material + kLazyMargin < alpha || material - kLazyMargin > beta) return material;
  const std::uint64_t key = EvaluationKey();
  CachedScore& score = CacheSlot(key);
  if (score.key != key) score = EvaluateAfresh(key);
  maxHungValue[White] = value[score.hanging[White]];
  maxHungValue[Black] = value[score.hanging[Black]];
  return material + (g.side == White ? score.positional : -score.positional);
}

}  // namespace tarvyle
