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

// While it lives, each line of the engine's own messages is said as "info string".
class MessagesAsInfo {
 public:
  MessagesAsInfo();
  ~MessagesAsInfo();
  MessagesAsInfo(const MessagesAsInfo&) = delete;
  MessagesAsInfo& operator=(const MessagesAsInfo&) = delete;

 private:
  void (*outside_)(std::string_view);  // who received them before
};

}  // namespace tarvyle::uci
