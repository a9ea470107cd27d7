#include "position/legalfilter.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/any_position.h"
#include "tests/support/build_kind.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_moves.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::Below;
using support::CurrentList;
using support::PlainlyAttacked;
using support::PlainlyLegal;

class LegalFilterTest : public support::PositionTest {
 protected:
  // Holds every pseudo-legal move of the current position against making it and looking out from
  // the king, and counts by kind what was met.
  void Compare() {
    if (!Generate()) return;
    const bool in_check = PlainlyAttacked(g.king_sq[g.side], g.xside);
    if (in_check) ++met_["check"];
    const LegalFilter filter;
    for (const Move move : CurrentList()) {
      const bool legal = PlainlyLegal(move);
      ASSERT_EQ(filter.IsLegal(move), legal) << MoveToStr(move);
      Count(move, legal, in_check);
    }
  }

  void Count(Move move, bool legal, bool in_check) {
    const std::string verdict = legal ? "" : ", refused";
    if ((move & kEnPassant) != 0) {
      ++met_["en passant" + verdict];
    } else if ((move & kCastling) != 0) {
      ++met_["castling" + verdict];
    } else if ((move & kPromotion) != 0) {
      ++met_["promotion" + verdict];
    } else if (OriginOf(move) == g.king_sq[g.side]) {
      ++met_["king's move" + verdict];
    } else if (in_check) {
      if (legal) ++met_[(move & kCapture) != 0 ? "checker taken" : "check interposed"];
    } else {
      ++met_[legal ? "other" : "pinned"];
    }
  }

  void ExpectMet(const std::map<std::string, int>& least) {
    for (const auto& [kind, times] : least) {
      // Builds that check every step play too few games to meet the rare ones.
      EXPECT_GE(met_[kind], support::kSlowBuild ? 0 : times) << kind;
    }
  }

  std::map<std::string, int> met_;
};

TEST_F(LegalFilterTest, AgreesWithMakingEachMoveOfTheReferencePositions) {
  for (const auto& row : support::DataRows("movelists.tsv")) {
    SCOPED_TRACE(row[0]);
    support::SetUpPosition(row[0]);
    Compare();
  }
}

// A legal move, rather a rare one: en passant, castling, a promotion, a pawn's double step, a
// check.
Move LikelyMove(support::Random& random) {
  EXPECT_TRUE(LegalMoveList());
  const std::vector<Move> list = CurrentList();
  if (list.empty()) return 0;
  for (const Move move : list) {
    const bool special = (move & (kEnPassant | kCastling | kPromotion)) != 0;
    if (special && Below(random, 2) == 0) return move;
    const bool double_step = PieceOf(move) == Pawn && (OriginOf(move) - TargetOf(move)) % 16 == 0;
    if (double_step && Below(random, 8) == 0) return move;
  }
  return list[static_cast<std::size_t>(Below(random, static_cast<int>(list.size())))];
}

TEST_F(LegalFilterTest, AgreesWithMakingEachMoveOfRandomGames) {
  support::Random random(83);
  for (int games = support::Scaled(300, 5000); games > 0 && !HasFailure(); --games) {
    ASSERT_TRUE(InitNewGame());
    for (int moves = 0; moves < 160 && !HasFailure(); ++moves) {
      SCOPED_TRACE("move " + std::to_string(moves) + " of a random game");
      Compare();
      const Move move = LikelyMove(random);
      if (move == 0) break;
      ASSERT_TRUE(InsertMoveInGame(move, 0));
    }
  }
  ExpectMet({{"check", 1000},
             {"checker taken", 300},
             {"check interposed", 500},
             {"pinned", 3000},
             {"king's move, refused", 3000},
             {"promotion", 1000},
             {"promotion, refused", 20},
             {"castling", 300},
             {"castling, refused", 30},
             {"en passant", 200},
             {"other", 100000}});
}

TEST_F(LegalFilterTest, AgreesWithMakingEachMoveWherePawnsMeetAndKingsCanCastle) {
  support::VisitPawnBoards(85, support::Scaled(30000, 600000), [&] { Compare(); });
  ExpectMet({{"pinned", 1000},
             {"checker taken", 500},
             {"check interposed", 500},
             {"promotion", 5000},
             {"promotion, refused", 500},
             {"castling", 1500},
             {"castling, refused", 500},
             {"en passant", 1000},
             {"en passant, refused", 25}});
}

TEST_F(LegalFilterTest, AgreesWithMakingEachMoveAboveRandomBoards) {
  support::VisitTrees(84, support::Scaled(10000, 500000), [&] { Compare(); });
  ExpectMet({{"check", 500}, {"pinned", 500}, {"promotion, refused", 100}});
}

struct EnPassantRow {
  const char* reason;
  const char* text;
  const char* move;
  bool legal;
};

TEST_F(LegalFilterTest, OfEnPassantCountsBothPawnsThatLeaveTheirSquares) {
  const EnPassantRow rows[] = {
      {"both on the king's row before a rook", "7k/8/8/K2pP2r/8/8/8/8 w - d6", "e5d6", false},
      {"a third pawn on that row", "7k/8/8/KP1pP2r/8/8/8/8 w - d6", "e5d6", true},
      {"the taken pawn shields from a bishop", "7k/8/b7/1p6/P1pP4/8/8/5K2 b - d3", "c4d3", true},
      {"the king behind the taken pawn", "7k/8/8/8/1K1pP3/8/8/8 b - e3", "d4e3", true},
      {"a bishop behind the taken pawn", "7k/b7/8/2pP4/8/4K3/8/8 w - c6", "d5c6", false},
      {"the capturing pawn pinned along the capture", "7k/1b6/8/2pP4/4K3/8/8/8 w - c6", "d5c6",
       true},
      {"the capturing pawn pinned across it", "3r3k/8/8/2pP4/8/8/8/3K4 w - c6", "d5c6", false},
      {"it takes the checking pawn", "7k/8/8/2pP4/1K6/8/8/8 w - c6", "d5c6", true},
      {"it interposes", "7k/8/2r5/1pP5/8/K7/8/8 w - b6", "c5b6", true},
      {"another piece checks", "7k/8/8/1pP5/8/8/8/K6r w - b6", "c5b6", false},
  };
  for (const EnPassantRow& row : rows) {
    SCOPED_TRACE(row.reason);
    support::SetUpPosition(row.text);
    ASSERT_TRUE(Generate());
    const LegalFilter filter;
    const Move move = CurrentList().at(0);
    ASSERT_EQ(MoveToStr(move), std::string(row.move));
    ASSERT_NE(move & kEnPassant, 0u);
    EXPECT_EQ(filter.IsLegal(move), row.legal);
    EXPECT_EQ(PlainlyLegal(move), row.legal);
  }
}

}  // namespace
}  // namespace tarvyle
