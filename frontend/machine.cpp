#include "frontend/machine.h"

#include <cstdio>

#include "frontend/console.h"
#include "frontend/display.h"
#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/text.h"
#include "position/types.h"
#include "search/root.h"
#include "search/state.h"

namespace tarvyle {

namespace {

constexpr int kQueenDown = -10000;
constexpr int kFallsToResign = 4;  // resigned exactly then: a longer run has been played on before

bool Falls(int index, int limit) {
  const int before = g.game_score[index - 2];
  return g.game_score[index] < before && before <= limit;
}

void AnnounceMove(Move move) {
  if (is_glintview != 0) {
    print_board();
  } else if (is_xboard == 0) {
    show_board();
  }
  std::printf("move %s\n", MoveToStr(move));
}

}  // namespace

int Resigns(int index, int limit) {
  int falls = 0;
  for (; index >= 2 && Falls(index, limit); index -= 2) ++falls;
  return falls;
}

bool move_machine() {
  Move move = 0;
  if (!SearchMove(move) || !InsertMoveInGame(move, search_score)) {
    std::puts("the end");
    return false;
  }
  AnnounceMove(move);
  if (Resigns(g.game_len - 1, kQueenDown) == kFallsToResign) {
    std::puts("computer resigns");
    return true;
  }
  // Mate and stalemate alike.
  if (!LegalMoveList() || ListLength() == 0) {
    std::puts("the end");
    return true;
  }
  if (is_xboard == 0 && Check()) std::puts("check");
  return true;
}

}  // namespace tarvyle
