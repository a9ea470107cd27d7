#pragma once

#include <string>
#include <string_view>

// What the GUI may set.

namespace tarvyle::tools {

// The options that the engine itself has no place for.
struct Settings {
  bool own_book = false;
  std::string book_file;     // "": none, also for the next two
  std::string learn_file;    // read at the start of a game, never written
  std::string learn_output;  // gets a record of every result
  int move_overhead = 10;    // milliseconds that a move loses on its way
  unsigned seed = 0;         // of the random generator; 0: the time
};
extern Settings settings;

// Gives all options the values that they have at the start.
void ResetOptions();

// Declares every option.
void SayOptions();

// Obeys what follows "setoption". A name or value that does not fit is reported and changes
// nothing.
void ObeySetOption(std::string_view words);

}  // namespace tarvyle::tools
