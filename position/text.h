#pragma once

#include <cstdint>
#include <string_view>

#include "position/types.h"

// Squares, moves and numbers as text.

namespace tarvyle {

// Square names, in square order, each of two characters.
extern const char* const chb[kSquares];

inline constexpr int kMoveTextSize = 32;  // bytes that every move text fits into

// Square named by the first two characters of `text`, or -1.
Square StrToSq(std::string_view text);

// Writes a move in coordinate notation (e2e4, a7a8q; castling as the king's move; the null move as
// a8a8) into `buffer`, of kMoveTextSize bytes, and returns it. Without a buffer a static one is
// used, which the next such call overwrites.
char* MoveToStr(Move move, char* buffer = nullptr);

// The letter of the piece that a move promotes to as a text, or "" for any other move.
const char* PromotionSuffix(Move move);

// Writes the decimal digits of `number` (at most 20) and a zero into `buffer` and returns it.
char* U64ToStr(char* buffer, std::uint64_t number);

}  // namespace tarvyle
