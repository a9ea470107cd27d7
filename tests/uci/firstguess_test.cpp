// The move that is played when no search was possible.

#include "uci/firstguess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "position/legal.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/text.h"
#include "tests/support/uci_support.h"
#include "uci/place.h"

namespace tarvyle::uci {

using namespace support;

namespace {

class FirstSight : public UciTest {
 protected:
  // The guess among the named moves, or all.
  std::string Guess(const std::string& fen, const std::vector<std::string>& names = {}) {
    EXPECT_EQ(Said([&] { ObeyPosition("fen " + fen); }), Lines());
    EXPECT_TRUE(LegalMoveList());
    std::vector<Move> moves(tree, tree + ListLength());
    if (!names.empty()) {
      std::erase_if(moves, [&](Move move) {
        return std::find(names.begin(), names.end(), MoveToStr(move)) == names.end();
      });
    }
    const GameRecord before = g;
    const Move move = FirstGuess(moves);
    EXPECT_EQ(g.key.low, before.key.low);
    EXPECT_EQ(g.game_len, before.game_len);
    EXPECT_EQ(ply, 0);
    return move == 0 ? "none" : MoveToStr(move);
  }
};

TEST_F(FirstSight, TakesWhatHangs) {
  EXPECT_EQ(Guess("4k3/pp6/8/3q4/4P3/8/PP6/4K3 w - - 0 1"), "e4d5");
  EXPECT_EQ(Guess("4k3/pp6/8/3p4/4Q3/8/PP6/4K3 b - - 0 1"), "d5e4");
}

TEST_F(FirstSight, SeesMateAndStalemate) {
  EXPECT_EQ(Guess("6k1/5ppp/8/8/8/8/8/R6K w - - 0 1"), "a1a8");
  EXPECT_EQ(Guess("7k/8/6K1/8/8/8/5Q2/8 w - - 0 1", {"f2f7", "f2e2"}), "f2e2");
}

TEST_F(FirstSight, KeepsToTheMovesThatAreAsked) {
  EXPECT_EQ(Guess("4k3/pp6/8/3q4/4P3/8/PP6/4K3 w - - 0 1", {"a2a3"}), "a2a3");
}

}  // namespace

}  // namespace tarvyle::uci
