#include "tests/support/plain_moves.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <span>

#include "position/makemove.h"
#include "position/record.h"
#include "tests/support/plain_attacks.h"
#include "tests/support/plain_board.h"

namespace tarvyle::support {

using namespace plain;

namespace {

constexpr Move kTakes = 1u << 30;
constexpr Move kTakesInPassing = 1u << 29;
constexpr Move kCastlesLong = 1u << 28;
constexpr Move kCastlesShort = 1u << 27;
constexpr Move kPromotes = 1u << 31;

// Steps of one side in the order in which it takes them: straight ones, diagonal ones, jumps. Up is
// towards the eighth rank, left towards the a-file.
struct Order {
  std::array<Step, 8> steps;
  std::array<Step, 8> jumps;
};

constexpr Step kUp = {-1, 0}, kDown = {1, 0}, kLeft = {0, -1}, kRight = {0, 1};
constexpr Step kUpLeft = {-1, -1}, kUpRight = {-1, 1}, kDownLeft = {1, -1}, kDownRight = {1, 1};

constexpr std::array<Order, 2> kOrders = {{
    {{{kUp, kLeft, kDown, kRight, kUpLeft, kUpRight, kDownRight, kDownLeft}},
     {{{-2, -1}, {2, 1}, {-2, 1}, {2, -1}, {-1, -2}, {1, 2}, {-1, 2}, {1, -2}}}},
    {{{kRight, kDown, kLeft, kUp, kDownLeft, kDownRight, kUpRight, kUpLeft}},
     {{{1, -2}, {-1, 2}, {1, 2}, {-1, -2}, {2, -1}, {-2, 1}, {2, 1}, {-2, -1}}}},
}};

std::span<const Step> OrderedSteps(const Order& order, int code) {
  const std::span<const Step> steps = order.steps;
  if (code == Knight) return order.jumps;
  if (code == Rook) return steps.first(4);
  return code == Bishop ? steps.last(4) : steps;
}

bool IsFree(Cell cell) { return Inside(cell) && CodeAt(cell) == NoPiece; }

class Lister {
 public:
  Lister(int table, bool captures_only)
      : order_(kOrders[static_cast<std::size_t>(table)]),
        captures_only_(captures_only),
        c_(g.side),
        o_(1 - g.side) {}

  std::optional<std::vector<Move>> List() {
    if (!captures_only_) AddEnPassant();
    for (int slot = 16 * c_; slot < 16 * c_ + 16; ++slot) {
      if (slot >= g.list_first[c_] && slot <= g.list_last[c_] && g.list_sq[slot] >= 0) {
        AddPiece(CellOf(g.list_sq[slot]));
      }
    }
    if (!captures_only_) AddCastling();
    if (takes_king_) return std::nullopt;
    return list_;
  }

 private:
  void Add(int code, Cell from, Cell to, Move flags) {
    const auto number = [](int n) { return static_cast<Move>(n); };
    list_.push_back(flags | number(code) << 12 | number(SquareOf(from)) << 6 |
                    number(SquareOf(to)));
  }

  // A pawn's move; on the last row a queen first, then a knight.
  void AddPawnMove(Cell from, Cell to, Move flags) {
    if (to.row == (c_ == White ? 0 : 7)) {
      Add(Queen, from, to, flags | kPromotes);
      Add(Knight, from, to, flags | kPromotes);
    } else {
      Add(Pawn, from, to, flags);
    }
  }

  // Whether an enemy piece stands on a square; notes that it is the king.
  bool IsPrey(Cell cell) {
    if (!Inside(cell) || ColourAt(cell) != o_) return false;
    takes_king_ |= CodeAt(cell) == King;
    return true;
  }

