#pragma once

namespace tarvyle {

inline constexpr int kEpdSize = 128;  // bytes that every position text fits into

// Writes the position's identifying text, zero-terminated, into `buffer` (kEpdSize bytes): board,
// side, castling letters in the order QKqk, en-passant square, cut after the last field that is not
// "-". Learn files store these texts and compare them byte for byte: the form never changes. A
// castling letter needs the right and king and rook at home; an en-passant square needs an enemy
// pawn beside the one that moved.
void MakeEpd(char* buffer);

}  // namespace tarvyle
