#include "uci/polyglotbook.h"

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>  // IWYU pragma: keep
#include <string_view>
#include <system_error>

#include "polyglot/binarybook.h"
#include "uci/output.h"

namespace tarvyle::uci {

namespace {

polyglot::BinaryBook book;

}  // namespace

bool IsPolyglotBook(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return false;
  std::array<char, 1024> start;
  std::ifstream file(path, std::ios::binary);
  file.read(start.data(), start.size());
  const auto count = static_cast<std::size_t>(file.gcount());
  const std::string_view content(start.data(), count);
  if (polyglot::LooksLikeBook(content)) return true;
  // A damaged one is still told as what it is meant to be.
  return path.ends_with(".bin") &&
         (content.empty() || content.find('\0') != std::string_view::npos);
}

void ReadPolyglotBook(const std::string& path) {
  const std::string reason = polyglot::ReadBook(path, book);
  if (!reason.empty()) SayInfo("cannot read the book file " + path + ": " + reason);
  if (book.left_over > 0 || !book.was_sorted) {
    SayInfo("the book file " + path + " is damaged: what can be used of it is");
  }
}

void ForgetPolyglotBook() { book = {}; }

bool HoldsPolyglotBook() { return book.Size() != 0; }

Move PolyglotMove(unsigned random) { return polyglot::DrawMove(polyglot::MovesHere(book), random); }

}  // namespace tarvyle::uci
