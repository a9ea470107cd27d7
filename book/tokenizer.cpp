#include "book/tokenizer.h"

#include <cstring>

namespace tarvyle {

namespace {

bool IsDelimiter(const Tokenizer& state, char c) {
  return state.delimiter[static_cast<unsigned char>(c)];
}

}  // namespace

void InitToken(Tokenizer& state, char* text, const char* delimiters) {
  std::memset(state.delimiter, 0, sizeof state.delimiter);
  for (; *delimiters != '\0'; ++delimiters) {
    state.delimiter[static_cast<unsigned char>(*delimiters)] = true;
  }
  state.cursor = text;
}

char* GetToken(Tokenizer& state) {
  while (IsDelimiter(state, *state.cursor)) ++state.cursor;
  if (*state.cursor == '\0') return nullptr;
  char* token = state.cursor;
  while (*state.cursor != '\0' && !IsDelimiter(state, *state.cursor)) ++state.cursor;
  if (*state.cursor != '\0') *state.cursor++ = '\0';
  return token;
}

}  // namespace tarvyle
