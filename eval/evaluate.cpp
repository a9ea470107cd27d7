#include "eval/evaluate.h"

#include <bit>
#include <cstdint>

#include "eval/attacksets.h"
#include "eval/cache.h"
#include "eval/kingsafety.h"
#include "eval/pawns.h"
#include "eval/pieceterms.h"
#include "eval/scoretable.h"
#include "eval/side.h"
#include "eval/threats.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

namespace tarvyle {

int maxHungValue[2];

namespace {

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
