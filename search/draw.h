#pragma once

namespace tarvyle {

// Whether the current position is a draw by the fifty-move rule or by repetition. The first earlier
// occurrence counts when it is the search root or lies inside the search, the second anywhere.
bool DrawByRule();

}  // namespace tarvyle
