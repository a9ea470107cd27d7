#pragma once

namespace tarvyle {

// Cuts a text into tokens in place, so that each can be handed on as a C string (NextToken of
// base/token.h cuts a view and leaves the text alone).
struct Tokenizer {
  bool delimiter[256];  // by byte value; the zero byte is never one
  char* cursor;         // what has not been cut yet
};

// Starts cutting `text` at runs of the characters in `delimiters`.
void InitToken(Tokenizer& state, char* text, const char* delimiters);

// The next token, ended by a zero written into the text, or null at the end of the text.
char* GetToken(Tokenizer& state);

}  // namespace tarvyle
