#include "tests/support/plain_evaluation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <optional>
#include <span>
#include <utility>

#include "eval/scoretable.h"
#include "position/record.h"
#include "tests/support/plain_attacks.h"
#include "tests/support/plain_board.h"
#include "tests/support/plain_kingsafety.h"
#include "tests/support/plain_phase.h"

namespace tarvyle::support {

using namespace plain;

namespace {

// Cheapness of a piece for exchanges: pawn, any minor piece, rook, queen, king, nothing.
int CheapnessOf(int code) { return std::array{0, 5, 4, 4, 3, 2, 1}[code]; }

int CheapestIn(std::uint32_t word) {
  for (int code = Pawn; code <= King; ++code) {
    if (HasType(word, code)) return CheapnessOf(code);
  }
  return 0;
}

int ClassOf(int code) { return std::array{0, 1, 3, 3, 5, 10, 20}[code]; }

int LookupRook(int empty) {
  return std::array{0, 1, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 9, 9, 10}[empty];
}

int LookupBishop(int empty) {
  return std::array{0, 1, 2, 4, 5, 6, 7, 8, 9, 10, 10, 11, 11, 12}[empty];
}

int LookupQueen(int empty) {
  if (empty >= 27) return 6;
  if (empty >= 20) return 5;
  if (empty >= 15) return 4;
  if (empty >= 10) return 3;
  if (empty >= 6) return 2;
  return empty >= 2 ? 1 : 0;
}

// 2 on the long diagonals, 1 beside them.
int LookupDiagonal(Cell cell) {
  const int from_first = std::abs(cell.row - cell.file);
  const int from_second = std::abs(cell.row + cell.file - 7);
  if (from_first == 0 || from_second == 0) return 2;
  return from_first == 1 || from_second == 1 ? 1 : 0;
}

class SideWalk {
 public:
  explicit SideWalk(int colour) : c_(colour), o_(1 - colour), s_(PlainPhase(colour)) {}

  PlainSide Score() {
    for (int slot = 16 * c_; slot < 16 * c_ + 16; ++slot) {
      if (slot >= g.list_first[c_] && slot <= g.list_last[c_] && g.list_sq[slot] >= 0) {
        AddPiece(CellOf(g.list_sq[slot]));
      }
    }
    AddWhole();
    return side_;
  }

 private:
  void Add(const std::string& term, int amount) { side_.Add(term, amount); }

  void AddPiece(Cell q) {
    const int code = CodeAt(q);
    side_.total += score_table[c_][code][SquareOf(q)];
    AddThreats(q, code);
    switch (code) {
      case Pawn: AddPawn(q); break;
      case Knight: AddKnight(q); break;
      case Bishop: AddBishop(q); break;
      case Rook: AddRook(q); break;
      case Queen: AddQueen(q); break;
      default: Add("king safety", PlainKingSafety(c_)); break;
    }
  }

  void AddThreats(Cell q, int code) {
    const std::uint32_t enemies = WordAt(o_, q);
    const std::uint32_t friends = WordAt(c_, q);
    if (enemies == 0) return;
    Add("attacked", -Attackers(enemies));
    if (friends != 0 && CheapestIn(enemies) <= CheapnessOf(code)) {
      if (code == Pawn && !HasType(friends, Pawn) && Attackers(friends) < Attackers(enemies)) {
        Add("weak pawn", -1);
      }
      if (CheapestIn(enemies) > CheapestIn(friends)) Add("cheaper attacker", -1);
      return;
    }
    side_.dearest_hanging = std::max(side_.dearest_hanging, value[code]);
    const bool second = ++hanging_ == 2;
    Add("hanging", second ? -10 : -4);
    if (code == Pawn) Add("hanging pawn", -1);
  }

  void AddKnight(Cell q) {
    const std::uint32_t friends = WordAt(c_, q);
    Add("knight", 50 + (Count(White, Pawn) + Count(Black, Pawn)) / 2);
    if (HasType(friends, Knight)) Add("knight by knight", 1);
    if (!HasType(friends, Pawn)) Add("knight without pawn", -1);
    Add("knight to king", -KingMoves(q, KingOf(o_)));
  }

