#include "position/directions.h"

#include "position/types.h"

namespace tarvyle {

const int dir_white[16] = {-16, -1, 16, 1, -17, -15, 17, 15, -33, 33, -31, 31, -18, 18, -14, 14};
const int dir_black[16] = {1, 16, -1, -16, 15, 17, -15, -17, 14, -14, 18, -18, 31, -31, 33, -33};

const int* dir = dir_white;

void set_dir(int colour) { dir = colour != White ? dir_black : dir_white; }

}  // namespace tarvyle
