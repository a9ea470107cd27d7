#pragma once

#include <cstdint>

#include "base/path.h"
#include "book/epd.h"

// What the command front end knows of its process and of the program or person at the other end.

namespace tarvyle {

// Lives as long as the process. Flags are 0 or 1.
struct Console {
  // Modes, set by commands.
  int is_xboard = 0;     // "xboard" was read: a GUI is at the other end, for good
  int is_glintview = 0;  // "glintview" was read: position changes are announced, for good
  int stop = 0;          // force mode: 1 = the machine does not answer moves; "new" and "go" end it

  unsigned prev_inst = 0;         // previous-instance test at the start: 0 none, 1 unknown, 2 there
  int learn_file_stays = 0;       // 1: the learn file could not be read, and must not be replaced
  std::uint32_t cnt_warning = 0;  // how often "time" had to clamp the time per move

  char game_fname[kPathSize] = {};    // file of "save" and "load" without a name: the last one used
  char old_print_fen[kEpdSize] = {};  // position text announced last; "getboard" empties it

  bool operator==(const Console&) const = default;
};
inline Console console;

inline constexpr auto& is_xboard = console.is_xboard;
inline constexpr auto& is_glintview = console.is_glintview;
inline constexpr auto& stop = console.stop;
inline constexpr auto& prev_inst = console.prev_inst;
inline constexpr auto& learn_file_stays = console.learn_file_stays;
inline constexpr auto& cnt_warning = console.cnt_warning;
inline constexpr auto& game_fname = console.game_fname;
inline constexpr auto& old_print_fen = console.old_print_fen;

}  // namespace tarvyle
