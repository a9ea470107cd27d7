#pragma once

#include <cstdint>

#include "base/path.h"
#include "book/epd.h"

// State of the command front end.

namespace tarvyle {

// Modes, set by commands.
extern int is_xboard;     // "xboard" was read: a GUI is at the other end, for good
extern int is_glintview;  // "glintview" was read: position changes are announced, for good
extern int stop;  // force mode: 1 = the machine does not answer moves; "new" and "go" end it

extern unsigned prev_inst;  // previous-instance test at the start: 0 none, 1 unknown, 2 there
extern std::uint32_t cnt_warning;  // how often "time" had to clamp the time per move

extern char game_fname[kPathSize];    // file of "save" and "load" without a name: the last one used
extern char old_print_fen[kEpdSize];  // position text announced last; "getboard" empties it

}  // namespace tarvyle
