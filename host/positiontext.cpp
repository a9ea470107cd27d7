#include "host/positiontext.h"

#include <cctype>
#include <cstddef>
#include <utility>

#include "base/token.h"
#include "book/epd.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"

namespace tarvyle {

namespace {

constexpr std::string_view kSeparators = " \t";

struct PositionFields {
  std::string board;
  std::string side;
  std::string castling;
  std::string en_passant;
};

bool LooksLikeCastling(std::string_view field) {
  return field.find_first_not_of("KQkq-") == std::string_view::npos;
}

// Letters alone are none: "ce" is an operation.
bool LooksLikeEnPassant(std::string_view field) {
  return field == "-" ||
         (field.size() == 2 && StrToSq(field) >= 0 && (field[1] == '3' || field[1] == '6'));
}

// A field is missing when it does not look like one: an operation of an EPD line, or its end.
std::string FieldOf(std::string_view& text, bool (*looks_like_one)(std::string_view)) {
  std::string_view rest = text;
  const std::string_view field = NextToken(rest, kSeparators);
  if (field.empty() || !looks_like_one(field)) return "-";
  text = rest;
  return std::string(field);
}

PositionFields FieldsOf(std::string_view& text) {
  PositionFields fields;
  fields.board = NextToken(text, kSeparators);
  fields.side = NextToken(text, kSeparators);
  fields.castling = FieldOf(text, LooksLikeCastling);
  fields.en_passant = FieldOf(text, LooksLikeEnPassant);
  return fields;
}

bool SetUpFields(const PositionFields& fields) {
  return InitGame((fields.board + " " + fields.side + " " + fields.castling).c_str());
}

// Each rank must have eight squares and no two numbers side by side: then the board's own text is
// the field again.
bool BoardIsExact(const std::string& board) {
  const std::string text = CurrentText();
  return text.substr(0, text.find(' ')) == board;
}

// Whether a pawn of the side to move stands beside the enemy pawn that passed over `square`.
bool CanTakeEnPassant(Square square) {
  if (square < 0 || RowOf(square) != PassedRow(g.xside)) return false;
  const Square pawn = square - dP[g.side];
  return StandsOn(Pawn, g.xside, pawn) && PawnBeside(pawn, g.side);
}

std::string MovePawnBack(const std::string& board, Square from, Square to) {
  std::string squares;
  for (const char letter : board) {
    if (letter == '/') continue;
    const bool digit = std::isdigit(static_cast<unsigned char>(letter)) != 0;
    squares +=
        digit ? std::string(static_cast<std::size_t>(letter - '0'), '1') : std::string(1, letter);
  }
  std::swap(squares[static_cast<std::size_t>(from)], squares[static_cast<std::size_t>(to)]);
  for (std::size_t row = 7; row > 0; --row) squares.insert(8 * row, 1, '/');
  return squares;
}

bool PlayDoubleStep(const PositionFields& fields, Square square) {
  const Square target = square - dP[g.side];
  const Square origin = square + dP[g.side];
  if (!IsEmpty(square) || !IsEmpty(origin)) return false;
  PositionFields before = fields;
  before.board = MovePawnBack(fields.board, target, origin);
  before.side = fields.side == "w" ? "b" : "w";
  Move move = 0;
  const std::string text = std::string(chb[origin]) + chb[target];
  return SetUpFields(before) && StrToMove(text, move) && InsertMoveInGame(move, 0);
}

}  // namespace

std::string SetUpText(std::string_view text) {
  const PositionFields fields = FieldsOf(text);
  if (fields.side != "w" && fields.side != "b") return "no side to move";
  if (!SetUpFields(fields) || !BoardIsExact(fields.board)) return "no chess position";
  const Square square = StrToSq(fields.en_passant);
  if (CanTakeEnPassant(square) && !PlayDoubleStep(fields, square)) {
    return "no pawn can have passed over " + fields.en_passant;
  }
  if (!LegalMoveList()) return "the side not to move is in check";
  return "";
}

std::string CurrentText() {
  char text[kEpdSize];
  MakeEpd(text);
  return text;
}

std::string EpdFields(std::string_view text) {
  const PositionFields fields = FieldsOf(text);
  std::string castling;
  for (const char letter : std::string_view("KQkq")) {
    if (fields.castling.find(letter) != std::string::npos) castling += letter;
  }
  if (castling.empty()) castling = "-";
  return fields.board + " " + fields.side + " " + castling + " " + fields.en_passant;
}

std::string_view EpdOperations(std::string_view line) {
  (void)FieldsOf(line);
  const std::size_t begin = line.find_first_not_of(kSeparators);
  return begin == std::string_view::npos ? std::string_view() : line.substr(begin);
}

}  // namespace tarvyle
