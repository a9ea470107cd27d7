#pragma once

#include <string>
#include <string_view>

// The commands of the engine protocol and the console.

namespace tarvyle {

// One line of input on its way through the command table.
struct Command {
  const char* line;       // as read, up to its first zero
  std::string token;      // first token
  std::string_view rest;  // what follows it

  // Takes the next token of the line; empty when there is none.
  std::string NextArgument();
};

// Cuts the first token off a line; it is empty when the line has none.
Command ReadCommand(const char* line);

// Runs the first row of the command table that takes the line. The last row takes everything.
void Dispatch(Command& command);

}  // namespace tarvyle
