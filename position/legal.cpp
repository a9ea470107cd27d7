#include "position/legal.h"

#include <utility>

#include "position/game.h"
#include "position/legalfilter.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/text.h"

namespace tarvyle {

namespace {

// Leaves the record as if each move had been made to see whether it is legal, and taken back.
bool FilterMoves() {
  if (!Generate()) return false;
  const LegalFilter filter;
  int end = treeCnt[ply];
  bool any_made = false;
  for (int i = end; i < treeCnt[ply + 1]; ++i) {
    const bool legal = filter.IsLegal(tree[i]);
    // Castling that is not legal would be refused before it is made.
    any_made |= legal || (tree[i] & kCastling) == 0;
    if (legal) std::swap(tree[i], tree[end++]);
  }
  treeCnt[ply + 1] = end;
  if (any_made) LeaveTrace();
  return true;
}

struct SquarePair {
  Square from = -1;
  Square to = -1;
};

SquarePair SquaresOf(std::string_view text) {
  if (text.size() > 3) {
    const SquarePair squares{StrToSq(text), StrToSq(text.substr(2))};
    if (squares.from >= 0 && squares.to >= 0) return squares;
  }
  const Square king = kKingHome[g.side];
  if (text == "o-o") return {king, king + 2};
  if (text == "o-o-o") return {king, king - 2};
  return {};
}

// Bishop and rook are accepted here although the generator never promotes to them.
int PromotionPiece(std::string_view text) {
  switch (text.size() > 4 ? text[4] : 'q') {
    case 'n':
    case 'N': return Knight;
    case 'b':
    case 'B': return Bishop;
    case 'r':
    case 'R': return Rook;
    default: return Queen;
  }
}

}  // namespace

bool LegalMoveList() {
  if (ply != 0) return FilterMoves();
  const RedoGuard guard;
  return FilterMoves();
}

int ListLength() { return treeCnt[ply + 1] - treeCnt[ply]; }

bool StrToMove(std::string_view text, Move& move) {
  const SquarePair squares = SquaresOf(text);
  if (squares.from < 0 || !LegalMoveList()) return false;
  for (int i = 0; i < treeCnt[1]; ++i) {
    const Move candidate = tree[i];
    if (OriginOf(candidate) != squares.from || TargetOf(candidate) != squares.to) continue;
    move = candidate;
    if ((candidate & kPromotion) != 0) {
      move = (candidate & ~kPieceMask) | PieceBits(PromotionPiece(text));
    }
    return true;
  }
  return false;
}

}  // namespace tarvyle
