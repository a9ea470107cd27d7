#pragma once

namespace tarvyle {

// Cuts a text into tokens in place.
struct Tokenizer {
  bool delimiter[256];  // by byte value; the zero byte is never one
  char* cursor;         // what has not been cut yet
};

// Starts cutting `text` at runs of the characters in `delimiters`.
void InitToken(Tokenizer& state, char* text, const char* delimiters);

// The next token, ended by a zero written into the text, or null at the end of the text.
char* GetToken(Tokenizer& state);

}  // namespace tarvyle
