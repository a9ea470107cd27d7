#pragma once

#include <string>

namespace tarvyle::uci {

// The options that the engine itself has no place for.
struct Settings {
  bool own_book = false;
  std::string book_file;     // "": none, also for the next two
  std::string learn_file;    // read at the start of a game, never written
  std::string learn_output;  // gets a record of every result
  int move_overhead = 10;    // milliseconds that a move loses on its way
  unsigned seed = 0;         // of the random generator; 0: the time
};
inline Settings settings;  // written by options.cpp alone

}  // namespace tarvyle::uci
