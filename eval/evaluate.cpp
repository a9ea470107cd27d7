#include "eval/evaluate.h"

#include <cstdlib>

#include "eval/attackmap.h"
#include "eval/kingsafety.h"
#include "eval/mobility.h"
#include "eval/pawns.h"
#include "eval/phase.h"
#include "eval/scoretable.h"
#include "eval/sidescore.h"
#include "eval/tables.h"
#include "position/record.h"

namespace tarvyle {

int maxHungValue[2];

namespace {

constexpr int kLazyMargin = 499;

// By the number of empty squares seen.
constexpr int kRookMobility[20] = {0, 1, 2, 3, 4,  5,  5,  6,  7,  8,
                                   8, 9, 9, 9, 10, 10, 10, 10, 10, 10};
constexpr int kBishopMobility[19] = {0,  1,  2,  4,  5,  6,  7,  8,  9, 10,
                                     10, 11, 11, 12, 12, 12, 12, 12, 12};
constexpr int kQueenMobility[40] = {0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 3, 4, 4, 4, 4, 4,
                                    5, 5, 5, 5, 5, 5, 5, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6, 6};

constexpr int kRookFileBonus[8] = {0, 0, 1, 1, 1, 1, 0, 0};  // by file

// No pawn, queen or rook, and at most a minor piece or two knights on either side.
bool NobodyCanWin() {
  for (int colour = White; colour <= Black; ++colour) {
    const auto& count = g.piece_cnt[colour];
    if (count[Pawn] + count[Queen] + count[Rook] > 0) return false;
    if (3 * count[Knight] + 4 * count[Bishop] >= 7) return false;
  }
  return true;
}

// An attack word with the bishop's bit folded onto the knight's.
constexpr std::uint32_t Folded(std::uint32_t word) {
  return (word & ~kBishopBit) | (word & kBishopBit) << 1;
}

constexpr bool Has(std::uint32_t word, std::uint32_t types) { return (word & types) != 0; }

// What being attacked costs the piece on `square`.
void AddThreatTerms(SideScore& score, int piece, Square square) {
  const std::uint32_t enemy = Folded(p_attack[score.opponent][square]);
  if (enemy == 0) return;
  const std::uint32_t own = Folded(p_attack[score.colour][square]);
  score.total -= AttackCount(enemy);
  const std::uint32_t own_bit = comp_piece_cntrl[piece];
  const bool cheaper_attacker = (enemy & kTypeBits) >= own_bit << 1;
  if (own != 0 && !cheaper_attacker) {
    if (piece == Pawn && !Has(own, kPawnBit) && AttackCount(own) < AttackCount(enemy)) {
      score.total -= 1;
    }
    if (get_less(enemy) > get_less(own)) score.total -= 1;
    return;
  }
  maxHungValue[score.colour] = max(maxHungValue[score.colour], value[piece]);
  score.total -= ++score.hanging == 2 ? 10 : 4;
  if (piece == Pawn) score.total -= 1;
}

RayScan Scan(const SideScore& score, int piece, Square square) {
  RayScan scan;
  Mobile_Pin_XRay(square, piece, score.colour, scan, p_attack[score.opponent],
                  p_attack[score.colour]);
  return scan;
}

int KnightTerm(const SideScore& score, Square square) {
  const std::uint32_t own = p_attack[score.colour][square];
  int term = 50 + (g.piece_cnt[White][Pawn] + g.piece_cnt[Black][Pawn]) / 2;
  term -= Distance(square, g.king_sq[score.opponent]);
  if (Has(own, kKnightBit)) term += 1;
  if (!Has(own, kPawnBit)) term -= 1;
  return term;
}

int BishopTerm(const SideScore& score, Square square) {
  const RayScan scan = Scan(score, Bishop, square);
  const int pair = g.piece_cnt[score.colour][Bishop] >= 2 ? 8 : 0;
  return 51 + scan.bonus + kBishopMobility[scan.empty] + pair + main_diag[square];
}

int RookFileTerm(const SideScore& score, int file) {
  if (g.pawn_file_cnt[score.colour][file] > 0) return 0;
  return g.pawn_file_cnt[score.opponent][file] > 0 ? 4 : 10;
}

// A rook on its seventh row is worth a bonus when it finds pawns there or a king behind them.
int RookRowTerm(const SideScore& score, int row) {
  const int own_rank = rank[score.colour * 8 + row];
  if (own_rank == 0) return 1;
  if (own_rank != 6) return 0;
  const int king_row = RowOf(g.king_sq[score.opponent]);
  const bool target =
      g.pawn_row_cnt[score.opponent][row] > 0 || rank[score.colour * 8 + king_row] == 7;
  return target ? 8 : 0;
}

void AddRookTerms(SideScore& score, Square square) {
  const RayScan scan = Scan(score, Rook, square);
  const int file = FileOf(square);
  const int term = 37 + kRookFileBonus[file] +
                   std::abs(file - FileOf(g.king_sq[score.opponent])) / 2 + scan.bonus +
                   kRookMobility[scan.empty];
  // The total of everything before this rook goes through the truncation too, on purpose.
  score.total = static_cast<int>(10 * (1 - score.phase) + (score.total + term));
  if (Has(p_attack[score.colour][square], kRookBit)) score.total += 1;
  if (g.piece_cnt[score.colour][Rook] >= 2) score.total += 1;
  score.total += RookFileTerm(score, file) + RookRowTerm(score, RowOf(square));
}

int QueenTerm(const SideScore& score, Square square) {
  const RayScan scan = Scan(score, Queen, square);
  const std::uint32_t own = p_attack[score.colour][square];
  const auto& count = g.piece_cnt[score.colour];
  const Square enemy_king = g.king_sq[score.opponent];
  int term = 107 + scan.bonus + kQueenMobility[scan.empty];
  if (Has(own, kRookBit)) term += 1;
  if (Has(own, kBishopBit)) term += 1;
  if (Distance(square, g.king_sq[score.colour]) >= 3) term -= 1;
  if (Distance(square, enemy_king) < 4) term += 5;
  term += (14 - Taxi(square, enemy_king)) / 2;
  const int helpers = count[Knight] + count[Bishop] + count[Rook];
  if (helpers > 0) term += helpers == 1 ? 2 : 6;
  return term;
}

void AddPieceTerms(SideScore& score, int piece, Square square) {
  switch (piece) {
    case Pawn: AddPawnTerms(score, square); break;
    case Knight: score.total += KnightTerm(score, square); break;
    case Bishop: score.total += BishopTerm(score, square); break;
    case Rook: AddRookTerms(score, square); break;
    case Queen: score.total += QueenTerm(score, square); break;
    default: score.total += KingSFTY(score.colour); break;
  }
}

// Positional score of one side. The pieces come in slot order, which matters: each rook truncates
// what has been summed before it.
int SideTotal(int colour) {
  SideScore score{colour, 1 - colour, Stage(colour), 0, 0, 0, 0};
  for (int slot = g.list_first[colour]; slot <= g.list_last[colour]; ++slot) {
    const Square square = g.list_sq[slot];
    if (square == -1) continue;
    const int piece = g.board[square];
    score.total += score_table[colour][piece][square];
    AddThreatTerms(score, piece, square);
    AddPieceTerms(score, piece, square);
  }
  AddSideTerms(score);
  return score.total;
}

}  // namespace

int Evaluate(int alpha, int beta) {
  maxHungValue[White] = 0;
  maxHungValue[Black] = 0;
  if (NobodyCanWin()) return 0;
  const int material = g.material[g.side] - g.material[g.xside];
  if (material + kLazyMargin < alpha || material - kLazyMargin > beta) return material;
  GenerateAttackes();
  const int white = SideTotal(White);
  const int black = SideTotal(Black);
  const int positional = g.side == White ? white - black : black - white;
  return material + positional;
}

}  // namespace tarvyle
