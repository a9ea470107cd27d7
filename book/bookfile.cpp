#include "book/bookfile.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "base/file.h"
#include "base/message.h"
#include "book/bookline.h"
#include "book/epd.h"
#include "book/learn.h"
#include "book/tokenizer.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/pieces.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/types.h"

namespace tarvyle {

namespace {

// Only the newest node of the key is looked at, unlike in InsertNodeLearn: when it has another
// text, the position is entered, be it for a second time. The records of a learn file depend on it.
void EnterPosition() {
  char text[kEpdSize];
  MakeEpd(text);
  const LearnNode* known = SearchNode(g.side, g.key.low, g.key.high);
  if (known == nullptr || std::strcmp(known->text, text) != 0) LinkLearnNode(NewLNode(text));
}

// Enters the positions of a line of moves, up to a wrong one.
void EnterLine(char* line, int number) {
  Tokenizer tokens;
  InitToken(tokens, line, kBetweenBookMoves);
  while (const char* token = GetToken(tokens)) {
    Move move = 0;
    if (!StrToMove(token, move) || !InsertMoveInGame(move, 0)) {
      Message("#error: line %d, lexem %s\n", number, token);
      return;
    }
    EnterPosition();
  }
}

}  // namespace

bool ReadLibFile(const char* path) {
  std::string content;
  if (ReadFile(path, content) != FileState::kRead) return false;
  const auto game = std::make_unique<GameRecord>(g);
  InitNewGame();
  const auto start = std::make_unique<GameRecord>(g);
  int number = 0;
  for (std::string_view rest = content; !rest.empty();) {
    std::string line = NextBookLine(rest);
    if (!IsOpeningLine(line.c_str())) continue;
    SetRecord(*start);
    EnterLine(line.data(), ++number);
  }
  SetRecord(*game);
  return true;
}

}  // namespace tarvyle