  // The square that an enemy pawn has just passed, by the last move or, before any, by the set-up.
  std::optional<Cell> PassedSquare() const {
    const int made = g.game_len + ply;
    if (made == 0) return g.ep_sq != 0 ? std::optional(CellOf(g.ep_sq)) : std::nullopt;
    const Move last = g.game_moves[made - 1];
    const Cell from = CellOf(static_cast<Square>(last >> 6 & 63));
    const Cell to = CellOf(static_cast<Square>(last & 63));
    if (last == 0 || (last >> 12 & 7) != Pawn || std::abs(from.row - to.row) != 2) {
      return std::nullopt;
    }
    return Cell{(from.row + to.row) / 2, to.file};
  }

  void AddEnPassant() {
    const auto passed = PassedSquare();
    if (!passed) return;
    for (const int aside : {1, -1}) {  // from the right first
      const Cell pawn = *passed + Step{-Forward(c_), aside};
      if (PieceAt(pawn, Pawn, c_)) Add(Pawn, pawn, *passed, kTakes | kTakesInPassing);
    }
  }

  void AddPiece(Cell from) {
    const int code = CodeAt(from);
    if (code == Pawn) return AddPawn(from);
    for (const Step step : OrderedSteps(order_, code)) {
      Cell cell = from + step;
      for (; IsFree(cell); cell = cell + step) {
        if (!captures_only_) Add(code, from, cell, 0);
        if (code == Knight || code == King) break;
      }
      if (IsPrey(cell)) Add(code, from, cell, kTakes);
    }
  }

  void AddPawn(Cell from) {
    const Cell ahead = from + Step{Forward(c_), 0};
    const bool at_home = from.row == (c_ == White ? 6 : 1);
    const bool promotes = ahead.row == (c_ == White ? 0 : 7);
    if (IsFree(ahead)) {
      if (promotes || !captures_only_) AddPawnMove(from, ahead, 0);
      const Cell two_ahead = ahead + Step{Forward(c_), 0};
      if (at_home && !captures_only_ && IsFree(two_ahead)) Add(Pawn, from, two_ahead, 0);
    }
    for (const int aside : {-1, 1}) {
      const Cell to = ahead + Step{0, aside};
      if (IsPrey(to)) AddPawnMove(from, to, kTakes);
    }
  }

  void AddCastling() {
    const int home = c_ == White ? 7 : 0;
    const std::uint32_t rights = g.castle >> (2 * c_) & 3;
    if (!PieceAt({home, 4}, King, c_)) return;
    const auto free = [&](std::initializer_list<int> files) {
      for (const int file : files) {
        if (!IsFree({home, file})) return false;
      }
      return true;
    };
    if ((rights & 2) != 0 && free({5, 6}) && PieceAt({home, 7}, Rook, c_)) {
      Add(King, {home, 4}, {home, 6}, kCastlesShort);
    }
    if ((rights & 1) != 0 && free({1, 2, 3}) && PieceAt({home, 0}, Rook, c_)) {
      Add(King, {home, 4}, {home, 2}, kCastlesLong);
    }
  }

  const Order& order_;
  const bool captures_only_;
  const int c_;
  const int o_;
  bool takes_king_ = false;
  std::vector<Move> list_;
};

}  // namespace

std::optional<std::vector<Move>> PlainMoves() { return Lister(g.side, false).List(); }

std::optional<std::vector<Move>> PlainCaptures(int table) { return Lister(table, true).List(); }

bool PlainlyAttacked(Square square, int colour) { return PlainAttackWord(colour, square) != 0; }

bool PlainlyLegal(Move move) {
  const int colour = g.side;
  if ((move & (kCastlesLong | kCastlesShort)) != 0) {
    const int step = (move & kCastlesShort) != 0 ? 1 : -1;
    const Square king = SquareOf(KingOf(colour));
    for (const int steps : {0, 1, 2}) {
      if (PlainlyAttacked(king + steps * step, 1 - colour)) return false;
    }
    return true;
  }
  MakeMove(move);
  const bool safe = !PlainlyAttacked(SquareOf(KingOf(colour)), 1 - colour);
  UnMakeMove(move);
  return safe;
}

}  // namespace tarvyle::support
