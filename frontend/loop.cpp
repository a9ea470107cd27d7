#include "frontend/loop.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include "frontend/commands.h"
#include "frontend/console.h"
#include "frontend/display.h"
#include "frontend/exit.h"
#include "frontend/startup.h"

namespace tarvyle {

namespace {

// Announces the position to a board-display program if it has changed.
void Announce() {
  if (is_glintview != 0) print_board();
}

// The next character of the input; waits where an input that does not block has none yet. EOF at
// its end, which any other read error is as well.
int NextCharacter() {
  int character = std::getc(stdin);
  while (character == EOF && std::ferror(stdin) != 0 && errno == EAGAIN) {
    pollfd waiting{STDIN_FILENO, POLLIN, 0};
    poll(&waiting, 1, -1);
    std::clearerr(stdin);
    character = std::getc(stdin);
  }
  return character;
}

// Reads a line with its end, or as much of it as the buffer holds. False at the end of the input.
bool ReadLine(char* line, int size) {
  int length = 0;
  while (length < size - 1) {
    const int character = NextCharacter();
    if (character == EOF) break;
    line[length++] = static_cast<char>(character);
    if (character == '\n') break;
  }
  line[length] = '\0';
  return length > 0;
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
  while (ReadLine(line, sizeof line) && ObeyLine(line)) {
  }
  WriteLearnFile();
}

}  // namespace tarvyle
