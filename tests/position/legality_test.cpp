#include "position/legality.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "position/makemove.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class LegalityTest : public support::PositionTest {};

// As the search finds it out: castling is looked at first, any other move is made, and the
// generator then refuses a position in which the king can be captured.
TEST_F(LegalityTest, AgreesWithMakingEachMoveAndAskingTheGenerator) {
  for (const auto& row : support::DataRows("movelists.tsv")) {
    support::SetUpPosition(row[0]);
    ASSERT_TRUE(Generate());
    const Legality legality;
    for (const Move move : support::CurrentList()) {
      bool expected = (move & kCastling) == 0 || LegalCastl(move);
      if (expected) {
        MakeMove(move);
        expected = Generate();
        UnMakeMove(move);
      }
      EXPECT_EQ(legality.IsLegal(move), expected) << row[0] << ' ' << MoveToStr(move);
    }
  }
}

}  // namespace
}  // namespace tarvyle
