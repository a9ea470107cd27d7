#include "frontend/loop.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "frontend/commands.h"
#include "frontend/display.h"
#include "frontend/exit.h"
#include "frontend/startup.h"
#include "frontend/state.h"

namespace tarvyle {

namespace {

// Announces the position to a board-display program if it has changed.
void Announce() {
  if (is_glintview != 0) print_board();
}

}  // namespace

bool ObeyLine(const char* line) {
  Command command = ReadCommand(line);
  if (command.token.empty()) return true;
  if (command.token == "getboard") old_print_fen[0] = '\0';
  Announce();
  if (command.token == "quit") return false;
  if (std::strncmp(line, "glintview", 9) == 0) {
    is_glintview = 1;
  } else {
    Dispatch(command);
  }
  Announce();
  return true;
}

void PlayWinBoard() {
  StartUp();
  char line[kInputLineSize];
  while (std::fgets(line, sizeof line, stdin) != nullptr && ObeyLine(line)) {
  }
  WriteLearnFile();
}

}  // namespace tarvyle
