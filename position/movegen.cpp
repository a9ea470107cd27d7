#include "position/movegen.h"

#include <bit>
#include <cstdint>
#include <initializer_list>

#include "position/castling.h"
#include "position/directions.h"
#include "position/enpassant.h"
#include "position/movestack.h"
#include "position/piecesets.h"
#include "position/reach.h"
#include "position/record.h"
#include "position/sets.h"

namespace tarvyle {

namespace {

Move* EmitPawnMove(Move* cursor, Move move, bool promotes) {
  *cursor++ = move;
  return promotes ? MakePromote(cursor) : cursor;
}

// Each emitter writes from `cursor` on and returns the new cursor, or null when it could capture
// the enemy king.

Move* EmitEnPassant(Move* cursor) {
  const Square target = EnPassantSquare();
  if (target == 0) return cursor;
  const Square pawn = target - dP[g.side];
  const auto emit = [&](Square origin) {
    *cursor++ = MoveWord(Pawn, origin, target) | kEnPassantCapture;
  };
  if (FileOf(pawn) < 7 && StandsOn(Pawn, g.side, pawn + 1)) emit(pawn + 1);
  if (FileOf(pawn) > 0 && StandsOn(Pawn, g.side, pawn - 1)) emit(pawn - 1);
  return cursor;
}

Move* EmitPawnAdvances(Move* cursor, Square from, Square ahead, bool promotes) {
  if (!IsEmpty(ahead)) return cursor;
  cursor = EmitPawnMove(cursor, MoveWord(Pawn, from, ahead), promotes);
  if (RowOf(from) != first_pawn_row[g.side]) return cursor;
  const Square two_ahead = ahead + dP[g.side];
  if (IsEmpty(two_ahead)) *cursor++ = MoveWord(Pawn, from, two_ahead);
  return cursor;
}

Move* EmitPawn(Move* cursor, Square from) {
  const Square ahead = from + dP[g.side];
  if (!OnBoard(ahead)) return cursor;  // a set-up may place a pawn on its own last row
  const bool promotes = RowOf(ahead) == prom_row[g.side];
  cursor = EmitPawnAdvances(cursor, from, ahead, promotes);
  for (const int sideways : {-1, 1}) {
    if (FileOf(from) == (sideways < 0 ? 0 : 7)) continue;
    const Square target = ahead + sideways;
    if (g.color[target] != g.xside) continue;
    if (target == g.king_sq[g.xside]) return nullptr;
    cursor = EmitPawnMove(cursor, MoveWord(Pawn, from, target) | kCapture, promotes);
  }
  return cursor;
}

Move* EmitPiece(Move* cursor, int piece, Square from) {
  const bool slides = IsSlider(piece);
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    const int step = dir[d];
    for (int wide = ToWide(from) + step; !OffBoard(wide); wide += step) {
      const Square target = FromWide(wide);
      if (IsEmpty(target)) {
        *cursor++ = MoveWord(piece, from, target);
        if (slides) continue;
        break;
      }
      if (g.color[target] == g.xside) {
        if (target == g.king_sq[g.xside]) return nullptr;
        *cursor++ = MoveWord(piece, from, target) | kCapture;
      }
      break;
    }
  }
  return cursor;
}

Move* EmitPieces(Move* cursor) {
  for (int slot = g.list_first[g.side]; slot <= g.list_last[g.side]; ++slot) {
    const Square from = g.list_sq[slot];
    if (from == -1) continue;
    const int piece = g.board[from];
    cursor = piece == Pawn ? EmitPawn(cursor, from) : EmitPiece(cursor, piece, from);
    if (cursor == nullptr) return nullptr;
  }
  return cursor;
}

// The full list above walks the lines: nearly every square on them is a move. Captures are few, so
// below they are looked up as sets and then put into the order in which the walk would meet them.

// Slots of the pawns in a set.
std::uint32_t SlotsOf(SquareSet pawns) {
  std::uint32_t slots = 0;
  while (pawns != 0) slots |= 1u << g.list_idx[TakeFirst(pawns)];
  return slots;
}

// Pawns of the side to move that can capture or promote.
SquareSet BusyPawns(SquareSet enemies) {
  const int side = g.side;
  const SquareSet pawns = board_sets.of[side][Pawn];
  const SquareSet before_last = RowSet(SeventhRow(side));
  return pawns & (PawnTargets(1 - side, enemies) | before_last);
}

// A set of targets in the order of the current direction table, by insertion.
int SortTargets(Square from, SquareSet targets, std::uint32_t* order) {
  const auto& index = direction_index[dir == dir_black ? 1 : 0][from];
  int count = 0;
  while (targets != 0) {
    const Square target = TakeFirst(targets);
    const std::uint32_t entry =
        static_cast<std::uint32_t>(index[target]) << 6 | static_cast<std::uint32_t>(target);
    int place = count++;
    for (; place > 0 && order[place - 1] > entry; --place) order[place] = order[place - 1];
    order[place] = entry;
  }
  return count;
}

Move* EmitTargets(Move* cursor, int piece, Square from, SquareSet targets) {
  const Move base = MoveWord(piece, from, 0) | kCapture;
  if (!HasSeveral(targets)) {
    *cursor++ = base | static_cast<Move>(FirstOf(targets));
    return cursor;
  }
  std::uint32_t order[8];  // no piece has more than eight lines or steps
  const int count = SortTargets(from, targets, order);
  for (int i = 0; i < count; ++i) *cursor++ = base | (order[i] & kTargetMask);
  return cursor;
}

Move* EmitBusyPawn(Move* cursor, Square from, SquareSet enemies) {
  const Square ahead = from + dP[g.side];
  const bool promotes = RowOf(ahead) == prom_row[g.side];
  if (promotes && IsEmpty(ahead)) {
    cursor = EmitPawnMove(cursor, MoveWord(Pawn, from, ahead), true);
  }
  // Lower file first, which is the lower square on either side's next row.
  for (SquareSet targets = pawn_set[g.side][from] & enemies; targets != 0;) {
    const Square target = TakeFirst(targets);
    cursor = EmitPawnMove(cursor, MoveWord(Pawn, from, target) | kCapture, promotes);
  }
  return cursor;
}

// What the pieces of a side other than pawns can capture, gathered type by type, sorted by slot.
struct PieceCaptures {
  PieceCaptures(SquareSet enemy_pieces, SquareSet all_pieces)
      : enemies(enemy_pieces), occupied(all_pieces) {}

