// Both generators against a plain walk over the board, in exact order, in positions of every kind.

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/any_position.h"
#include "tests/support/build_kind.h"
#include "tests/support/plain_moves.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::CurrentList;
using support::ListText;
using Listed = std::optional<std::vector<Move>>;

// What has been met, by kind.
class MoveListsTest : public support::PositionTest {
 protected:
  static Listed ListOf(bool (*generate)()) {
    return generate() ? std::optional(CurrentList()) : std::nullopt;
  }

  // Compares the lists of the current position, whatever direction table is in use before. The
  // table is as before afterwards.
  void Compare() {
    const int table = dir == dir_black ? Black : White;
    for (const int other : {White, Black}) {
      set_dir(other);
      const Listed captures = ListOf(GenerateCaptures);
      ASSERT_EQ(captures, support::PlainCaptures(other))
          << "captures under table " << other << ": " << (captures ? ListText(*captures) : "");
      ASSERT_EQ(dir == dir_black ? Black : White, other) << "the table in use stays";
      if (captures && other != g.side && captures->size() > 1) ++met_["other side's table"];
    }
    for (const int before : {White, Black}) {
      set_dir(before);
      const Listed moves = ListOf(Generate);
      ASSERT_EQ(moves, support::PlainMoves()) << (moves ? ListText(*moves) : "");
      if (before == White) Count(moves);
    }
    set_dir(table);
  }

  void Count(const Listed& moves) {
    if (!moves) {
      ++met_["illegal"];
      return;
    }
    int takes_in_passing = 0;
    for (const Move move : *moves) {
      if ((move & kCapture) != 0) ++met_["capture"];
      if ((move & kPromotion) != 0) ++met_["promotion"];
      if ((move & kPromotion) != 0 && (move & kCapture) != 0) ++met_["promotion with capture"];
      if ((move & kShortCastling) != 0) ++met_["short castling"];
      if ((move & kLongCastling) != 0) ++met_["long castling"];
      takes_in_passing += (move & kEnPassant) != 0 ? 1 : 0;
    }
    if (takes_in_passing > 0) ++met_["en passant"];
    if (takes_in_passing > 1) ++met_["en passant from both sides"];
  }

  void ExpectMet(const std::map<std::string, int>& least) {
    for (const auto& [kind, times] : least) {
      EXPECT_GE(met_[kind], support::kSlowBuild ? 1 : times) << kind;
    }
  }

  std::map<std::string, int> met_;
};

TEST_F(MoveListsTest, AreThoseOfAPlainWalkAboveRandomBoards) {
  support::VisitTrees(81, support::Scaled(20000, 1000000), [&] { Compare(); });
  ExpectMet({{"other side's table", 5000},
             {"illegal", 500},
             {"capture", 20000},
             {"promotion", 3000},
             {"promotion with capture", 500}});
}

TEST_F(MoveListsTest, AreThoseOfAPlainWalkAtTheLimits) {
  for (const std::string& fen : support::ExtremePositions()) {
    SCOPED_TRACE(fen);
    support::SetUpPosition(fen);
    Compare();
  }
}

TEST_F(MoveListsTest, AreThoseOfAPlainWalkWherePawnsMeetAndKingsCanCastle) {
  support::VisitPawnBoards(82, support::Scaled(30000, 600000), [&] { Compare(); });
  ExpectMet({{"other side's table", 5000},
             {"promotion", 5000},
             {"promotion with capture", 2000},
             {"short castling", 1500},
             {"long castling", 1500},
             {"en passant", 1500},
             {"en passant from both sides", 80}});
}

TEST_F(MoveListsTest, AreThoseOfAPlainWalkForASetUpsEnPassantSquare) {
  for (const char* text : {"4k3/8/8/3PpP2/8/8/8/4K3 w - e6", "4k3/8/8/8/pPp5/8/8/4K3 b - b3",
                           "4k3/8/8/6Pp/8/8/8/4K3 w - h6", "4k3/8/8/8/Pp6/8/8/4K3 b - a3"}) {
    SCOPED_TRACE(text);
    support::SetUpPosition(text);
    Compare();
  }
  ExpectMet({{"en passant", 4}, {"en passant from both sides", 2}});
}

}  // namespace
}  // namespace tarvyle
