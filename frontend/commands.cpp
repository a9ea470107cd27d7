#include "frontend/commands.h"

#include <csignal>
#include <cstdio>
#include <cstring>

#include "base/number.h"
#include "base/token.h"
#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "frontend/console.h"
#include "frontend/debpositions.h"
#include "frontend/display.h"
#include "frontend/help.h"
#include "frontend/machine.h"
#include "frontend/savedgame.h"
#include "frontend/timecommands.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/score.h"
#include "position/setup.h"
#include "position/types.h"
#include "search/draw.h"
#include "search/style.h"

namespace tarvyle {

namespace {

constexpr std::string_view kSeparators = " \n";  // a tab is part of a token

// One procedure for each row of the table below. It obeys a line and returns true, or finds that
// the line is not its own.

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

bool RowXboard(Command& /*command*/) {
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
  SetTimePerMove(command.NextArgument().c_str());
  return true;
}

bool RowTime(Command& command) {
  SetTimeByClock(command.NextArgument().c_str());
  return true;
}

bool RowForce(Command& /*command*/) {
  stop = 1;
  return true;
}

bool RowRnd(Command& command) {
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

bool RowUndo(Command& /*command*/) {
  UndoGameMove();
  return true;
}

bool RowUp(Command& /*command*/) {
  while (g.game_len > 0) UndoGameMove();
  return true;
}

bool RowRedo(Command& /*command*/) {
  RedoGameMove();
  return true;
}

bool RowEnd(Command& /*command*/) {
  while (g.game_len < g.game_max) RedoGameMove();
  return true;
}

bool RowNew(Command& /*command*/) {
  InitNewGame();
  stop = 0;
  return true;
}

bool RowProtover(Command& /*command*/) {
  std::puts("feature done=1");
  return true;
}

bool RowStyle(Command& command) {
  const std::string name = command.NextArgument();
  if (name.empty()) {
    std::printf("# %s \n", print_play_str());
  } else if (!load_play_style(name.c_str())) {
    std::fputs("# unknow style\n", stderr);
  }
  return true;
}

bool RowDeb(Command& command) {
  const int number = LeadingInteger(command.NextArgument().c_str(), 0);
  if (!InitGame(TestPosition(number))) std::fputs("#error\n", stderr);
  return true;
}

// A refused position is not reported here: the line goes on and ends as an unknown command.
bool RowSetboard(Command& command) {
  const std::string text(command.rest.substr(0, command.rest.find('\n')));
  return !text.empty() && InitGame(text.c_str());
}

bool RowGetboard(Command& /*command*/) {
  print_board();
  return true;
}

bool RowMove(Command& command) {
  Move move = 0;
  if (!StrToMove(command.token, move) || !InsertMoveInGame(move, kTypedMove)) return false;
  if (is_glintview != 0) print_board();
  if (stop == 0) move_machine();
  return true;
}

bool RowGo(Command& /*command*/) {
  stop = 0;
  move_machine();
  return true;
}

bool RowPos(Command& /*command*/) {
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
  const std::string path = GameFileArgument(command);
  if (LoadGame(path.c_str())) {
    RememberGameFile(path);
  } else {
    std::fprintf(stderr, "# error open file %s \n", path.c_str());
  }
  return true;
}

bool RowSave(Command& command) {
  const std::string path = GameFileArgument(command);
  if (SaveGame(path.c_str())) {
    RememberGameFile(path);
  } else {
    std::fprintf(stderr, "# error write file %s \n", path.c_str());
  }
  return true;
}

// Evaluates and tells nobody.
bool RowScore(Command& /*command*/) {
  InitEvaluate();
  Evaluate(-kInfinity, kInfinity);
  return true;
}

bool RowBareGetMoves(Command& /*command*/) {
  PrintBareMoves();
  return true;
}

bool RowTest(Command& /*command*/) {
  std::printf("Repetition - %d \n", DrawByRule() ? 1 : 0);
  return true;
}

bool RowUnknown(Command& command) {
  std::fprintf(stderr, "# unknow: %s\n", command.token.c_str());
  return true;
}

struct Row {
  std::string_view word;  // the line's first token; "" asks the procedure whatever the line is
  bool (*obey)(Command&);
};

// In the order in which they are asked, which decides: the first two rows look at the whole line,
// so "load help.dat" is a call for help; a row that refuses its line leaves it to those below, and
// the last takes all. "getmoves" stands twice, for lines that begin with it and for those that
// begin with blanks.
constexpr Row kRows[] = {
    {"", RowGetMoves},
    {"", RowHelp},
    {"xboard", RowXboard},
    {"st", RowSt},
    {"time", RowTime},
    {"force", RowForce},
    {"rnd", RowRnd},
    {"undo", RowUndo},
    {"up", RowUp},
    {"redo", RowRedo},
    {"end", RowEnd},
    {"new", RowNew},
    {"protover", RowProtover},
    {"style", RowStyle},
    {"deb", RowDeb},
    {"setboard", RowSetboard},
    {"getboard", RowGetboard},
    {"", RowMove},
    {"go", RowGo},
    {"pos", RowPos},
    {"load", RowLoad},
    {"save", RowSave},
    {"score", RowScore},
    {"getmoves", RowBareGetMoves},
    {"test", RowTest},
    {"", RowUnknown},
};

}  // namespace

std::string Command::NextArgument() { return std::string(NextToken(rest, kSeparators)); }

Command ReadCommand(const char* line) {
  Command command{line, {}, line};
  command.token = command.NextArgument();
  return command;
}

void Dispatch(Command& command) {
  for (const Row& row : kRows) {
    if ((row.word.empty() || row.word == command.token) && row.obey(command)) return;
  }
}

}  // namespace tarvyle
