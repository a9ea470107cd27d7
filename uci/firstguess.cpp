#include "uci/firstguess.h"

#include <limits>

#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "position/attack.h"
#include "position/directions.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/record.h"
#include "position/score.h"

namespace tarvyle::uci {

namespace {

// For the side that has just moved.
int ScoreAfterMove() {
  const bool legal = LegalMoveList();
  if (legal && ListLength() == 0) return Check() ? -kMated : 0;
  return -Evaluate(-kInfinity, kInfinity);
}

}  // namespace

Move FirstGuess(const std::vector<Move>& moves) {
  set_dir(g.side);
  InitEvaluate();
  Move best = 0;
  int best_score = std::numeric_limits<int>::min();
  for (const Move move : moves) {
    MakeMove(move);
    const int score = ScoreAfterMove();
    UnMakeMove(move);
    if (score <= best_score) continue;
    best_score = score;
    best = move;
  }
  return best;
}

}  // namespace tarvyle::uci
