#include "tools/book/pgnextract.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string_view>

#include "base/token.h"
#include "tools/book/eco.h"
#include "tools/files.h"

namespace tarvyle::tools {

namespace {

constexpr int kCannotStart = 127;

// Where Debian puts it is not on every user's search path.
std::string FindProgram(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::istringstream folders(std::string(path != nullptr ? path : "") + ":/usr/games");
  std::string folder;
  while (std::getline(folders, folder, ':')) {
    std::string program = (folder.empty() ? "." : folder) + "/" + name;
    if (access(program.c_str(), X_OK) == 0) return program;
  }
  throw std::runtime_error(name + " is not installed; it is the Debian package " + name);
}

[[noreturn]] void RunChild(const std::string& program, std::vector<std::string> arguments,
                           int output) {
  std::vector<char*> words;
  words.reserve(arguments.size() + 1);
  for (std::string& argument : arguments) words.push_back(argument.data());
  words.push_back(nullptr);
  if (dup2(output, STDOUT_FILENO) >= 0) execv(program.c_str(), words.data());
  _exit(kCannotStart);
}

std::string ReadToEnd(int input) {
  std::string text;
  std::array<char, 1 << 16> buffer;
  ssize_t count = 0;
  while ((count = read(input, buffer.data(), buffer.size())) > 0) {
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

std::string OutputOf(const std::string& program, const std::vector<std::string>& arguments) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe for " + program);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot start " + program);
  if (child == 0) {
    close(ends[0]);
    RunChild(program, arguments, ends[1]);
  }
  close(ends[1]);
  std::string output = ReadToEnd(ends[0]);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    throw std::runtime_error(program + " failed");
  }
  return output;
}

// The text of a tag, whose quotation marks and backslashes have a backslash in front.
std::string Unquoted(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

struct KeptTags {
  std::string eco;
  std::string opening;
  std::string variation;
};

// A line [Name "text"].
void TakeTag(std::string_view line, KeptTags& tags) {
  const std::size_t open = line.find(" \"");
  const std::size_t close = line.rfind("\"]");
  if (open == std::string_view::npos || close == std::string_view::npos || close < open + 2) return;
  const std::string_view name = line.substr(1, open - 1);
  const std::string text = Unquoted(line.substr(open + 2, close - open - 2));
  if (text == "?") return;
  if (name == "ECO") tags.eco = text.substr(0, 3);
  if (name == "Opening") tags.opening = text;
  if (name == "Variation") tags.variation = text;
}

PgnGame GameOf(const KeptTags& tags, std::string_view moves) {
  PgnGame game;
  if (IsEcoCode(tags.eco)) game.eco = tags.eco;
  game.opening = tags.opening;
  if (!tags.variation.empty() && !tags.opening.empty()) game.opening += ", " + tags.variation;
  for (auto move = NextToken(moves, " "); !move.empty(); move = NextToken(moves, " ")) {
    game.moves.emplace_back(move);
  }
  if (!game.moves.empty()) game.moves.pop_back();  // the result
  return game;
}

}  // namespace

std::vector<PgnGame> ExtractGames(const std::vector<std::string>& files) {
  const std::string program = FindProgram("pgn-extract");
  // Tags and moves alone, the moves of a game in one line; no games that begin elsewhere.
  std::vector<std::string> arguments = {"pgn-extract",   "-s",    "-C", "-N",   "-V",
                                        "--nosetuptags", "-Wuci", "-w", "65000"};
  for (const std::string& file : files) {
    (void)ReadWholeFile(file);  // a file that cannot be read is refused here, not passed over there
    arguments.push_back(file.starts_with('-') ? "./" + file : file);
  }
  std::istringstream output(OutputOf(program, arguments));
  std::vector<PgnGame> games;
  KeptTags tags;
  for (std::string line; std::getline(output, line);) {
    if (line.starts_with('[')) {
      TakeTag(line, tags);
    } else if (!line.empty()) {
      games.push_back(GameOf(tags, line));
      tags = {};
    }
  }
  return games;
}

}  // namespace tarvyle::tools
