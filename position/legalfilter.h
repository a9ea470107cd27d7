#pragma once

#include "position/sets.h"
#include "position/types.h"

namespace tarvyle {

// Tells the legal ones among the pseudo-legal moves of one position: made once, asked for every
// move, without making any.
class LegalFilter {
 public:
  // Looks at the current position.
  LegalFilter();

  // Whether the king of the side to move is safe after `move`, and, for castling, on its way.
  bool IsLegal(Move move) const;

 private:
  bool EnPassantIsLegal(Move move) const;

  int side_;
  Square king_;
  SquareSet occupied_;
  SquareSet pinned_;   // own pieces that shield the king from a slider
  SquareSet targets_;  // where a move other than the king's may end: anywhere, or to meet a check
};

}  // namespace tarvyle
