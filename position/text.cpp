#include "position/text.h"

#include <algorithm>
#include <cstdio>

namespace tarvyle {

const char* const chb[kSquares] = {
    "a8", "b8", "c8", "d8", "e8", "f8", "g8", "h8",  //
    "a7", "b7", "c7", "d7", "e7", "f7", "g7", "h7",  //
    "a6", "b6", "c6", "d6", "e6", "f6", "g6", "h6",  //
    "a5", "b5", "c5", "d5", "e5", "f5", "g5", "h5",  //
    "a4", "b4", "c4", "d4", "e4", "f4", "g4", "h4",  //
    "a3", "b3", "c3", "d3", "e3", "f3", "g3", "h3",  //
    "a2", "b2", "c2", "d2", "e2", "f2", "g2", "h2",  //
    "a1", "b1", "c1", "d1", "e1", "f1", "g1", "h1",
};

Square StrToSq(std::string_view text) {
  if (text.size() < 2 || text[0] < 'a' || text[0] > 'h' || text[1] < '1' || text[1] > '8') {
    return -1;
  }
  return ('8' - text[1]) * 8 + (text[0] - 'a');
}

char* MoveToStr(Move move, char* buffer) {
  static char own[kMoveTextSize];
  char* text = buffer != nullptr ? buffer : own;
  std::snprintf(text, kMoveTextSize, "%s%s%s", chb[OriginOf(move)], chb[TargetOf(move)],
                PromotionSuffix(move));
  return text;
}

const char* PromotionSuffix(Move move) {
  static constexpr const char* kSuffix[8] = {"", "p", "n", "b", "r", "q", "k", ""};
  return (move & kPromotion) != 0 ? kSuffix[PieceOf(move)] : "";
}

char* U64ToStr(char* buffer, std::uint64_t number) {
  char* end = buffer;
  do {
    *end++ = static_cast<char>('0' + number % 10);
    number /= 10;
  } while (number != 0);
  *end = '\0';
  std::reverse(buffer, end);
  return buffer;
}

}  // namespace tarvyle
