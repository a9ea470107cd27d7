#include "tools/book/bookreader.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "base/token.h"
#include "book/bookline.h"
#include "book/tokenizer.h"
#include "host/positiontext.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/setup.h"
#include "position/text.h"
#include "tools/book/eco.h"
#include "tools/files.h"

namespace tarvyle::tools {

namespace {

bool IsComment(const char* line) { return line[std::strspn(line, " ")] == '#'; }

bool NamesGambit(const std::string& name, const std::string& colour) {
  for (const char* word : {"gambit by ", "gambits by ", "sacrifice by ", "sacrifices by "}) {
    if (name.find(word + colour) != std::string::npos) return true;
  }
  return false;
}

// "# A02-A03 Bird opening"; a comment without codes in front is no heading.
bool ReadHeading(std::string_view comment, BookHeading& heading) {
  const std::string_view codes = NextToken(comment, " #\t\r\n");
  heading.first_code = codes.substr(0, 3);
  heading.last_code = codes.size() > 4 ? codes.substr(4) : codes;
  if (!IsEcoCode(heading.first_code) || !IsEcoCode(heading.last_code)) return false;
  if (codes.size() != 3 && (codes.size() != 7 || codes[3] != '-')) return false;
  const std::size_t end = comment.find_last_not_of(" \t\r\n");
  heading.name = comment.substr(0, end == std::string_view::npos ? 0 : end + 1);
  heading.gambit[White] = NamesGambit(heading.name, "White");
  heading.gambit[Black] = NamesGambit(heading.name, "Black");
  return true;
}

void ReadMoves(char* text, BookLine& line, std::vector<BookError>& errors) {
  InitNewGame();
  Tokenizer tokens;
  InitToken(tokens, text, kBetweenBookMoves);
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
    if (ReadHeading(text, heading)) book.headings.push_back(heading);
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

// A pipe is read as well, which ReadWholeFile refuses.
std::string ReadAll(const std::string& path) {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "r"));
  if (!file) FailOn("cannot read", path, errno);
  std::string content;
  std::array<char, 65536> chunk;
  for (std::size_t count = chunk.size(); count == chunk.size();) {
    count = std::fread(chunk.data(), 1, chunk.size(), file.get());
    content.append(chunk.data(), count);
  }
  if (std::ferror(file.get()) != 0) FailOn("cannot read", path, errno);
  return content;
}

}  // namespace

BookFile ReadBookFile(const std::string& path) {
  const std::string content = ReadAll(path);
  BookFile book;
  std::size_t file_line = 1;
  for (std::string_view rest = content; !rest.empty();) {
    std::string line = NextBookLine(rest);
    const bool ended = line.back() == '\n';
    TakeLine(line.data(), file_line, book);
    if (ended) ++file_line;
  }
  InitNewGame();
  return book;
}

BookFile ReadSoundBook(const std::string& path) {
  BookFile book = ReadBookFile(path);
  if (book.errors.empty()) return book;
  throw std::runtime_error(path + ": " + ErrorText(book.errors.front()) +
                           "; `tarv book check` tells all");
}

const BookHeading* HeadingOf(const BookFile& book, const BookLine& line) {
  return line.heading < 0 ? nullptr : &book.headings[static_cast<std::size_t>(line.heading)];
}

std::string ErrorText(const BookError& error) {
  return "line " + std::to_string(error.number) + " (line " + std::to_string(error.file_line) +
         " of the file): " + error.token + " is no legal move there";
}

std::string MovesText(const BookLine& line) {
  std::string text;
  for (const Move move : line.moves) {
    if (!text.empty()) text += ' ';
    text += MoveToStr(move);
  }
  return text;
}

}  // namespace tarvyle::tools
