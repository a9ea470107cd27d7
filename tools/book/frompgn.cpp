#include "tools/book/frompgn.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <stdexcept>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "host/positiontext.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/setup.h"
#include "position/types.h"
#include "tools/book/pgnextract.h"
#include "tools/files.h"

namespace tarvyle::tools {

namespace {

// How often each name was given to the games of a line.
using Names = std::map<std::string, int>;

// Moves with a blank behind each, in the order in which a line stands before its own extensions.
using Lines = std::map<std::string, Names>;

// Positions after each move, up to the depth; ends early at a move that the engine does not know.
std::vector<std::string> PositionsOf(const PgnGame& game, int max_depth) {
  std::vector<std::string> positions;
  InitNewGame();
  for (const std::string& text : game.moves) {
    Move move = 0;
    if (static_cast<int>(positions.size()) == max_depth) break;
    if (!StrToMove(text, move) || !InsertMoveInGame(move, 0)) break;
    positions.push_back(CurrentText());
  }
  InitNewGame();
  return positions;
}

std::string NameOf(const PgnGame& game) {
  if (game.eco.empty() || game.opening.empty()) return game.eco + game.opening;
  return game.eco + " " + game.opening;
}

Lines LinesOf(const std::vector<PgnGame>& games, const FromPgnOptions& options) {
  std::vector<std::vector<std::string>> positions;
  std::unordered_map<std::string, int> reached;
  for (const PgnGame& game : games) {
    positions.push_back(PositionsOf(game, options.max_depth));
    const std::unordered_set<std::string> once(positions.back().begin(), positions.back().end());
    for (const std::string& position : once) ++reached[position];
  }
  Lines lines;
  for (std::size_t i = 0; i < games.size(); ++i) {
    std::string line;
    for (std::size_t move = 0; move < positions[i].size(); ++move) {
      if (reached[positions[i][move]] < options.min_games) break;
      line += games[i].moves[move] + ' ';
    }
    if (!line.empty()) ++lines[line][NameOf(games[i])];
  }
  return lines;
}

std::string CommonName(const Names& names) {
  const auto most = std::max_element(
      names.begin(), names.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  return most->first;
}

// Lines that are not the start of another, by the name of their opening.
std::vector<std::pair<std::string, std::string>> NamedLines(const Lines& lines) {
  std::vector<std::pair<std::string, std::string>> named;
  for (auto at = lines.begin(); at != lines.end(); ++at) {
    const auto next = std::next(at);
    if (next != lines.end() && next->first.starts_with(at->first)) continue;
    named.emplace_back(CommonName(at->second), at->first.substr(0, at->first.size() - 1));
  }
  std::sort(named.begin(), named.end());
  return named;
}

}  // namespace

void BookFromPgn(const FromPgnOptions& options) {
  const std::vector<PgnGame> games = ExtractGames(options.files);
  const auto lines = NamedLines(LinesOf(games, options));
  if (lines.empty()) {
    throw std::runtime_error("no first move is in " + std::to_string(options.min_games) +
                             " of the " + std::to_string(games.size()) + " games");
  }
  std::string text = "# " + std::to_string(lines.size()) + " lines from " +
                     std::to_string(games.size()) + " games: positions of at least " +
                     std::to_string(options.min_games) + " games, at most " +
                     std::to_string(options.max_depth) + " half-moves\n";
  std::string name;
  for (const auto& [opening, moves] : lines) {
    if (opening != name) text += "# " + opening + "\n";
    name = opening;
    text += moves + "\n";
  }
  WriteOutput(options.output, text);
}

}  // namespace tarvyle::tools
