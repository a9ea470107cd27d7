#include "position/pieces.h"

#include <cstring>

namespace tarvyle {

void SetRecord(const GameRecord& record) {
  g = record;
  RebuildSets();
}

void ClearRecord() {
  std::memset(&g, 0, sizeof g);
  for (std::int32_t& square : g.list_sq) square = -1;
  for (std::int32_t& slot : g.list_idx) slot = -1;
  for (std::int32_t& colour : g.color) colour = NoColour;
  g.xside = Black;
  g.list_first[Black] = FirstSlot(Black);
  g.list_last[Black] = FirstSlot(Black);
  RebuildSets();
}

void InsertPiece(int piece, int colour, Square square, int slot) {
  PlacePiece<OnBroken::kAbort>(piece, colour, square, slot);
}

void RemovePiece(int piece, int colour, Square square, int slot) {
  LiftPiece<OnBroken::kAbort>(piece, colour, square, slot);
}

}  // namespace tarvyle
