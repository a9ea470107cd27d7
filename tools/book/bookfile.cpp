#include "tools/book/bookfile.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <regex>
#include <stdexcept>

#include "book/tokenizer.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/setup.h"
#include "position/text.h"
#include "tools/positiontext.h"

namespace tarvyle::tools {

namespace {

constexpr int kLineSize = 65535;  // the engine's reader takes so many characters for a line

bool IsComment(const char* line) { return line[std::strspn(line, " ")] == '#'; }

bool IsOpeningLine(const char* line) {
  line += std::strspn(line, " ");
  return *line != '\0' && *line != '\n' && *line != '#';
}

// "A02-A03", also written "A02-03".
bool ReadHeading(const std::string& comment, BookHeading& heading) {
  static const std::regex form(R"(\s*#+\s*([A-E]\d\d)(?:-([A-E]?)(\d\d))?\s+(\S.*?)\s*)");
  static const std::regex gambit(R"((?:gambit|sacrifice)s? by (White|Black))");
  std::smatch match;
  if (!std::regex_match(comment, match, form)) return false;
  heading.first_code = match[1];
  heading.last_code = heading.first_code;
  if (match[3].matched) {
    heading.last_code =
        (match[2].length() > 0 ? match[2].str() : match[1].str().substr(0, 1)) + match[3].str();
  }
  heading.name = match[4];
  for (std::sregex_iterator at(heading.name.begin(), heading.name.end(), gambit), end; at != end;
       ++at) {
    heading.gambit[(*at)[1] == "White" ? White : Black] = true;
  }
  return true;
}

void ReadMoves(char* text, BookLine& line, std::vector<BookError>& errors) {
  InitNewGame();
  Tokenizer tokens;
  InitToken(tokens, text, " !?#,;\r\n");
  while (const char* token = GetToken(tokens)) {
    Move move = 0;
    if (!StrToMove(token, move) || !InsertMoveInGame(move, 0)) {
      errors.push_back({line.number, line.file_line, token});
      return;
    }
    line.moves.push_back(move);
    line.positions.push_back(CurrentText());
  }
}

void TakeLine(char* text, std::size_t file_line, BookFile& book) {
  if (IsComment(text)) {
    BookHeading heading;
    std::string comment(text);
    if (ReadHeading(comment.substr(0, comment.find_last_not_of("\r\n") + 1), heading)) {
      book.headings.push_back(heading);
    }
  } else if (IsOpeningLine(text)) {
    BookLine line{book.lines.size() + 1,
                  file_line,
                  static_cast<std::ptrdiff_t>(book.headings.size()) - 1,
                  {},
                  {}};
    ReadMoves(text, line, book.errors);
    book.lines.push_back(std::move(line));
  }
}

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

}  // namespace

BookFile ReadBookFile(const std::string& path) {
  struct stat status {};
  const bool plain = stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode);
  const std::unique_ptr<std::FILE, CloseFile> file(plain ? std::fopen(path.c_str(), "r") : nullptr);
  if (!file) throw std::runtime_error("cannot read " + path);
  const auto text = std::make_unique<char[]>(kLineSize);
  BookFile book;
  std::size_t file_line = 1;
  while (std::fgets(text.get(), kLineSize, file.get()) != nullptr) {
    const bool ended = std::strchr(text.get(), '\n') != nullptr;
    TakeLine(text.get(), file_line, book);
    if (ended) ++file_line;
  }
  InitNewGame();
  return book;
}

std::string ErrorText(const BookError& error) {
  return "line " + std::to_string(error.number) + " (line " + std::to_string(error.file_line) +
         " of the file): " + error.token + " is no legal move there";
}

std::string MovesText(const BookLine& line) {
  std::string text;
  for (const Move move : line.moves)
    text += (text.empty() ? "" : " ") + std::string(MoveToStr(move));
  return text;
}

}  // namespace tarvyle::tools
