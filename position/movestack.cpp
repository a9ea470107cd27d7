#include "position/movestack.h"

namespace tarvyle {

Move tree[kTreeSize];
int treeCnt[kMaxPly + 2];
int sort_val[kTreeSize];

}  // namespace tarvyle
