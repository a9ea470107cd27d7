#pragma once

#include <cstdint>

#include "base/path.h"
#include "book/epd.h"

// State of the command front end.

namespace tarvyle {

extern unsigned prev_inst;         // previous-instance test: 0 none, 1 unknown, 2 another one runs
extern int is_xboard;              // "xboard" was read: a GUI is at the other end, for good
extern int is_glintview;           // "glintview" was read: position changes are announced, for good
extern int stop;                   // force mode: 1 = the machine does not answer moves
extern std::uint32_t cnt_warning;  // how often "time" had to clamp the time per move
extern char game_fname[kPathSize];    // file of "save" and "load" without a name
extern char old_print_fen[kEpdSize];  // last position text announced

}  // namespace tarvyle
