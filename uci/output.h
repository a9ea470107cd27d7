#pragma once

#include <string_view>

// What goes to the GUI: whole lines, written at once.

namespace tarvyle::uci {

// Writes the lines to this file descriptor from now on.
void SayTo(int descriptor);

// Writes one line. A reader that has gone away is none of its business.
void Say(std::string_view line);

// Writes "info string" and the text, with a blank in place of every byte that is no printable ASCII
// character, cut after 300 characters.
void SayInfo(std::string_view text);

// While it lives, what the engine's own procedures print on standard output is held back.
class HeldWords {
 public:
  HeldWords();
  ~HeldWords();
  HeldWords(const HeldWords&) = delete;
  HeldWords& operator=(const HeldWords&) = delete;

 private:
  int outside_;  // the standard output proper
};

// Passes on what has been held back, each line by `say`.
void PassOnWords(void (*say)(std::string_view));

// Drops what has been held back.
void DropWords();

}  // namespace tarvyle::uci
