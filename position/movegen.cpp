#include "position/movegen.h"

#include <initializer_list>

#include "position/attack.h"
#include "position/castling.h"
#include "position/movestack.h"
#include "position/record.h"

namespace tarvyle {

namespace {

enum class Kind { kAll, kCaptures };

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
    *cursor++ = MoveWord(NoPiece, origin, target) | kEnPassantCapture;
  };
  if (FileOf(pawn) < 7 && Holds(pawn + 1, Pawn, g.side)) emit(pawn + 1);
  if (FileOf(pawn) > 0 && Holds(pawn - 1, Pawn, g.side)) emit(pawn - 1);
  return cursor;
}

template <Kind kKind>
Move* EmitPawnAdvances(Move* cursor, Square from, Square ahead, bool promotes) {
  if (!IsEmpty(ahead)) return cursor;
  if (kKind == Kind::kCaptures && !promotes) return cursor;
  cursor = EmitPawnMove(cursor, MoveWord(Pawn, from, ahead), promotes);
  if (RowOf(from) != first_pawn_row[g.side]) return cursor;
  const Square two_ahead = ahead + dP[g.side];
  if (IsEmpty(two_ahead)) *cursor++ = MoveWord(Pawn, from, two_ahead);
  return cursor;
}

template <Kind kKind>
Move* EmitPawn(Move* cursor, Square from) {
  const Square ahead = from + dP[g.side];
  if (!OnBoard(ahead)) return cursor;  // a set-up may place a pawn on its own last row
  const bool promotes = RowOf(ahead) == prom_row[g.side];
  cursor = EmitPawnAdvances<kKind>(cursor, from, ahead, promotes);
  for (const int sideways : {-1, 1}) {
    if (FileOf(from) == (sideways < 0 ? 0 : 7)) continue;
    const Square target = ahead + sideways;
    if (g.color[target] != g.xside) continue;
    if (target == g.king_sq[g.xside]) return nullptr;
    cursor = EmitPawnMove(cursor, MoveWord(Pawn, from, target) | kCapture, promotes);
  }
  return cursor;
}

template <Kind kKind>
Move* EmitPiece(Move* cursor, int piece, Square from) {
  const bool slides = IsSlider(piece);
  for (int d = d_start[piece]; d <= d_stop[piece]; ++d) {
    const int step = dir[d];
    for (int wide = ToWide(from) + step; !OffBoard(wide); wide += step) {
      const Square target = FromWide(wide);
      if (IsEmpty(target)) {
        if (kKind == Kind::kAll) *cursor++ = MoveWord(piece, from, target);
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

template <Kind kKind>
Move* EmitPieces(Move* cursor) {
  for (int slot = g.list_first[g.side]; slot <= g.list_last[g.side]; ++slot) {
    const Square from = g.list_sq[slot];
    if (from == -1) continue;
    const int piece = g.board[from];
    cursor = piece == Pawn ? EmitPawn<kKind>(cursor, from) : EmitPiece<kKind>(cursor, piece, from);
    if (cursor == nullptr) return nullptr;
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

Move LastMove() {
  const int made = g.game_len + ply;
  return made > 0 ? g.game_moves[made - 1] : 0;
}

Square EnPassantSquare() {
  if (g.game_len + ply == 0) return g.ep_sq;
  const Move last = LastMove();
  if (PieceOf(last) != Pawn) return 0;
  const int rows = RowOf(OriginOf(last)) - RowOf(TargetOf(last));
  return rows == 2 || rows == -2 ? TargetOf(last) + dP[g.side] : 0;
}

Move* MakePromote(Move* cursor) {
  const Move plain = cursor[-1] & ~kPieceMask;
  cursor[-1] = plain + (kPromotion | Queen << 12);
  *cursor = plain + (kPromotion | Knight << 12);
  return cursor + 1;
}

bool Generate() {
  set_dir(g.side);
  Move* cursor = EmitEnPassant(&tree[treeCnt[ply]]);
  cursor = EmitPieces<Kind::kAll>(cursor);
  if (cursor != nullptr) cursor = EmitCastling(cursor);
  return CloseList(cursor);
}

bool GenerateCaptures() { return CloseList(EmitPieces<Kind::kCaptures>(&tree[treeCnt[ply]])); }

}  // namespace tarvyle
