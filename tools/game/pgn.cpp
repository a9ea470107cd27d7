#include "tools/game/pgn.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "host/scoretext.h"
#include "position/types.h"

namespace tarvyle::tools {

namespace {

constexpr std::size_t kLineWidth = 79;

std::string Tag(const std::string& name, const std::string& text) {
  std::string quoted;
  for (const char letter : text) {
    if (letter == '"' || letter == '\\') quoted += '\\';
    quoted += letter;
  }
  return "[" + name + " \"" + quoted + "\"]\n";
}

std::string TagLines(const SavedGame& game) {
  std::string tags = Tag("Event", "Saved game") + Tag("Site", "?") + Tag("Date", game.date) +
                     Tag("Round", "-") + Tag("White", game.white) + Tag("Black", game.black) +
                     Tag("Result", game.result);
  if (!game.start_fen.empty()) tags += Tag("SetUp", "1") + Tag("FEN", game.start_fen);
  return tags;
}

// The words of the move text, which lines may be broken between.
std::vector<std::string> Words(const SavedGame& game) {
  std::vector<std::string> words;
  bool number_needed = true;
  for (const GameMove& move : game.moves) {
    if (move.side == White || number_needed) {
      words.push_back(std::to_string(move.number) + (move.side == White ? "." : "..."));
    }
    words.push_back(move.san);
    number_needed = move.score.has_value();
    if (move.score) words.push_back("{ [%eval " + EvalText(*move.score) + "] }");
  }
  if (!game.taken_back.empty()) {
    words.emplace_back("{ taken back:");
    words.insert(words.end(), game.taken_back.begin(), game.taken_back.end());
    words.emplace_back("}");
  }
  words.push_back(game.result);
  return words;
}

}  // namespace

std::string EvalText(int score) {
  std::string text = ScoreText(score);
  if (text.starts_with("-#")) return "#-" + text.substr(2);
  return text.front() == '+' ? text.substr(1) : text;
}

std::string GameAsPgn(const SavedGame& game) {
  std::string text = TagLines(game) + "\n";
  std::size_t column = 0;
  for (const std::string& word : Words(game)) {
    if (column > 0 && column + 1 + word.size() > kLineWidth) {
      text += '\n';
      column = 0;
    }
    text += (column > 0 ? " " : "") + word;
    column += (column > 0 ? 1 : 0) + word.size();
  }
  return text + "\n";
}

}  // namespace tarvyle::tools
