#include "book/epd.h"

#include <cstdint>

#include "position/castling.h"
#include "position/enpassant.h"
#include "position/record.h"
#include "position/text.h"
#include "position/types.h"

namespace tarvyle {

namespace {

char* PutRow(char* out, int row) {
  int empty = 0;
  for (Square square = 8 * row; square < 8 * row + 8; ++square) {
    if (g.board[square] == NoPiece) {
      ++empty;
      continue;
    }
    if (empty > 0) *out++ = static_cast<char>('0' + empty);
    empty = 0;
    *out++ = kPieceLetters[g.color[square]][g.board[square]];
  }
  if (empty > 0) *out++ = static_cast<char>('0' + empty);
  return out;
}

char* PutCastling(char* out) {
  const std::uint32_t rights = StandingRights();
  if (rights == 0) *out++ = '-';
  for (int colour = White; colour <= Black; ++colour) {
    if ((rights & LongRight(colour)) != 0) *out++ = kPieceLetters[colour][Queen];
    if ((rights & ShortRight(colour)) != 0) *out++ = kPieceLetters[colour][King];
  }
  return out;
}

char* PutEnPassant(char* out) {
  const Square square = en_pass_to(LastMove(), g.xside);
  if (square == 0) {
    *out++ = '-';
    return out;
  }
  *out++ = chb[square][0];
  *out++ = chb[square][1];
  return out;
}

}  // namespace

void MakeEpd(char* buffer) {
  char* out = buffer;
  for (int row = 0; row < 8; ++row) {
    if (row > 0) *out++ = '/';
    out = PutRow(out, row);
  }
  *out++ = ' ';
  *out++ = g.side == White ? 'w' : 'b';
  *out++ = ' ';
  out = PutCastling(out);
  *out++ = ' ';
  out = PutEnPassant(out);
  while (out[-1] == '-' || out[-1] == ' ') --out;
  *out = '\0';
}

}  // namespace tarvyle
