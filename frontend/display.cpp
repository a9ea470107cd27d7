#include "frontend/display.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "book/epd.h"
#include "frontend/console.h"
#include "frontend/namedfile.h"
#include "position/record.h"
#include "position/text.h"
#include "position/types.h"

namespace tarvyle {

namespace {

// Empty light squares show as '-', dark ones as a blank; a8 is light.
char SquareLetter(Square square) {
  if (g.board[square] != NoPiece) return kPieceLetters[g.color[square]][g.board[square]];
  return (RowOf(square) + FileOf(square)) % 2 == 0 ? '-' : ' ';
}

// The moves of the game, each followed by a blank, and a newline.
std::string MovesText() {
  std::string text;
  for (int i = 0; i < g.game_len; ++i) text += MoveToStr(g.game_moves[i]) + std::string(" ");
  return text + '\n';
}

}  // namespace

const char* get_board() {
  static char text[kEpdSize];
  MakeEpd(text);
  return text;
}

int print_board() {
  const char* text = get_board();
  if (std::strcmp(text, old_print_fen) != 0) {
    std::strcpy(old_print_fen, text);
    std::printf("position %s\n", text);
  }
  return 0;
}

std::string BoardDiagram() {
  std::string text;
  const auto add = [&text](char letter) { text.append({letter, ' '}); };
  for (int row = 0; row < 8; ++row) {
    add(static_cast<char>('8' - row));
    text += ' ';
    for (int file = 0; file < 8; ++file) add(SquareLetter(8 * row + file));
    text += '\n';
  }
  text += "\n   ";
  for (char file = 'a'; file <= 'h'; ++file) add(file);
  text += "\nmoves: " + std::to_string(use_moves(g.game_len));
  return text + "\nside:  " + (g.side == White ? "white" : "black") + '\n';
}

void show_board() { std::fputs(BoardDiagram().c_str(), stdout); }

void print_moves(const char* path, const char* event) {
  if (path == nullptr) {
    std::fputs(("moves " + MovesText()).c_str(), stdout);
    std::fflush(stdout);
    return;
  }
  const std::string header =
      "[Event  \"" + std::string(event != nullptr ? event : "player - chess") + "\"] \n";
  if (!WriteNamedFile(path, header + MovesText())) std::fputs("error open file\n", stderr);
}

void PrintBareMoves() {
  std::fputs(MovesText().c_str(), stdout);
  std::fflush(stdout);
}

}  // namespace tarvyle
