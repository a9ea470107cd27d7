#pragma once

#include <string>

#include "position/types.h"

// The Polyglot book that answers in place of a text one, if there is any.

namespace tarvyle::uci {

// Whether a file is such a book by its content, or by its name when the content is damaged.
bool IsPolyglotBook(const std::string& path);

// Reads one; reports what is wrong with it.
void ReadPolyglotBook(const std::string& path);

// Leaves no such book.
void ForgetPolyglotBook();

// Whether there is one, of one entry at least.
bool HoldsPolyglotBook();

// A move that the book has for the position on the board, drawn by the weights, or 0. Writes the
// list of ply `ply`.
Move PolyglotMove(unsigned random);

}  // namespace tarvyle::uci
