#include "tests/support/any_position.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "position/directions.h"
#include "position/makemove.h"
#include "position/movegen.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"
#include "tests/support/build_kind.h"
#include "tests/support/eval_support.h"

namespace tarvyle::support {

namespace {

constexpr int kShare = kSlowBuild ? 10 : 1;

constexpr int kMovesAboveRoot = 16;

// The moves above the root, each followed by a blank.
std::string PathText() {
  std::string text;
  for (int i = 0; i < ply; ++i) text += std::string(MoveToStr(g.game_moves[g.game_len + i])) + ' ';
  return text;
}

// Not every root gets tables of its own: a search, too, meets positions far from its root's
// material.
void SetUp(const std::string& fen, bool with_tables) {
  if (with_tables) {
    SetUpRoot(fen);
  } else {
    ASSERT_TRUE(InitGame(fen.c_str())) << fen;
    set_dir(g.side);
  }
}

}  // namespace

bool LongTests() { return std::getenv("LONG_TESTS") != nullptr; }

int Scaled(int usual, int all) { return std::max((LongTests() ? all : usual) / kShare, 1); }

const std::vector<std::string>& ExtremePositions() {
  static const std::vector<std::string> positions = {
      // Fifteen queens a side: lined up, mixed, and with the longest list that a game could have.
      "QQQQQQQQ/QQQQQQQ1/8/8/4k3/8/qqqqqqqq/qqqqqqqK w - -",
      "QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQ2/8/8/8/K6k w - -",
      "QqQqQqQq/qQqQqQqQ/QqQqQqQq/qQqQqQ2/8/8/8/K6k b - -",
      "Q2Q2Q1/2Q3Q1/Q3Q2Q/2Q4Q/pQ2Q2Q/kp1Q2Q1/pp6/4K3 w - -",
      "R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - -",
      // Everything can capture, and promotes by it.
      "nbrqnbrq/P1P1P1P1/rbnqrbn1/1Q1Q1Q1Q/8/Q6Q/8/K6k w - -",
      "1n1b1r1q/P1P1P1P1/8/1q1q1k1q/1Q1Q1K1Q/8/p1p1p1p1/1N1B1R1Q b - -",
      // Fifteen of a kind.
      "nnnnnnnn/nnnnnnn1/k7/8/8/7K/NNNNNNNN/NNNNNNN1 w - -",
      "bbbbbbbb/bbbbbbb1/k7/8/8/7K/BBBBBBBB/BBBBBBB1 b - -",
      "rrrrrrrr/rrrrrrr1/k7/8/8/7K/RRRRRRRR/RRRRRRR1 w - -",
      "kppppppp/pppppppp/8/8/8/8/PPPPPPPP/KPPPPPPP w - -",
      "K1P1P1P1/PPPPPPPP/PPPP4/8/8/4pppp/pppppppp/k1p1p1p1 b - -",
      // Pawns on their last row and on their first.
      "PPPPPPPP/8/8/4k3/8/4K3/8/pppppppp w - -",
      "pppppppp/PPPPPPPk/8/8/8/8/ppppppp1/PPPPPPPK b - -",
      // Kings in contact, and kings that can be captured.
      "8/8/8/3kK3/8/8/8/8 w - -",
      "8/8/3qR3/3kK3/3rQ3/8/8/8 b - -",
      "4k3/8/8/8/8/8/4R3/4K3 w - -",
      "4k3/4q3/8/1b5n/8/8/3P4/4K2R b K -",
      // Next to nothing, and rights without a rook.
      "k7/8/8/8/8/8/8/7K w - -",
      "8/8/8/3k4/8/3K4/8/8 b KQkq -",
      "k7/8/1Q6/8/8/8/8/7K b - -",
      "7k/6Q1/6K1/8/8/8/8/8 b - -",
      "k7/p7/P7/8/8/p7/P7/K7 w - -",
      "4k3/1p1p1p1p/1P1P1P1P/8/8/1p1p1p1p/1P1P1P1P/4K3 w - -",
      // Ordinary ones.
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq -",
      "8/2p5/3p4/1P5r/K4pP1/7k/4P3/R7 b - g3",
  };
  return positions;
}

void VisitTrees(unsigned seed, int count, const std::function<void()>& visit) {
  Random random(seed);
  SetUpRoot(RandomBoard(random));
  while (count > 0) {
    const std::string fen = RandomBoard(random);
    SetUp(fen, Below(random, 4) == 0);
    for (int i = 0; i <= kMovesAboveRoot && count > 0; ++i, --count) {
      const bool has_moves = Generate() && treeCnt[ply + 1] > treeCnt[ply];
      if (Below(random, 2) == 0) set_dir(1 - g.side);
      visit();
      if (testing::Test::HasFailure()) {
        ADD_FAILURE() << fen << " moves " << PathText();
        return;
      }
      if (!has_moves) break;
      MakeMove(tree[treeCnt[ply] + Below(random, treeCnt[ply + 1] - treeCnt[ply])]);
    }
    while (ply > 0) UnMakeMove(LastMove());
  }
}

}  // namespace tarvyle::support
