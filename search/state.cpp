#include "search/state.h"

namespace tarvyle {

Move gl_find_move[kPlyArray];
Move killer[kPlyArray];
Move pv_killer[kPlyArray];
int cut_forse[kPlyArray];

int doNull = 0;
int doReduction = 0;
int search_tree_width_null_move_cut = 1;

int is_rnd_search = 0;

int s_depth = 0;
int root_side = White;
int root_mtl[2];

Move search_mv = 0;
int search_score = 0;
int search_depth = 0;
Move search_list[kRecordMoves + 1];
Key64 search_start_pos_key;

Move pv_line[kLineSize];
Queue pv_table = nullptr;

}  // namespace tarvyle
