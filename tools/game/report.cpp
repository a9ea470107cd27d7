#include "tools/game/report.h"

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string_view>
#include <vector>

#include "host/scoretext.h"
#include "position/types.h"
#include "tools/game/pgn.h"
#include "tools/game/reportpage.h"
#include "tools/json.h"

namespace tarvyle::tools {

namespace {

constexpr double kShownMate = 99;  // pawns that stand for a mate in the graph

std::string HtmlText(const std::string& text) {
  std::string html;
  for (const char letter : text) {
    switch (letter) {
      case '&': html += "&amp;"; break;
      case '<': html += "&lt;"; break;
      case '"': html += "&quot;"; break;
      default: html += letter;
    }
  }
  return html;
}

double GraphValue(int score) {
  if (!IsMateScore(score)) return score / kPawn;
  return score > 0 ? kShownMate : -kShownMate;
}

std::string PositionJson(const GamePosition& position) {
  return "\"board\": " + JsonText(position.board) +
         ", \"check\": " + (position.check ? "true" : "false");
}

std::string MoveObject(const GameMove& move) {
  std::string text = "{\"san\": " + JsonText(move.san) +
                     ", \"number\": " + std::to_string(move.number) +
                     ", \"side\": " + std::to_string(move.side) +
                     ", \"from\": " + std::to_string(OriginOf(move.move)) +
                     ", \"to\": " + std::to_string(TargetOf(move.move)) + ", ";
  if (move.score) {
    text += "\"score\": " + std::to_string(GraphValue(*move.score)) +
            ", \"scoreText\": " + JsonText(ScoreText(*move.score)) + ", ";
  }
  return text + PositionJson(move.after) + "}";
}

std::string GameObject(const SavedGame& game) {
  std::string text =
      "{\"white\": " + JsonText(game.white) + ", \"black\": " + JsonText(game.black) +
      ", \"date\": " + JsonText(game.date) + ", \"result\": " + JsonText(game.result) +
      ", \"reason\": " + JsonText(game.reason) + ", \"pgn\": " + JsonText(GameAsPgn(game)) +
      ", \"start\": {" + PositionJson(game.start) + "}, \"takenBack\": [";
  for (std::size_t i = 0; i < game.taken_back.size(); ++i) {
    text += (i > 0 ? ", " : "") + JsonText(game.taken_back[i]);
  }
  text += "], \"moves\": [";
  for (std::size_t i = 0; i < game.moves.size(); ++i) {
    text += (i > 0 ? ",\n" : "\n") + MoveObject(game.moves[i]);
  }
  return text + "]}";
}

// A text that goes into a page, and what stands in its place there.
struct Filling {
  std::string_view mark;
  std::string text;
};

// The page with these texts in it, in the order of their marks; throws when one is not there. What
// a text holds stays as it is, even if it looks like a mark.
std::string Filled(std::string_view page, std::initializer_list<Filling> fillings) {
  std::string text;
  for (const Filling& filling : fillings) {
    const std::size_t place = page.find(filling.mark);
    text.append(page.substr(0, place)).append(filling.text);
    page = page.substr(place).substr(filling.mark.size());
  }
  return text.append(page);
}

std::string Element(std::string_view name, std::string_view content) {
  std::string text("<");
  text.append(name).append(">\n").append(content).append("</").append(name).append(">");
  return text;
}

}  // namespace

std::string GameAsPage(const SavedGame& game) {
  return Filled(kReportHtml,
                {{"@TITLE@", HtmlText(game.white + " - " + game.black + ", " + game.result)},
                 {"<link rel=\"stylesheet\" href=\"report.css\">", Element("style", kReportCss)},
                 {"@GAME@", GameObject(game)},
                 {"<script src=\"report.js\"></script>", Element("script", kReportJs)}});
}

}  // namespace tarvyle::tools
