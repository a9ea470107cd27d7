#include "position/setup.h"

#include <cctype>
#include <cstddef>
#include <initializer_list>
#include <string_view>

#include "base/token.h"
#include "position/pieces.h"
#include "position/record.h"
#include "position/text.h"
#include "position/types.h"

namespace tarvyle {

namespace {

constexpr std::string_view kBoardAlphabet = "pnbrqkPNBRQK12345678/";

bool PlaceFromText(char letter, Square square) {
  const std::size_t index = kBoardAlphabet.find(letter);
  const int colour = index < 6 ? Black : White;
  const int piece = static_cast<int>(index % 6) + Pawn;
  const int slot = g.list_last[colour];
  if (!OnBoard(square) || !SlotOfColour(slot, colour)) return false;
  InsertPiece(piece, colour, square, slot);
  ++g.list_last[colour];
  return true;
}

bool ReadBoard(std::string_view field) {
  if (field.empty()) return false;
  Square square = A8;
  for (const char letter : field) {
    if (kBoardAlphabet.find(letter) == std::string_view::npos) return false;
    if (letter == '/') continue;
    if (std::isdigit(static_cast<unsigned char>(letter)) != 0) {
      square += letter - '0';
    } else if (!PlaceFromText(letter, square++)) {
      return false;
    }
  }
  // From the next free slot to the last one used.
  --g.list_last[White];
  --g.list_last[Black];
  return g.piece_cnt[White][King] == 1 && g.piece_cnt[Black][King] == 1;
}

bool ReadSide(std::string_view field) {
  if (field == "b") {
    g.side = Black;
    g.xside = White;
    return true;
  }
  return field == "w" || field == "-";
}

bool ReadCastling(std::string_view field) {
  if (field == "-") return true;
  for (const char letter : field) {
    switch (letter) {
      case 'K': g.castle |= ShortRight(White); break;
      case 'Q': g.castle |= LongRight(White); break;
      case 'k': g.castle |= ShortRight(Black); break;
      case 'q': g.castle |= LongRight(Black); break;
      default: return false;
    }
  }
  return true;
}

// The square must be one that an enemy pawn has just passed over.
bool ReadEnPassant(std::string_view field) {
  if (field == "-") return true;
  const Square square = StrToSq(field);
  if (square < 0 || RowOf(square) != PassedRow(g.xside)) return false;
  const Square pawn = square - dP[g.side];
  const Square origin = square + dP[g.side];
  if (!StandsOn(Pawn, g.xside, pawn) || !IsEmpty(square) || !IsEmpty(origin)) return false;
  g.ep_sq = square;
  return true;
}

// Reads the fields into the empty record. A missing field ends the text: nothing more is set.
bool ReadFields(std::string_view text) {
  constexpr std::string_view kSeparators = " \n";
  if (!ReadBoard(NextToken(text, kSeparators))) return false;
  for (const auto read : {ReadSide, ReadCastling, ReadEnPassant}) {
    const std::string_view field = NextToken(text, kSeparators);
    if (field.empty()) return true;
    if (!read(field)) return false;
  }
  return true;
}

}  // namespace

bool InitGame(const char* text) {
  if (text == nullptr) return false;
  const GameRecord saved = g;
  ClearRecord();
  if (!ReadFields(text)) {
    SetRecord(saved);
    return false;
  }
  g.start_key = g.key;
  ++repetition_set[g.key.low & kRepetitionMask];
  return true;
}

bool InitNewGame() { return InitGame("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -"); }

}  // namespace tarvyle
