#include "tests/support/plain_evaluation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <numbers>
#include <optional>
#include <span>
#include <utility>

#include "eval/scoretable.h"
#include "position/directions.h"
#include "position/record.h"

namespace tarvyle::support {

namespace {

struct Cell {
  int row;
  int file;
};

using Step = Cell;

constexpr std::array<Step, 8> kSteps = {  // straight ones, then diagonal ones
    {{-1, 0}, {1, 0}, {0, -1}, {0, 1}, {-1, -1}, {-1, 1}, {1, -1}, {1, 1}}};
constexpr std::array<Step, 8> kJumps = {
    {{-2, -1}, {-2, 1}, {-1, -2}, {-1, 2}, {1, -2}, {1, 2}, {2, -1}, {2, 1}}};

Cell operator+(Cell a, Step b) { return {a.row + b.row, a.file + b.file}; }
bool Inside(Cell cell) { return cell.row >= 0 && cell.row < 8 && cell.file >= 0 && cell.file < 8; }
Cell CellOf(Square square) { return {square / 8, square % 8}; }
Square SquareOf(Cell cell) { return cell.row * 8 + cell.file; }
int CodeAt(Cell cell) { return g.board[SquareOf(cell)]; }
int ColourAt(Cell cell) { return g.color[SquareOf(cell)]; }
bool PieceAt(Cell cell, int code, int colour) {
  return Inside(cell) && CodeAt(cell) == code && ColourAt(cell) == colour;
}

int KingMoves(Cell a, Cell b) {
  return std::max(std::abs(a.row - b.row), std::abs(a.file - b.file));
}

Cell KingOf(int colour) {
  for (Square square = 0; square < 64; ++square) {
    if (PieceAt(CellOf(square), King, colour)) return CellOf(square);
  }
  return {-1, -1};
}

int Count(int colour, int code) {
  int count = 0;
  for (Square square = 0; square < 64; ++square) count += PieceAt(CellOf(square), code, colour);
  return count;
}

int PawnsOnFile(int colour, int file) {
  int count = 0;
  for (int row = 0; row < 8; ++row) count += PieceAt({row, file}, Pawn, colour);
  return count;
}

bool PawnsOnRow(int colour, int row) {
  for (int file = 0; file < 8; ++file) {
    if (PieceAt({row, file}, Pawn, colour)) return true;
  }
  return false;
}

struct Met {
  Cell cell;
  int distance;
};

// The first piece along a step, or none before the edge.
std::optional<Met> FirstAlong(Cell from, Step step) {
  int distance = 1;
  for (Cell cell = from + step; Inside(cell); cell = cell + step, ++distance) {
    if (CodeAt(cell) != NoPiece) return Met{cell, distance};
  }
  return std::nullopt;
}

bool SlidesAlong(int code, Step step) {
  const bool diagonal = step.row != 0 && step.file != 0;
  return code == Queen || code == (diagonal ? Bishop : Rook);
}

std::span<const Step> StepsOf(int code) {
  const std::span<const Step> steps = kSteps;
  if (code == Rook) return steps.first(4);
  return code == Bishop ? steps.last(4) : steps;
}

std::uint32_t TypeBit(int code) { return 0x10000u >> code; }

bool HasType(std::uint32_t word, int code) { return (word & TypeBit(code)) != 0; }

int Attackers(std::uint32_t word) { return static_cast<int>(word % 16); }

std::uint32_t WordAt(int colour, Cell cell) {
  return Inside(cell) ? PlainAttackWord(colour, SquareOf(cell)) : 0;
}

// Cheapness of a piece for exchanges: pawn, any minor piece, rook, queen, king, nothing.
int CheapnessOf(int code) { return std::array{0, 5, 4, 4, 3, 2, 1}[code]; }

int CheapestIn(std::uint32_t word) {
  for (int code = Pawn; code <= King; ++code) {
    if (HasType(word, code)) return CheapnessOf(code);
  }
  return 0;
}

int ClassOf(int code) { return std::array{0, 1, 3, 3, 5, 10, 20}[code]; }

int RankOf(int colour, int row) { return colour == White ? 7 - row : row; }

int Forward(int colour) { return colour == White ? -1 : 1; }

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
    Add("knight", 50 + (Count(White, Pawn) + Count(Black, Pawn)) / 2 - KingMoves(q, KingOf(o_)) +
                      (HasType(friends, Knight) ? 1 : 0) - (HasType(friends, Pawn) ? 0 : 1));
  }

