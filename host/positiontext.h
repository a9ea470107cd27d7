#pragma once

#include <string>
#include <string_view>

// Positions as text: EPD and FEN on one side, the engine's own position text on the other.

namespace tarvyle {

// Sets up the position of the first fields of a FEN, an EPD line or a position text: board, side,
// and, when there, castling rights and en-passant square. Where a pawn can take en passant the
// double step before is played, so that the position has the same text as in a game; an en-passant
// square without such a pawn is ignored. Returns "", or why the text is refused: then some
// position is on the board.
std::string SetUpText(std::string_view text);

// The engine's text of the current position.
std::string CurrentText();

// The four fields of EPD ("board w KQkq e3") from a position text.
std::string EpdFields(std::string_view text);

// The rest of an EPD line behind its position fields, without leading blanks.
std::string_view EpdOperations(std::string_view line);

}  // namespace tarvyle
