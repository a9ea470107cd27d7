#pragma once

#include <cstdint>

#include "base/path.h"
#include "book/epd.h"

// State of the command front end.

namespace tarvyle {

// Modes, set by commands.
inline int is_xboard = 0;     // "xboard" was read: a GUI is at the other end, for good
inline int is_glintview = 0;  // "glintview" was read: position changes are announced, for good
inline int stop = 0;  // force mode: 1 = the machine does not answer moves; "new" and "go" end it

inline unsigned prev_inst = 0;    // previous-instance test at the start: 0 none, 1 unknown, 2 there
inline int learn_file_stays = 0;  // 1: the learn file could not be read, and must not be replaced
inline std::uint32_t cnt_warning = 0;  // how often "time" had to clamp the time per move

inline char game_fname[kPathSize];    // file of "save" and "load" without a name: the last one used
inline char old_print_fen[kEpdSize];  // position text announced last; "getboard" empties it

}  // namespace tarvyle