  void AddBishop(Cell q) {
    const PlainRays rays = PlainRayScan(SquareOf(q), Bishop, c_);
    Add("bishop", 51 + rays.bonus + LookupBishop(rays.empty) + (Count(c_, Bishop) > 1 ? 8 : 0) +
                      LookupDiagonal(q));
  }

  void AddRook(Cell q) {
    const PlainRays rays = PlainRayScan(SquareOf(q), Rook, c_);
    const int in_centre = q.file >= 2 && q.file <= 5 ? 1 : 0;
    const int sum = side_.total + 37 + in_centre + std::abs(q.file - KingOf(o_).file) / 2 +
                    rays.bonus + LookupRook(rays.empty);
    const double openness = 10.0 * (1.0 - s_);
    Add("rook", static_cast<int>(std::trunc(openness + static_cast<double>(sum))) - side_.total);
    if (HasType(WordAt(c_, q), Rook)) Add("rook pair", 1);
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
    Add("queen", 107 + rays.bonus + LookupQueen(rays.empty) + (14 - walk) / 2);
    if (HasType(friends, Rook)) Add("queen support", 1);
    if (HasType(friends, Bishop)) Add("queen support", 1);
    if (KingMoves(q, KingOf(c_)) >= 3) Add("queen far from king", -1);
    if (KingMoves(q, target) < 4) Add("queen near king", 5);
    const int helpers = Count(c_, Knight) + Count(c_, Bishop) + Count(c_, Rook);
    Add("queen helpers", helpers >= 2 ? 6 : 2 * helpers);
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

  static int Officers(int colour) {
    return Count(colour, Knight) + Count(colour, Bishop) + Count(colour, Rook) +
           Count(colour, Queen);
  }

  void AddWhole() {
    const int pawns = Count(c_, Pawn);
    Add("pawn count", pawns - 8 - (pawns == 0 ? 16 : 0));
    const bool no_d = PawnsOnFile(c_, 3) == 0;
    const bool no_e = PawnsOnFile(c_, 4) == 0;
    if (no_d || no_e) Add("no centre pawn", no_d && no_e ? -3 : -1);
    if (pawns + Count(o_, Pawn) > 0 && Officers(c_) > Officers(o_)) Add("majority", 2);
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

bool RookAtHome(int colour, int file, std::uint32_t right) {
  const int home = colour == White ? 7 : 0;
  return PieceAt({home, 4}, King, colour) && PieceAt({home, file}, Rook, colour) &&
         (g.castle & right) != 0;
}

int DangerOf(int lines) {
  if (lines > 20) return 0;
  return static_cast<int>(std::lround(60 * std::sin(std::numbers::pi * lines / 20)));
}

}  // namespace

void PlainSide::Add(const std::string& term, int amount) {
  total += amount;
  terms[term].push_back(amount);
}

std::vector<int> PlainSide::Of(const std::string& term) const {
  const auto found = terms.find(term);
  return found != terms.end() ? found->second : std::vector<int>{};
}

std::uint32_t PlainAttackWord(int colour, Square square) {
  const Cell target = CellOf(square);
  std::uint32_t count = 0;
  std::uint32_t types = 0;
  const auto meet = [&](int code) {
    ++count;
    types |= TypeBit(code);
  };
  for (const Step step : StepsOf(Queen)) {
    const auto first = FirstAlong(target, step);
    if (!first || ColourAt(first->cell) != colour) continue;
    const int code = CodeAt(first->cell);
    if (SlidesAlong(code, step)) {
      meet(code);
      const auto second = FirstAlong(first->cell, step);
      if (second && ColourAt(second->cell) == colour && SlidesAlong(CodeAt(second->cell), step)) {
        ++count;
      }
    } else if (first->distance == 1 && code == King) {
      meet(King);
    } else if (first->distance == 1 && code == Pawn && step.file != 0 &&
               step.row == -Forward(colour)) {
      meet(Pawn);
    }
  }
  for (const Step jump : kJumps) {
    if (PieceAt(target + jump, Knight, colour)) meet(Knight);
  }
  return count | types;
}

int PlainWeight(int colour) {
  const int o = 1 - colour;
  return 14 * Count(o, Queen) + 6 * Count(o, Rook) + 3 * Count(o, Knight) + 4 * Count(o, Bishop);
}

double PlainPhase(int colour) {
  const int weight = PlainWeight(colour);
  return weight <= 4 ? 0.0 : std::min(weight, 40) / 40.0;
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

int PlainAttackedLines(int colour) {
  const int o = 1 - colour;
  const Cell king = KingOf(colour);
  int lines = 0;
  for (const Step step : StepsOf(Queen)) {
    const int slider = step.row != 0 && step.file != 0 ? Bishop : Rook;
    if (Count(o, slider) + Count(o, Queen) == 0) continue;
    const auto first = FirstAlong(king, step);
    for (Cell cell = king + step; Inside(cell); cell = cell + step) {
      if (ColourAt(cell) != o &&
          (HasType(WordAt(o, cell), slider) || HasType(WordAt(o, cell), Queen))) {
        ++lines;
      }
      if (first && SquareOf(first->cell) == SquareOf(cell)) break;
    }
  }
  for (const Step jump : kJumps) {
    const Cell cell = king + jump;
    if (Inside(cell) && ColourAt(cell) != o && HasType(WordAt(o, cell), Knight)) ++lines;
  }
  return lines;
}

int PlainKingSafety(int colour) {
  const int o = 1 - colour;
  if (PlainWeight(colour) < 5) return 0;
  const double s = PlainPhase(colour);
  const Cell king = KingOf(colour);
  int k = 0;
  int free = 0;
  int pawns_near = 0;
  int shields = 0;
  std::vector<Step> ring(kSteps.begin(), kSteps.end());
  ring.push_back(dir == dir_black ? Step{1, -2} : Step{-2, -1});
  for (const Step step : ring) {
    const Cell cell = king + step;
    if (!Inside(cell)) continue;
    k -= Attackers(WordAt(o, cell));
    if (WordAt(o, cell) == 0 && ColourAt(cell) != colour) ++free;
    if (!PieceAt(cell, Pawn, colour)) continue;
    ++pawns_near;
    if ((cell.row - king.row) * Forward(colour) <= 0) continue;
    ++shields;
    k += std::array{4, 6, 2, 0, 0, 2, 6, 4}[cell.file];
  }
  if (pawns_near == 0) k -= 4;
  if (shields == 0) k -= 8;
  if (PawnsOnFile(colour, king.file) == 0) k -= 4;
  if (WordAt(o, king) != 0 && free == 0) k -= 10;
  if (Count(o, Pawn) > 0 && HasType(WordAt(o, king + Step{Forward(colour), 0}), Pawn)) k -= 4;
  const int lines = PlainAttackedLines(colour);
  const double mildness = lines > 0 ? 1.0 : 0.0;
  if (lines > 0 && free == 0) k -= 4;
  if (lines > 0 && free == 1) k -= 2;
  k -= DangerOf(lines);
  const bool left = RookAtHome(colour, 0, 1u << (2 * colour));
  const bool right = RookAtHome(colour, 7, 2u << (2 * colour));
  if (Count(o, Queen) > 0 && g.castled[colour] == 0) {
    if (!left) k -= 2;
    if (!right) k -= 4;
    if (!left && !right) k -= 12;
  }
  if (g.castled[colour] != 0) {
    const double gain = king.file < 5 ? 6 * s : 8 * s;
    k = static_cast<int>(std::trunc(gain + static_cast<double>(k)));
  }
  const double scaled = static_cast<double>(k) * s;
  return static_cast<int>(std::trunc(mildness + scaled));
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
