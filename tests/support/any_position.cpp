#include "tests/support/any_position.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
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

// At most sixteen men a side.
bool HasRoom(const std::string& fen) {
  int men[2] = {};
  for (const char letter : fen.substr(0, fen.find(' '))) {
    if (letter >= 'a') ++men[Black];
    if (letter >= 'A' && letter <= 'Z') ++men[White];
  }
  return men[White] <= 16 && men[Black] <= 16;
}

// A home row, or none: the king is then among the pawns on the row from which they take in passing.
std::string HomeRow(Random& random) {
  static constexpr std::array<const char*, 6> kHomes = {"r3k2r", "r3k3",   "4k2r",
                                                        "2k5",   "r2qk2r", ""};
  return kHomes[Below(random, 6)];
}

// Few men on each row, of those that lead to something there.
std::string PawnBoard(Random& random) {
  std::string white = HomeRow(random);
  for (char& letter : white) {
    if (letter >= 'a') letter = static_cast<char>(letter - 'a' + 'A');
  }
  const std::string black = HomeRow(random);
  std::string rows[6];
  static constexpr std::array<const char*, 6> kMen = {"ppppppP111", "11111pn111", "11111PPPrq",
                                                      "11111pppRQ", "1111111PN1", "PPPPPPp111"};
  for (int row = 0; row < 6; ++row) {
    for (int file = 0; file < 8; ++file) rows[row] += kMen[row][Below(random, 10)];
  }
  if (white.empty()) rows[2][Below(random, 8)] = 'K';
  if (black.empty()) rows[3][Below(random, 8)] = 'k';
  std::string fen = black.empty() ? "8" : black;
  for (const std::string& row : rows) fen += '/' + row;
  return fen + '/' + (white.empty() ? "8" : white) + (Below(random, 2) == 0 ? " w" : " b") +
         " KQkq -";
}

bool IsDoubleStep(Move move) {
  return PieceOf(move) == Pawn && (OriginOf(move) - TargetOf(move)) % 16 == 0;
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

void VisitPawnBoards(unsigned seed, int count, const std::function<void()>& visit) {
  Random random(seed);
  while (count > 0) {
    const std::string fen = PawnBoard(random);
    if (!HasRoom(fen)) continue;
    SetUpRoot(fen);
    const bool legal = Generate();
    const std::vector<Move> list(tree, tree + (legal ? treeCnt[1] : 0));
    visit();
    --count;
    for (const Move move : list) {
      if (count == 0 || testing::Test::HasFailure()) break;
      if (!IsDoubleStep(move) && Below(random, 8) != 0) continue;
      MakeMove(move);
      visit();
      --count;
      if (testing::Test::HasFailure()) ADD_FAILURE() << "after " << MoveToStr(move);
      UnMakeMove(move);
    }
    if (testing::Test::HasFailure()) {
      ADD_FAILURE() << fen;
      return;
    }
  }
}

}  // namespace tarvyle::support
