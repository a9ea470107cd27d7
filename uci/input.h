#pragma once

#include <string>

// The lines that come from the GUI, also those that come while the engine thinks.

namespace tarvyle::uci {

// Reads lines from this file descriptor from now on; forgets all that came before.
void ListenTo(int descriptor);

// Waits for the next line, without its end. False at the end of the input.
bool NextLine(std::string& line);

// What has been asked for since the last search began: set by the two procedures below, emptied by
// whoever begins to search.
struct Interruption {
  bool stop = false;  // by "stop", "quit" or the end of the input
  bool quit = false;  // by "quit"
};
extern Interruption interruption;

// Obeys the lines that have come, up to one that stops the search: "isready" is answered, "stop"
// and "quit" are noted, all others are kept for NextLine. Never waits.
void HearWhileThinking();

// The same, but waits until `interruption.stop` is set.
void WaitForStop();

}  // namespace tarvyle::uci
