#include "eval/pawns.h"

#include "eval/attackmap.h"
#include "eval/tables.h"
#include "position/castling.h"
#include "position/record.h"

namespace tarvyle {

namespace {

// By the number of the d- and e-files that hold no pawn of the side.
constexpr int kCentrePenalty[3] = {0, -1, -3};

constexpr int kThird = 3;  // the third doubled or isolated pawn of a side costs 6 more

bool IsIsolated(int colour, int file) {
  const auto& files = g.pawn_file_cnt[colour];
  return (file == 0 || files[file - 1] == 0) && (file == 7 || files[file + 1] == 0);
}

// A pawn is passed when neither an enemy pawn nor a square that one attacks lies on its way; own
// pawns ahead do not matter. With its front square off the board it counts as passed.
bool IsPassed(int colour, Square front) {
  const int enemy = 1 - colour;
  for (Square square = front; OnBoard(square); square += dP[colour]) {
    if (AttackedBy(enemy, square, kPawnBit) || Holds(square, Pawn, enemy)) return false;
  }
  return true;
}

// Pure pawn ending in which the enemy king cannot reach the promotion square in time. Whose move
// it is, and the double step, are deliberately left out.
bool OutrunsKing(const SideScore& score, Square square) {
  const auto& enemy = g.piece_cnt[score.opponent];
  if (score.phase != 0.0 || enemy[Knight] + enemy[Bishop] + enemy[Rook] > 0) return false;
  const Square goal = prom_row[score.colour] * 8 + FileOf(square);
  return Distance(square, goal) < Distance(g.king_sq[score.opponent], goal);
}

int PassedBonus(const SideScore& score, Square square) {
  const int colour = score.colour;
  const int row = RowOf(square);
  const int row_bonus = PASSED_PAWN_ROW[colour * 8 + row];
  int bonus = 12 + row_bonus;
  if (AttackedBy(colour, square, kPawnBit) || AttackedBy(colour, square + dP[colour], kPawnBit)) {
    bonus += 4;
  }
  if (AttackedBy(colour, square, kRookBit) && AttackedBy(colour, square - dP[colour], kRookBit) &&
      opponent_board[row] == colour) {
    bonus += 4;
  }
  if (OutrunsKing(score, square)) bonus += 8 * row_bonus;
  return bonus;
}

int FrontTerm(const SideScore& score, Square front) {
  int term = AttackedBy(score.colour, front, kPawnBit) ? 0 : -1;
  if (OnBoard(front) && g.color[front] == score.opponent) term -= 2;
  return term;
}

int OfficerCount(int colour) {
  const auto& count = g.piece_cnt[colour];
  return count[Knight] + count[Bishop] + count[Rook] + count[Queen];
}

}  // namespace

void AddPawnTerms(SideScore& score, Square square) {
  const int file = FileOf(square);
  const Square front = square + dP[score.colour];
  if (g.pawn_file_cnt[score.opponent][file] == 0) score.total += 1;
  score.total += FrontTerm(score, front);
  if (g.pawn_file_cnt[score.colour][file] > 1) {
    score.total -= ++score.doubled == kThird ? 8 : 2;
  }
  if (IsIsolated(score.colour, file)) {
    score.total -= ++score.isolated == kThird ? 14 : 8;
  }
  if (IsPassed(score.colour, front)) score.total += PassedBonus(score, square);
}

void AddSideTerms(SideScore& score) {
  const int pawns = g.piece_cnt[score.colour][Pawn];
  const auto& files = g.pawn_file_cnt[score.colour];
  score.total += pawns - 8;
  if (pawns == 0) score.total -= 16;
  score.total += kCentrePenalty[(files[3] == 0 ? 1 : 0) + (files[4] == 0 ? 1 : 0)];
  const bool any_pawn = pawns > 0 || g.piece_cnt[score.opponent][Pawn] > 0;
  if (any_pawn && OfficerCount(score.colour) > OfficerCount(score.opponent)) score.total += 2;
}

}  // namespace tarvyle
