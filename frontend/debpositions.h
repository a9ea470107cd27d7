#pragma once

namespace tarvyle {

// FEN of built-in test position 1..11, or the empty text for any other number.
const char* TestPosition(int number);

}  // namespace tarvyle