  SquareSet enemies;
  SquareSet occupied;
  SquareSet reached = 0;           // by any of them
  std::uint32_t slots = 0;         // of those that capture something
  SquareSet targets[kPieceSlots];  // by slot; left unset for all others

  template <int kPiece>
  void Add(SquareSet pieces) {
    while (pieces != 0) {
      const Square from = TakeFirst(pieces);
      const SquareSet reach = ReachSet(kPiece, from, occupied);
      reached |= reach;
      if ((reach & enemies) == 0) continue;
      const int slot = g.list_idx[from];
      slots |= 1u << slot;
      targets[slot] = reach & enemies;
    }
  }
};

// Captures and promotions in slot order; null when the enemy king could be captured.
Move* EmitAllCaptures(Move* cursor) {
  const SquareSet* own = board_sets.of[g.side];
  PieceCaptures pieces(board_sets.colour[g.xside], Occupied());
  pieces.Add<Knight>(own[Knight]);
  pieces.Add<Bishop>(own[Bishop]);
  pieces.Add<Rook>(own[Rook]);
  pieces.Add<Queen>(own[Queen]);
  pieces.Add<King>(own[King]);
  const SquareSet reached = pieces.reached | PawnTargets(g.side, own[Pawn]);
  if (Contains(reached, g.king_sq[g.xside])) return nullptr;
  std::uint32_t slots = pieces.slots | SlotsOf(BusyPawns(pieces.enemies));
  for (; slots != 0; slots &= slots - 1) {
    const int slot = std::countr_zero(slots);
    const Square from = g.list_sq[slot];
    const int piece = g.board[from];
    cursor = piece == Pawn ? EmitBusyPawn(cursor, from, pieces.enemies)
                           : EmitTargets(cursor, piece, from, pieces.targets[slot]);
  }
  return cursor;
}

Move* EmitCastling(Move* cursor) {
  if (ShortCastlingReady(g.side)) *cursor++ = kShortCastlingMove[g.side];
  if (LongCastlingReady(g.side)) *cursor++ = kLongCastlingMove[g.side];
  return cursor;
}

bool CloseList(const Move* end) {
  treeCnt[ply + 1] = end != nullptr ? static_cast<int>(end - tree) : treeCnt[ply];
  return end != nullptr;
}

}  // namespace

Move* MakePromote(Move* cursor) {
  const Move plain = cursor[-1] & ~kPieceMask;
  cursor[-1] = plain | kPromotion | PieceBits(Queen);
  *cursor = plain | kPromotion | PieceBits(Knight);
  return cursor + 1;
}

bool Generate() {
  set_dir(g.side);
  Move* cursor = EmitEnPassant(&tree[treeCnt[ply]]);
  cursor = EmitPieces(cursor);
  if (cursor != nullptr) cursor = EmitCastling(cursor);
  return CloseList(cursor);
}

bool GenerateCaptures() { return CloseList(EmitAllCaptures(&tree[treeCnt[ply]])); }

}  // namespace tarvyle
