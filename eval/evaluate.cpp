#include "eval/evaluate.h"

#include <algorithm>
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
#include "eval/weights.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/sets.h"
#include "position/types.h"

namespace tarvyle {

int maxHungValue[2];

namespace {

// No pawn, queen or rook, and at most a minor piece or two knights on either side. With 3 for a
// knight and 4 for a bishop, a side has more than that from 7 on.
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

// On the way to a side's total, threats and pawn losses may only take off, and pawn gains only add:
// AddRook counts on it.
constexpr int kLeastOnTheWay = std::min(
    {weight::kAttackLoss, weight::kHangingLoss, weight::kSeveralHangLoss, weight::kHangingPawnLoss,
     weight::kOutbidLoss, weight::kOutnumberedLoss, weight::kUnsupportedLoss, weight::kBlockedLoss,
     weight::kDoubledLoss, weight::kIsolatedLoss, weight::kThirdLoss, weight::kFreeFile,
     weight::kPassed, weight::kPassedByPawn, weight::kPassedByRook, weight::kOutrunsKing});
static_assert(kLeastOnTheWay >= 0, "no weight of threats and pawns goes the other way");

// Walks one side's piece list. The slots come in order, because each rook truncates the sum of all
// before it; what belongs to no slot in particular is summed over sets of pieces.
class SideSum {
 public:
  explicit SideSum(const Side& side)
      : side_(side),
        threats_(FindThreats(side)),
        pawn_terms_(PawnTerms(side, side.own[Pawn])),
        threat_terms_(ThreatTerms(side, threats_, ~SquareSet{0})),
        steady_(AddedByTruncation(side.phase, kSteadyTotal)) {}

  int DearestHanging() const { return DearestPiece(side_, threats_.hanging); }

  // To be called once, before Total.
  void AddPieces() {
    constexpr std::uint32_t kOneColour = (1u << kSlotsPerColour) - 1;
    const int first = FirstSlot(side_.colour);
    const std::uint32_t own_slots = board_sets.slots >> first & kOneColour;
    std::uint32_t slots = own_slots & ~(board_sets.pawn_slots >> first);
    for (; slots != 0; slots &= slots - 1) AddPiece(first + std::countr_zero(slots));
  }

  int Total() const { return pieces_ + threat_terms_ + PawnTotal() + SideTerms(side_); }

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
    pieces_ += score_table[side_.colour][piece][square];
    switch (piece) {
      case Knight: pieces_ += KnightTerm(side_, square); break;
      case Bishop: pieces_ += BishopTerm(side_, square); break;
      case Rook: AddRook(slot, square); break;
      case Queen: pieces_ += QueenTerm(side_, square); break;
      default: pieces_ += KingTerm(side_); break;
    }
  }

  void AddRook(int slot, Square square) {
    pieces_ += RookTerm(side_, square);
    // At most the total up to here: all threats and pawn losses cost no less than those so far.
    const int least = pieces_ + threat_terms_ + pawn_terms_.losses;
    pieces_ += least >= kSteadyTotal ? steady_ : AddedByTruncationAt(slot);
    pieces_ += RookPlaceTerm(side_, square);
  }

  // What the truncation adds at the rook in `slot`, by the exact total up to there.
  int AddedByTruncationAt(int slot) const {
    SquareSet before = 0;
    for (int i = g.list_first[side_.colour]; i <= slot; ++i) {
      if (g.list_sq[i] != -1) before |= SetOf(g.list_sq[i]);
    }
    const SquareSet pawns = side_.own[Pawn] & before;
    const PawnSum terms = PawnTerms(side_, pawns);
    return AddedByTruncation(side_.phase, pieces_ + ThreatTerms(side_, threats_, before) +
                                              terms.losses + terms.gains + PawnTables(pawns));
  }

  const Side& side_;
  const Threats threats_;
  const PawnSum pawn_terms_;
  const int threat_terms_;
  const int steady_;
  int pieces_ = 0;  // pieces other than pawns so far, without threats
};

int SideTotal(const Side& side, std::uint8_t& hanging) {
  SideSum sum(side);
  hanging = static_cast<std::uint8_t>(sum.DearestHanging());
  sum.AddPieces();
  return sum.Total();
}

CachedScore EvaluateAfresh(std::uint64_t key) {
  const BoardAttacks attacks = AttacksOnBoard();
  CachedScore score;
  score.key = key;
  score.positional = SideTotal(SideOf(White, attacks), score.hanging[White]);
  score.positional -= SideTotal(SideOf(Black, attacks), score.hanging[Black]);
  return score;
}

}  // namespace

bool WinnableAfterAnyMove() {
  SquareSet fighters = 0;
  for (const auto& own : board_sets.of) fighters |= own[Pawn] | own[Rook] | own[Queen];
  // A pawn that captures one of them and becomes a knight removes two.
  return CountOf(fighters) > 2;
}

int Evaluate(int alpha, int beta) {
  maxHungValue[White] = 0;
  maxHungValue[Black] = 0;
  if (NobodyCanWin()) return 0;
  const int material = g.material[g.side] - g.material[g.xside];
  if (MaterialFallsShort(material, alpha) || MaterialFallsShort(-material, -beta)) return material;
  const std::uint64_t key = EvaluationKey();
  CachedScore& score = CacheSlot(key);
  if (score.key != key) score = EvaluateAfresh(key);
  maxHungValue[White] = value[score.hanging[White]];
  maxHungValue[Black] = value[score.hanging[Black]];
  return material + (g.side == White ? score.positional : -score.positional);
}

}  // namespace tarvyle
