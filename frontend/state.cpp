#include "frontend/state.h"

namespace tarvyle {

unsigned prev_inst = 0;
int is_xboard = 0;
int is_glintview = 0;
int stop = 0;
std::uint32_t cnt_warning = 0;
char game_fname[kPathSize];
char old_print_fen[kEpdSize];

}  // namespace tarvyle
