#include "book/tokenizer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvyle {
namespace {

using Tokens = std::vector<std::string>;

Tokens Cut(std::string text, const char* delimiters) {
  Tokenizer state;
  InitToken(state, text.data(), delimiters);
  Tokens tokens;
  while (const char* token = GetToken(state)) tokens.emplace_back(token);
  EXPECT_EQ(GetToken(state), nullptr) << "the end stays the end";
  return tokens;
}

struct CutRow {
  const char* text;
  const char* delimiters;
  Tokens tokens;
};

TEST(Tokenizer, CutsAtRunsOfDelimiters) {
  constexpr const char* kOfBook = " !?#,;\r\n";
  const CutRow rows[] = {
      {"", kOfBook, {}},
      {" ,;!?#\r\n", kOfBook, {}},
      {"e2e4", kOfBook, {"e2e4"}},
      {"e2e4\r\n", kOfBook, {"e2e4"}},
      {"  e2e4 e7e5", kOfBook, {"e2e4", "e7e5"}},
      {"e2e4! e7e5!? g1f3,,b8c6;# f1b5", kOfBook, {"e2e4", "e7e5", "g1f3", "b8c6", "f1b5"}},
      {"e2e4\te7e5", kOfBook, {"e2e4\te7e5"}},
      {"one two", "", {"one two"}},
      {"aXbXXc", "X", {"a", "b", "c"}},
  };
  for (const CutRow& row : rows) EXPECT_EQ(Cut(row.text, row.delimiters), row.tokens) << row.text;
}

TEST(Tokenizer, TakesEveryByteValueAsADelimiterButZero) {
  for (int byte = 1; byte < 256; ++byte) {
    const char delimiter[2] = {static_cast<char>(byte), '\0'};
    const char letter = byte == 'a' ? 'b' : 'a';
    EXPECT_EQ(Cut(std::string{letter} + delimiter + letter, delimiter),
              (Tokens{std::string{letter}, std::string{letter}}))
        << byte;
  }
  Tokenizer state;
  char text[] = "x";
  InitToken(state, text, " ");
  EXPECT_FALSE(state.delimiter[0]);
}

TEST(Tokenizer, ClearsOldDelimitersWhenItStartsAnew) {
  Tokenizer state;
  char first[] = "a,b";
  InitToken(state, first, ",");
  EXPECT_STREQ(GetToken(state), "a");
  char second[] = "a,b c";
  InitToken(state, second, " ");
  EXPECT_STREQ(GetToken(state), "a,b");
  EXPECT_STREQ(GetToken(state), "c");
  EXPECT_EQ(GetToken(state), nullptr);
}

TEST(Tokenizer, WritesAZeroBehindEachTokenInPlace) {
  char text[] = "ab,,cd";
  Tokenizer state;
  InitToken(state, text, ",");
  EXPECT_EQ(GetToken(state), text);
  EXPECT_EQ(text[2], '\0');
  EXPECT_EQ(text[3], ',');
  EXPECT_EQ(GetToken(state), text + 4);
}

}  // namespace
}  // namespace tarvyle
