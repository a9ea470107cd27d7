#pragma once

// The steps of the pieces, and the order in which they are gone through.

namespace tarvyle {

// The sixteen steps on the 16-wide board: 0-3 orthogonal, 4-7 diagonal, 8-15 knight jumps. The two
// tables hold the same steps in different order, which decides the order of generated moves.
extern const int dir_white[16];
extern const int dir_black[16];

// The direction table in use. Hidden input of GenerateCaptures (order of moves) and of king safety
// (ninth square of the king ring): whoever called Generate or set_dir last has chosen it.
extern const int* dir;

// Directions of each piece code: indexes d_start..d_stop into a direction table. Pawns and code 0
// have none.
inline constexpr int d_start[7] = {-1000, -1000, 8, 4, 0, 0, 0};
inline constexpr int d_stop[7] = {1000, 1000, 15, 7, 3, 7, 7};

// Selects the direction table of a colour: `dir_black` if `colour` is not 0.
void set_dir(int colour);

}  // namespace tarvyle
