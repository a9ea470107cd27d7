#include "base/token.h"

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

namespace tarvyle {
namespace {

std::vector<std::string> Tokens(std::string_view text, std::string_view delimiters) {
  std::vector<std::string> tokens;
  for (auto token = NextToken(text, delimiters); !token.empty();
       token = NextToken(text, delimiters)) {
    tokens.emplace_back(token);
  }
  return tokens;
}

std::vector<std::string> TokensOfLibrary(std::string text, const char* delimiters) {
  std::vector<std::string> tokens;
  for (char* token = std::strtok(text.data(), delimiters); token != nullptr;
       token = std::strtok(nullptr, delimiters)) {
    tokens.emplace_back(token);
  }
  return tokens;
}

TEST(Token, RunsOfDelimitersSeparateTokens) {
  EXPECT_EQ(Tokens("  one \n two\n", " \n"), (std::vector<std::string>{"one", "two"}));
}

TEST(Token, TextWithoutDelimiterIsOneToken) {
  EXPECT_EQ(Tokens("one\ttwo", " \n"), (std::vector<std::string>{"one\ttwo"}));
}

TEST(Token, NothingIsLeftOfEmptyTextAndOfDelimitersAlone) {
  for (const char* text : {"", " ", " \n \n"}) {
    std::string_view rest = text;
    EXPECT_TRUE(NextToken(rest, " \n").empty());
    EXPECT_TRUE(rest.empty());
  }
}

TEST(Token, TheRestStartsBehindOneDelimiter) {
  std::string_view rest = "one  two";
  EXPECT_EQ(NextToken(rest, " "), "one");
  EXPECT_EQ(rest, " two");
}

TEST(Token, TheRestIsEmptyBehindTheLastToken) {
  std::string_view rest = "one";
  EXPECT_EQ(NextToken(rest, " "), "one");
  EXPECT_TRUE(rest.empty());
}

TEST(Token, CutsAsStrtokDoes) {
  std::mt19937 random(1);
  for (int round = 0; round < 2000; ++round) {
    std::string text;
    for (auto length = random() % 20; length > 0; --length) text += "ab=\"\n "[random() % 6];
    EXPECT_EQ(Tokens(text, "=\""), TokensOfLibrary(text, "=\"")) << text;
    EXPECT_EQ(Tokens(text, " \n"), TokensOfLibrary(text, " \n")) << text;
  }
}

}  // namespace
}  // namespace tarvyle
