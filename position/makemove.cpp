#include "position/makemove.h"

#include <cstdint>

#include "position/invariant.h"
#include "position/pieces.h"
#include "position/piecesets.h"
#include "position/record.h"
#include "position/soundness.h"

namespace tarvyle {

namespace {

#ifdef TARVYLE_CHECK_RECORD
constexpr bool kCheckRecord = true;
#else
constexpr bool kCheckRecord = false;
#endif

// The right that belongs to a rook of `colour` on its home corner, or 0 on any other square.
constexpr std::uint32_t CornerRight(int colour, Square square) {
  if (square == kLongRookHome[colour]) return LongRight(colour);
  if (square == kShortRookHome[colour]) return ShortRight(colour);
  return 0;
}

// Where the rook of a castling move stands before and after it.
struct RookWay {
  Square from;
  Square to;
};

constexpr RookWay RookWayOf(Move move) {
  const Square king = OriginOf(move);
  return (move & kShortCastling) != 0 ? RookWay{king + 3, king + 1} : RookWay{king - 4, king - 1};
}

// The half-move and castling counters of a loaded game are taken as they stand, so that stepping
// them has to wrap where it would overflow.
constexpr std::int32_t Stepped(std::int32_t counter, std::int32_t step) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(counter) +
                                   static_cast<std::uint32_t>(step));
}

// A move word whose codes could index outside a table is only met when a game is tried out.
constexpr bool WordIsUsable(Move move) {
  const int piece = PieceOf(move);
  const bool promotes = (move & kPromotion) != 0;
  return piece >= Pawn && piece <= (promotes ? Queen : King);
}

template <OnBroken kHow>
bool TakeVictim(Move move, UndoRecord& undo) {
  const Square square = TargetOf(move) - ((move & kEnPassant) != 0 ? dP[g.side] : 0);
  if constexpr (kHow == OnBroken::kRefuse) {
    if (!OnBoard(square) || g.board[square] == NoPiece) return false;
  }
  undo.cap_sq = square;
  undo.cap_piece = g.board[square];
  undo.cap_idx = g.list_idx[square];
  if (!LiftPiece<kHow>(undo.cap_piece, g.xside, square, undo.cap_idx)) return false;
  if (undo.cap_piece == Rook) g.castle &= ~CornerRight(g.xside, square);
  return true;
}

// Takes the mover to its target; a pawn that promotes is exchanged for the new piece on the way.
template <OnBroken kHow>
bool CarryOver(Move move, Square from, Square to, int leaves, int arrives) {
  if ((move & kPromotion) == 0) return MovePiece<kHow>(leaves, g.side, from, to);
  const int slot = g.list_idx[from];
  return LiftPiece<kHow>(leaves, g.side, from, slot) && PlacePiece<kHow>(arrives, g.side, to, slot);
}

template <OnBroken kHow>
bool MakeOnBoard(Move move, UndoRecord& undo) {
  if constexpr (kHow == OnBroken::kRefuse) {
    if (!WordIsUsable(move)) return false;
  }
  const int side = g.side;
  const Square from = OriginOf(move);
  const int mover = MoverOf(move);
  undo.castle_before = g.castle;
  if ((move & kCapture) != 0 && !TakeVictim<kHow>(move, undo)) return false;
  if (!CarryOver<kHow>(move, from, TargetOf(move), mover, PieceOf(move))) return false;
  if ((move & kCastling) != 0) {
    g.castled[side] = Stepped(g.castled[side], 1);
    const RookWay rook = RookWayOf(move);
    if (!MovePiece<kHow>(Rook, side, rook.from, rook.to)) return false;
  }
  if (mover == King) {
    g.castle &= ~(LongRight(side) | ShortRight(side));
  } else if (mover == Rook) {
    g.castle &= ~CornerRight(side, from);
  }
  return true;
}

void PassTurn() {
  g.side = g.xside;
  g.xside = 1 - g.side;
}

template <OnBroken kHow>
bool Make(Move move) {
  const int index = g.game_len + ply;
  UndoRecord& undo = g.undo[index];
  if (move != 0 && !MakeOnBoard<kHow>(move, undo)) return false;
  g.game_moves[index] = move;
  PassTurn();
  g.game_keys[index] = g.key;
  ++ply;
  ++repetition_set[g.key.low & kRepetitionMask];
  undo.fifty_before = g.fifty;
  // A null move starts the count anew as well: no repetition is looked for across it.
  g.fifty = IsReversible(move) ? Stepped(g.fifty, 1) : 0;
  return true;
}

template <OnBroken kHow>
bool UnMakeOnBoard(Move move, UndoRecord& undo) {
  if constexpr (kHow == OnBroken::kRefuse) {
    if (!WordIsUsable(move)) return false;
  }
  const int side = g.side;
  g.castle = undo.castle_before;
  if ((move & kCastling) != 0) {
    g.castled[side] = Stepped(g.castled[side], -1);
    const RookWay rook = RookWayOf(move);
    if (!MovePiece<kHow>(Rook, side, rook.to, rook.from)) return false;
  }
  if (!CarryOver<kHow>(move, TargetOf(move), OriginOf(move), PieceOf(move), MoverOf(move))) {
    return false;
  }
  if ((move & kCapture) != 0 &&
      !PlacePiece<kHow>(undo.cap_piece, g.xside, undo.cap_sq, undo.cap_idx)) {
    return false;
  }
  undo.cap_sq = 0;
  undo.cap_piece = 0;
  undo.cap_idx = 0;
  undo.castle_before = 0;
  return true;
}

template <OnBroken kHow>
bool UnMake(Move move) {
  const int index = g.game_len + ply - 1;
  UndoRecord& undo = g.undo[index];
  --repetition_set[g.key.low & kRepetitionMask];
  g.game_keys[index] = 0;
  g.game_moves[index] = 0;
  g.fifty = undo.fifty_before;
  PassTurn();
  --ply;
  return move == 0 || UnMakeOnBoard<kHow>(move, undo);
}

}  // namespace

// Both are one piece of code each, without calls: they are most of what a node costs.
[[gnu::flatten]] void MakeMove(Move move) {
  Make<OnBroken::kAbort>(move);
  if constexpr (kCheckRecord) (assert)(RecordIsSound(g) && SetsAreSound());
}

[[gnu::flatten]] void UnMakeMove(Move move) {
  UnMake<OnBroken::kAbort>(move);
  if constexpr (kCheckRecord) (assert)(RecordIsSound(g) && SetsAreSound());
}

bool TryMakeMove(Move move) { return Make<OnBroken::kRefuse>(move); }

bool TryUnMakeMove(Move move) { return UnMake<OnBroken::kRefuse>(move); }

}  // namespace tarvyle
