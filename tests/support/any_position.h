#pragma once

#include <functional>
#include <string>
#include <vector>

// Positions of every kind that a set-up accepts, likely or not, for tests that need many of them.

namespace tarvyle::support {

// Whether the tests may take their time: LONG_TESTS is set in the environment.
bool LongTests();

// How many cases a test takes, the usual number or, in long tests, all; a tenth of either where the
// build is instrumented.
int Scaled(int usual, int all);

// Positions at the limits: fifteen queens a side, pawns on the first and last row, kings in
// contact, the side not to move in check, bare kings, more captures than any game offers.
const std::vector<std::string>& ExtremePositions();

// Calls `visit` with `count` positions: random boards, each set up like a root, and what random
// moves above that root lead to, as a search meets them. The direction table changes from visit to
// visit. Ends at the first failure, with the position's text in its message.
void VisitTrees(unsigned seed, int count, const std::function<void()>& visit);

// The same for boards on which pawns meet and are about to promote, kings and rooks stand at home
// with every right, and double steps are common: each board, and what each of its pawns' double
// steps and some of its other moves lead to.
void VisitPawnBoards(unsigned seed, int count, const std::function<void()>& visit);

}  // namespace tarvyle::support
