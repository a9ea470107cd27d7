#include "frontend/commands.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "base/token.h"
#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "frontend/display.h"
#include "frontend/machine.h"
#include "frontend/savedgame.h"
#include "frontend/state.h"
#include "frontend/testpositions.h"
#include "frontend/timecommands.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/setup.h"
#include "search/draw.h"
#include "search/state.h"
#include "search/status.h"
#include "search/style.h"

namespace tarvyle {

namespace {

constexpr std::string_view kSeparators = " \n";  // a tab is part of a token
constexpr int kUserScore = 1000001;  // above any search score: the machine did not choose the move

// A row looks at the line and returns whether it was its own.

bool RowGetMoves(Command& command) {
  if (std::strncmp(command.line, "getmoves", 8) != 0) return false;
  const std::string path = command.NextArgument();
  const std::string event = command.NextArgument();
  print_moves(path.empty() ? nullptr : path.c_str(), event.empty() ? nullptr : event.c_str());
  return true;
}

bool RowHelp(Command& command) {
  if (std::strstr(command.line, "help") == nullptr) return false;
  PrintHelp();
  return true;
}

bool RowXboard(Command& command) {
  if (command.token != "xboard") return false;
  is_xboard = 1;
  // A GUI may interrupt before it has read that it shall not; nothing listens for interrupts here.
  std::signal(SIGINT, SIG_IGN);
  std::puts("feature setboard=1");
  std::puts("feature done=1");
  std::puts("feature sigint=0");
  std::puts("feature sigterm=0");
  return true;
}

bool RowSt(Command& command) {
  if (command.token != "st") return false;
  SetTimePerMove(command.NextArgument().c_str());
  return true;
}

bool RowTime(Command& command) {
  if (command.token != "time") return false;
  SetTimeByClock(command.NextArgument().c_str());
  return true;
}

bool RowForce(Command& command) {
  if (command.token != "force") return false;
  stop = 1;
  return true;
}

bool RowRnd(Command& command) {
  if (command.token != "rnd") return false;
  const std::string argument = command.NextArgument();
  if (argument == "on") {
    is_rnd_search = 1;
  } else if (argument == "off") {
    is_rnd_search = 0;
  } else {
    std::fputs("error: expected arg, [on] or [off]\n", stderr);
  }
  return true;
}

bool RowUndo(Command& command) {
  if (command.token != "undo") return false;
  UndoGameMove();
  return true;
}

bool RowUp(Command& command) {
  if (command.token != "up") return false;
  while (g.game_len > 0) UndoGameMove();
  return true;
}

bool RowRedo(Command& command) {
  if (command.token != "redo") return false;
  RedoGameMove();
  return true;
}

bool RowEnd(Command& command) {
  if (command.token != "end") return false;
  while (g.game_len < g.game_max) RedoGameMove();
  return true;
}

bool RowNew(Command& command) {
  if (command.token != "new") return false;
  InitNewGame();
  stop = 0;
  return true;
}

bool RowProtover(Command& command) {
  if (command.token != "protover") return false;
  std::puts("feature done=1");
  return true;
}

bool RowStyle(Command& command) {
  if (command.token != "style") return false;
  const std::string name = command.NextArgument();
  if (name.empty()) {
    std::printf("# %s \n", print_play_str());
  } else if (!load_play_style(name.c_str())) {
    std::fputs("# unknow style\n", stderr);
  }
  return true;
}

bool RowDeb(Command& command) {
  if (command.token != "deb") return false;
  const int number = std::atoi(command.NextArgument().c_str());
  if (!InitGame(TestPosition(number))) std::fputs("#error\n", stderr);
  return true;
}

// A refused position is not reported here: the line goes on and ends as an unknown command.
bool RowSetboard(Command& command) {
  if (command.token != "setboard") return false;
  const std::string text(command.rest.substr(0, command.rest.find('\n')));
  return !text.empty() && InitGame(text.c_str());
}

bool RowGetboard(Command& command) {
  if (command.token != "getboard") return false;
  print_board();
  return true;
}

bool RowMove(Command& command) {
  Move move = 0;
  if (!StrToMove(command.token, move) || !InsertMoveInGame(move, kUserScore)) return false;
  if (is_glintview != 0) print_board();
  if (stop == 0) move_machine();
  return true;
}

bool RowGo(Command& command) {
  if (command.token != "go") return false;
  stop = 0;
  move_machine();
  return true;
}

bool RowPos(Command& command) {
  if (command.token != "pos") return false;
  show_board();
  return true;
}

// The file named by the next argument, or the game's own.
std::string GameFileArgument(Command& command) {
  const std::string path = command.NextArgument();
  return path.empty() ? game_fname : path;
}

void RememberGameFile(const std::string& path) {
  std::snprintf(game_fname, sizeof game_fname, "%s", path.c_str());
}

bool RowLoad(Command& command) {
  if (command.token != "load") return false;
  const std::string path = GameFileArgument(command);
  if (LoadGame(path.c_str())) {
    RememberGameFile(path);
  } else {
    std::fprintf(stderr, "# error open file %s \n", path.c_str());
  }
  return true;
}

bool RowSave(Command& command) {
  if (command.token != "save") return false;
  const std::string path = GameFileArgument(command);
  if (SaveGame(path.c_str())) {
    RememberGameFile(path);
  } else {
    std::fprintf(stderr, "# error write file %s \n", path.c_str());
  }
  return true;
}

bool RowScore(Command& command) {
  if (command.token != "score") return false;
  InitEvaluate();
  Evaluate(-kInfinity, kInfinity);
  return true;
}

bool RowBareGetMoves(Command& command) {
  if (command.token != "getmoves") return false;
  PrintBareMoves();
  return true;
}

bool RowTest(Command& command) {
  if (command.token != "test") return false;
  std::printf("Repetition - %d \n", DrawByRule() ? 1 : 0);
  return true;
}

bool RowUnknown(Command& command) {
  std::fprintf(stderr, "# unknow: %s\n", command.token.c_str());
  return true;
}

using Row = bool (*)(Command&);

// In the order in which they are asked. Moves come after the words that could never be one, so none
// of those is read as a move; "getmoves" stands twice, for lines that begin with it and with
// blanks.
constexpr Row kRows[] = {
    RowGetMoves, RowHelp,     RowXboard,       RowSt,   RowTime,    RowForce,    RowRnd,
    RowUndo,     RowUp,       RowRedo,         RowEnd,  RowNew,     RowProtover, RowStyle,
    RowDeb,      RowSetboard, RowGetboard,     RowMove, RowGo,      RowPos,      RowLoad,
    RowSave,     RowScore,    RowBareGetMoves, RowTest, RowUnknown,
};

}  // namespace

std::string Command::NextArgument() { return std::string(NextToken(rest, kSeparators)); }

Command ReadCommand(const char* line) {
  Command command{line, {}, line};
  command.token = command.NextArgument();
  return command;
}

void Dispatch(Command& command) {
  for (const Row row : kRows) {
    if (row(command)) return;
  }
}

}  // namespace tarvyle
