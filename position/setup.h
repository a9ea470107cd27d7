#pragma once

namespace tarvyle {

// Sets up the position of a FEN text: board, and optionally side, castling rights and en-passant
// square; further fields are ignored. Rank lengths, pawn places, and whether the side not to move
// is in check are deliberately not checked. Returns false, and leaves game and position as they
// were, for a null or refused text. Success starts a new game record and counts the position in
// `repetition_set`; `ply` and the move stack are left alone.
bool InitGame(const char* text);

// Sets up the start position.
bool InitNewGame();

}  // namespace tarvyle