  void AddBishop(Cell q) {
    const PlainRays rays = PlainRayScan(SquareOf(q), Bishop, c_);
    Add("bishop", 51 + LookupBishop(rays.empty) + LookupDiagonal(q));
    if (Count(c_, Bishop) > 1) Add("bishop pair", 8);
    Add("pins and x-rays", rays.bonus);
  }

  void AddRook(Cell q) {
    const PlainRays rays = PlainRayScan(SquareOf(q), Rook, c_);
    const int in_centre = q.file >= 2 && q.file <= 5 ? 1 : 0;
    Add("rook", 37 + in_centre + LookupRook(rays.empty));
    Add("rook to king", std::abs(q.file - KingOf(o_).file) / 2);
    Add("pins and x-rays", rays.bonus);
    const double openness = 10.0 * (1.0 - s_);
    const double sum = openness + static_cast<double>(side_.total);
    Add("rook truncation", static_cast<int>(std::trunc(sum)) - side_.total);
    if (HasType(WordAt(c_, q), Rook)) Add("rook by rook", 1);
    if (Count(c_, Rook) > 1) Add("rook pair", 1);
    if (PawnsOnFile(c_, q.file) == 0) Add("rook file", PawnsOnFile(o_, q.file) == 0 ? 10 : 4);
    if (RankOf(c_, q.row) == 0) Add("rook row", 1);
    if (RankOf(c_, q.row) == 6 && (PawnsOnRow(o_, q.row) || RankOf(c_, KingOf(o_).row) == 7)) {
      Add("rook row", 8);
    }
  }

  void AddQueen(Cell q) {
    const PlainRays rays = PlainRayScan(SquareOf(q), Queen, c_);
    const Cell target = KingOf(o_);
    const int walk = std::abs(q.row - target.row) + std::abs(q.file - target.file);
    const std::uint32_t friends = WordAt(c_, q);
    Add("queen", 107 + LookupQueen(rays.empty));
    if (HasType(friends, Rook)) Add("queen by rook", 1);
    if (HasType(friends, Bishop)) Add("queen by bishop", 1);
    if (KingMoves(q, KingOf(c_)) >= 3) Add("queen far from king", -1);
    Add("queen to king", (KingMoves(q, target) < 4 ? 5 : 0) + (14 - walk) / 2);
    const int helpers = Count(c_, Knight) + Count(c_, Bishop) + Count(c_, Rook);
    Add("queen helpers", helpers >= 2 ? 6 : 2 * helpers);
    Add("pins and x-rays", rays.bonus);
  }

  bool IsPassed(Cell q) const {
    for (Cell cell = q + Step{Forward(c_), 0}; Inside(cell); cell.row += Forward(c_)) {
      for (const int aside : {-1, 0, 1}) {
        // An enemy pawn beside the next row attacks this square.
        const Cell pawn = cell + Step{aside == 0 ? 0 : Forward(c_), aside};
        if (PieceAt(pawn, Pawn, o_)) return false;
      }
    }
    return true;
  }

  void AddPawn(Cell q) {
    const Cell front = q + Step{Forward(c_), 0};
    const Cell back = q + Step{-Forward(c_), 0};
    if (PawnsOnFile(o_, q.file) == 0) Add("no enemy pawn on file", 1);
    if (!HasType(WordAt(c_, front), Pawn)) Add("front unsupported", -1);
    if (Inside(front) && ColourAt(front) == o_) Add("front blocked", -2);
    if (PawnsOnFile(c_, q.file) > 1) Add("doubled", ++doubled_ == 3 ? -8 : -2);
    const bool left = q.file > 0 && PawnsOnFile(c_, q.file - 1) > 0;
    const bool right = q.file < 7 && PawnsOnFile(c_, q.file + 1) > 0;
    if (!left && !right) Add("isolated", ++isolated_ == 3 ? -14 : -8);
    if (!IsPassed(q)) return;
    const int gone = RankOf(c_, q.row);
    const int row_bonus = gone == 0 || gone == 7 ? 0 : 1 << gone;
    Add("passed", 12 + row_bonus);
    if (HasType(WordAt(c_, q), Pawn) || HasType(WordAt(c_, front), Pawn)) {
      Add("passed and supported", 4);
    }
    const bool far = RankOf(c_, q.row) >= 4;
    if (far && HasType(WordAt(c_, q), Rook) && HasType(WordAt(c_, back), Rook)) {
      Add("passed with rook", 4);
    }
    const Cell goal = {c_ == White ? 0 : 7, q.file};
    const bool pawn_ending = Count(o_, Knight) + Count(o_, Bishop) + Count(o_, Rook) == 0;
    if (s_ == 0.0 && pawn_ending && KingMoves(q, goal) < KingMoves(KingOf(o_), goal)) {
      Add("unstoppable", 8 * row_bonus);
    }
  }

