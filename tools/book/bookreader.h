#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "position/types.h"

// A book file as the engine reads it, with what a person wants to know besides: where each line
// stands and which comment it stands under.

namespace tarvyle::tools {

// A comment that begins with ECO codes: "# B10-B11 Caro-Kann, two knights".
struct BookHeading {
  std::string first_code;
  std::string last_code;
  std::string name;
  bool gambit[2] = {false, false};  // by colour: "(gambit by White)", "(pawn sacrifice by Black)"
};

struct BookLine {
  std::size_t number;                  // as the engine counts: opening lines only, from 1
  std::size_t file_line;               // in the file, from 1
  std::ptrdiff_t heading;              // index of the heading above, or -1
  std::vector<Move> moves;             // up to the first wrong one
  std::vector<std::string> positions;  // the engine's text after each move
};

// A move that the engine refuses; the rest of its line is lost.
struct BookError {
  std::size_t number;
  std::size_t file_line;
  std::string token;
};

struct BookFile {
  std::vector<BookHeading> headings;
  std::vector<BookLine> lines;
  std::vector<BookError> errors;
};

// Reads a book file. Throws std::runtime_error when it cannot be opened. Changes the current game.
BookFile ReadBookFile(const std::string& path);

// The same for a book whose lines are to be handed on: throws std::runtime_error that tells the
// first error when there is one.
BookFile ReadSoundBook(const std::string& path);

// The heading that a line stands under, or null.
const BookHeading* HeadingOf(const BookFile& book, const BookLine& line);

// "line 7 (line 31 of the file): e2e5 is no legal move there"
std::string ErrorText(const BookError& error);

// The moves of a line with blanks between them.
std::string MovesText(const BookLine& line);

}  // namespace tarvyle::tools
