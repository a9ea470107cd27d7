#include "tools/san.h"

#include <regex>

#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
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

Move TheMoveThatFits(const SanParts& parts) {
  Move found = 0;
  for (int i = 0; i < ListLength(); ++i) {
    Move move = tree[i];
    if (!Fits(move, parts)) continue;
    if ((move & kPromotion) != 0) {
      move = (move & ~kPieceMask) | static_cast<Move>(parts.promotion << 12);
    }
    if (found != 0 && found != move) return 0;
    found = move;
  }
  return found;
}

Move CastlingOf(const std::string& text) {
  const Move kind = text.size() > 3 ? kLongCastling : kShortCastling;
  for (int i = 0; i < ListLength(); ++i) {
    if ((tree[i] & kind) != 0) return tree[i];
  }
  return 0;
}

int PieceOfLetter(const std::string& letter) {
  return letter.empty() ? 0
                        : static_cast<int>(std::string_view(kPieceLetters[White]).find(letter[0]));
}

}  // namespace

std::string SanOf(Move move) {
  const KeptMoves kept;
  const std::string text = BareText(move);
  return text + CheckText(move);
}

Move MoveOfSan(std::string_view text) {
  static const std::regex castling("[O0]-[O0](-[O0])?");
  static const std::regex form("([NBRQK]?)([a-h]?[1-8]?)[x-]?([a-h][1-8])=?([NBRQ]?)");
  const std::string bare(text.substr(0, text.find_first_of("+#!?")));
  std::smatch match;
  if (!LegalMoveList()) return 0;
  if (std::regex_match(bare, castling)) return CastlingOf(bare);
  Move move = 0;
  if (std::regex_match(bare, match, form)) {
    const int piece = match[1].length() > 0 ? PieceOfLetter(match[1]) : Pawn;
    move = TheMoveThatFits({piece, match[2], StrToSq(match[3].str()), PieceOfLetter(match[4])});
  }
  if (move == 0 && bare.size() >= 4) (void)StrToMove(bare, move);
  return move;
}

}  // namespace tarvyle::tools