  static int Pieces(int colour) {
    return Count(colour, Knight) + Count(colour, Bishop) + Count(colour, Rook) +
           Count(colour, Queen);
  }

  void AddWhole() {
    const int pawns = Count(c_, Pawn);
    Add("pawn count", pawns - 8 - (pawns == 0 ? 16 : 0));
    const bool no_d = PawnsOnFile(c_, 3) == 0;
    const bool no_e = PawnsOnFile(c_, 4) == 0;
    if (no_d || no_e) Add("no centre pawn", no_d && no_e ? -3 : -1);
    if (pawns + Count(o_, Pawn) > 0 && Pieces(c_) > Pieces(o_)) Add("majority", 2);
  }

  int c_;
  int o_;
  double s_;
  PlainSide side_;
  int hanging_ = 0;
  int doubled_ = 0;
  int isolated_ = 0;
};

int Material(int colour) {
  int sum = 0;
  for (int code = Pawn; code <= King; ++code) sum += Count(colour, code) * value[code];
  return sum;
}

bool CanWin(int colour) {
  return Count(colour, Pawn) + Count(colour, Queen) + Count(colour, Rook) > 0 ||
         3 * Count(colour, Knight) + 4 * Count(colour, Bishop) > 6;
}

}  // namespace

void PlainSide::Add(const std::string& term, int amount) {
  total += amount;
  if (amount != 0) terms[term].push_back(amount);
}

std::vector<int> PlainSide::Of(const std::string& term) const {
  const auto found = terms.find(term);
  return found != terms.end() ? found->second : std::vector<int>{};
}

PlainRays PlainRayScan(Square square, int piece, int colour) {
  PlainRays rays;
  for (const Step step : StepsOf(piece)) {
    const Cell from = CellOf(square);
    for (Cell cell = from + step; Inside(cell) && CodeAt(cell) == NoPiece; cell = cell + step) {
      ++rays.empty;
    }
    const auto front = FirstAlong(from, step);
    if (!front || CodeAt(front->cell) == King || CodeAt(front->cell) == Pawn) continue;
    const auto back = FirstAlong(front->cell, step);
    if (!back || ColourAt(back->cell) == colour) continue;
    const int code = CodeAt(back->cell);
    if (ClassOf(code) <= ClassOf(piece) && WordAt(1 - colour, back->cell) != 0) continue;
    if (ColourAt(front->cell) == colour) {
      rays.bonus += 5 + (code == King ? 3 : 0);
    } else {
      rays.bonus += 6;
      if (code == King) rays.bonus += Attackers(WordAt(colour, front->cell)) >= 2 ? 2 : 1;
    }
  }
  return rays;
}

PlainSide PlainSideScore(int colour) { return SideWalk(colour).Score(); }

int PlainEvaluate(int alpha, int beta) {
  if (!CanWin(White) && !CanWin(Black)) return 0;
  const int side = g.side;
  const int material = Material(side) - Material(1 - side);
  if (material + 499 < alpha || material - 499 > beta) return material;
  return material + PlainSideScore(side).total - PlainSideScore(1 - side).total;
}

}  // namespace tarvyle::support
