#include "tools/san.h"

#include <cstddef>

#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/text.h"

namespace tarvyle::tools {

namespace {

char Letter(int piece) { return kPieceLetters[White][piece]; }

// What of the origin is needed to tell the move from those of other pieces of its kind.
std::string OriginText(Move move) {
  bool others = false;
  bool same_file = false;
  bool same_row = false;
  (void)LegalMoveList();
  for (int i = 0; i < ListLength(); ++i) {
    const Move other = tree[i];
    if (TargetOf(other) != TargetOf(move) || OriginOf(other) == OriginOf(move)) continue;
    if (MoverOf(other) != MoverOf(move)) continue;
    others = true;
    same_file |= FileOf(OriginOf(other)) == FileOf(OriginOf(move));
    same_row |= RowOf(OriginOf(other)) == RowOf(OriginOf(move));
  }
  const char* name = chb[OriginOf(move)];
  if (!others) return "";
  if (!same_file) return {name[0]};
  return same_row ? std::string(name) : std::string{name[1]};
}

std::string BareText(Move move) {
  if ((move & kShortCastling) != 0) return "O-O";
  if ((move & kLongCastling) != 0) return "O-O-O";
  const bool capture = (move & kCapture) != 0;
  const std::string target = (capture ? "x" : "") + std::string(chb[TargetOf(move)]);
  if (MoverOf(move) != Pawn) return Letter(PieceOf(move)) + OriginText(move) + target;
  const std::string origin = capture ? std::string{chb[OriginOf(move)][0]} : "";
  const std::string promotion =
      (move & kPromotion) != 0 ? std::string{'=', Letter(PieceOf(move))} : "";
  return origin + target + promotion;
}

std::string CheckText(Move move) {
  MakeMove(move);
  const bool check = Check();
  const bool mate = check && LegalMoveList() && ListLength() == 0;
  UnMakeMove(move);
  return mate ? "#" : check ? "+" : "";
}

// What a text in algebraic notation says of a move.
struct SanParts {
  int piece;
  std::string origin;  // file, row, both or nothing
  Square target;
  int promotion;  // 0 for none
};

bool Fits(Move move, const SanParts& parts) {
  const std::string name = chb[OriginOf(move)];
  return MoverOf(move) == parts.piece && TargetOf(move) == parts.target &&
         (move & kCastling) == 0 && (parts.promotion != 0) == ((move & kPromotion) != 0) &&
         name.find(parts.origin) != std::string::npos;
}

// The list has promotions to queen and knight alone: either fits a promotion to any piece, which
// the move found then gets from the text.
Move TheMoveThatFits(const SanParts& parts) {
  Move found = 0;
  for (int i = 0; i < ListLength(); ++i) {
    Move move = tree[i];
    if (!Fits(move, parts)) continue;
    if ((move & kPromotion) != 0) move = (move & ~kPieceMask) | PieceBits(parts.promotion);
    if (found != 0 && found != move) return 0;
    found = move;
  }
  return found;
}

Move CastlingOf(std::string_view text) {
  const Move kind = text.size() > 3 ? kLongCastling : kShortCastling;
  for (int i = 0; i < ListLength(); ++i) {
    if ((tree[i] & kind) != 0) return tree[i];
  }
  return 0;
}

bool IsCastling(std::string_view text) {
  return text == "O-O" || text == "0-0" || text == "O-O-O" || text == "0-0-0";
}

// The piece of an upper-case letter from knight to king, or 0.
int PieceOfLetter(char letter) {
  const std::size_t at = std::string_view("NBRQK").find(letter);
  return at == std::string_view::npos ? NoPiece : static_cast<int>(at) + Knight;
}

// Takes the piece that a pawn becomes from the end of the text.
int TakePromotion(std::string_view& text) {
  const int piece = text.empty() ? NoPiece : PieceOfLetter(text.back());
  if (piece == NoPiece || piece == King) return NoPiece;
  text.remove_suffix(1);
  if (text.ends_with('=')) text.remove_suffix(1);
  return piece;
}

bool IsOrigin(std::string_view text) {
  const auto is_file = [](char c) { return c >= 'a' && c <= 'h'; };
  const auto is_row = [](char c) { return c >= '1' && c <= '8'; };
  if (text.size() == 2) return is_file(text[0]) && is_row(text[1]);
  return text.empty() || (text.size() == 1 && (is_file(text[0]) || is_row(text[0])));
}

// Reads "Nge2", "exd6", "a8=Q" and the like. False for other texts.
bool ReadParts(std::string_view text, SanParts& parts) {
  parts.piece = text.empty() ? NoPiece : PieceOfLetter(text.front());
  if (parts.piece != NoPiece) text.remove_prefix(1);
  if (parts.piece == NoPiece) parts.piece = Pawn;
  parts.promotion = TakePromotion(text);
  if (text.size() < 2) return false;
  parts.target = StrToSq(text.substr(text.size() - 2));
  text.remove_suffix(2);
  if (text.ends_with('x') || text.ends_with('-')) text.remove_suffix(1);
  parts.origin = text;
  return parts.target >= 0 && IsOrigin(text);
}

}  // namespace

std::string SanOf(Move move) {
  const RedoGuard guard;
  const std::string text = BareText(move);
  return text + CheckText(move);
}

Move MoveOfSan(std::string_view text) {
  const std::string_view bare = text.substr(0, text.find_first_of("+#!?"));
  if (!LegalMoveList()) return 0;
  if (IsCastling(bare)) return CastlingOf(bare);
  SanParts parts{};
  Move move = ReadParts(bare, parts) ? TheMoveThatFits(parts) : 0;
  if (move == 0 && bare.size() >= 4) (void)StrToMove(bare, move);
  return move;
}

}  // namespace tarvyle::tools
