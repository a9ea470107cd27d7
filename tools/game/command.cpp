#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frontend/display.h"
#include "host/scoretext.h"
#include "position/types.h"
#include "tools/commandline.h"
#include "tools/files.h"
#include "tools/game/gamereader.h"
#include "tools/game/pgn.h"
#include "tools/game/report.h"
#include "tools/subcommands.h"

namespace tarvyle::tools {

namespace {

struct GameOptions {
  std::string file;
  std::string white;
  std::string black;
  std::string output;
};

SavedGame ReadNamedGame(const GameOptions& options) {
  SavedGame game = ReadSavedGame(options.file);
  if (!options.white.empty()) game.white = options.white;
  if (!options.black.empty()) game.black = options.black;
  return game;
}

// Moves in two columns, each with its score for White.
void PrintMoves(const SavedGame& game) {
  for (std::size_t i = 0; i < game.moves.size(); ++i) {
    const GameMove& move = game.moves[i];
    if (move.side == White || i == 0) std::printf("%4d.  ", move.number);
    if (move.side == Black && i == 0) std::printf("%-19s", "...");
    std::printf("%-9s%-10s", move.san.c_str(), move.score ? ScoreText(*move.score).c_str() : "");
    if (move.side == Black || i + 1 == game.moves.size()) std::puts("");
  }
}

void Show(const GameOptions& options) {
  const SavedGame game = ReadNamedGame(options);
  std::printf("White   %s\nBlack   %s\nResult  %s%s%s\n\n", game.white.c_str(), game.black.c_str(),
              game.result.c_str(), game.reason.empty() ? "" : ", ", game.reason.c_str());
  PrintMoves(game);
  if (!game.taken_back.empty()) {
    std::printf("\ntaken back:");
    for (const std::string& san : game.taken_back) std::printf(" %s", san.c_str());
    std::puts("");
  }
  std::puts("");
  show_board();
  std::fflush(stdout);
}

void WritePgn(const GameOptions& options) {
  WriteOutput(options.output, GameAsPgn(ReadNamedGame(options)));
}

void WriteReport(const GameOptions& options) {
  const std::string page = GameAsPage(ReadNamedGame(options));
  const std::string output =
      options.output.empty()
          ? std::filesystem::path(options.file).replace_extension(".html").string()
          : options.output;
  WriteFileAtomically(output, page);
  std::puts(output.c_str());
}

Command AddGameCommand(const Command& group, const char* name, const char* what,
                       const char* example, GameOptions& options) {
  Command command = group.AddCommand(name, what, example);
  command.Add("FILE", options.file, "game saved with the engine's \"save\"").Required();
  command.Add("--white", options.white, "name of the player of White");
  command.Add("--black", options.black, "name of the player of Black");
  return command;
}

}  // namespace

void AddGame(const Command& program) {
  const Command group = program.AddGroup("game", "Shows saved games, also as PGN and as a web page",
                                         "tarv game show tarvyle_save_game.dat");
  auto options = std::make_shared<GameOptions>();
  const Command show = AddGameCommand(group, "show", "Prints moves, scores and board",
                                      "tarv game show tarvyle_save_game.dat", *options);
  show.Does([options] { Show(*options); });
  const Command pgn =
      AddGameCommand(group, "pgn", "Writes PGN with the engine's scores in comments",
                     "tarv game pgn --white \"A. Player\" tarvyle_save_game.dat", *options);
  pgn.Add("-o,--output", options->output, "file to write (default: standard output)");
  pgn.Does([options] { WritePgn(*options); });
  const Command report = AddGameCommand(
      group, "report", "Writes a web page to step through, with a graph of the scores",
      "tarv game report --output game.html tarvyle_save_game.dat", *options);
  report.Add("-o,--output", options->output, "file to write (default: FILE with the ending .html)");
  report.Does([options] { WriteReport(*options); });
}

}  // namespace tarvyle::tools
