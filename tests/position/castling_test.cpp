#include "position/castling.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>

#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

class CastlingTest : public support::PositionTest {};

constexpr std::uint32_t kWhiteLong = 1;
constexpr std::uint32_t kWhiteShort = 2;
constexpr std::uint32_t kBlackLong = 4;
constexpr std::uint32_t kBlackShort = 8;

struct RightsRow {
  const char* meaning;
  const char* fen;
  std::uint32_t standing;
};

TEST_F(CastlingTest, RightsStandWhileKingAndRookAreAtHome) {
  const RightsRow rows[] = {
      {"all", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq",
       kWhiteLong | kWhiteShort | kBlackLong | kBlackShort},
      {"none held", "r3k2r/8/8/8/8/8/8/R3K2R w -", 0},
      {"White's long one held", "r3k2r/8/8/8/8/8/8/R3K2R w Q", kWhiteLong},
      {"White's short one held", "r3k2r/8/8/8/8/8/8/R3K2R w K", kWhiteShort},
      {"Black's long one held", "r3k2r/8/8/8/8/8/8/R3K2R w q", kBlackLong},
      {"Black's short one held", "r3k2r/8/8/8/8/8/8/R3K2R w k", kBlackShort},
      {"no rook on a1", "r3k2r/8/8/8/8/8/8/4K2R w KQkq", kWhiteShort | kBlackLong | kBlackShort},
      {"no rook on h1", "r3k2r/8/8/8/8/8/8/R3K3 w KQkq", kWhiteLong | kBlackLong | kBlackShort},
      {"no rook on a8", "4k2r/8/8/8/8/8/8/R3K2R w KQkq", kWhiteLong | kWhiteShort | kBlackShort},
      {"no rook on h8", "r3k3/8/8/8/8/8/8/R3K2R w KQkq", kWhiteLong | kWhiteShort | kBlackLong},
      {"White's king beside", "r3k2r/8/8/8/8/8/8/R2K3R w KQkq", kBlackLong | kBlackShort},
      {"Black's king beside", "r4k1r/8/8/8/8/8/8/R3K2R w KQkq", kWhiteLong | kWhiteShort},
      {"other pieces on the corners", "n3k2q/8/8/8/8/8/8/B3K2N w KQkq", 0},
      {"the other side's rooks on the corners", "R3k2R/8/8/8/8/8/8/r3K2r w KQkq", 0},
      {"what stands between does not matter", "rn2k1nr/8/8/8/8/8/8/RN2K1NR w KQkq",
       kWhiteLong | kWhiteShort | kBlackLong | kBlackShort},
  };
  for (const RightsRow& row : rows) {
    support::SetUpPosition(row.fen);
    EXPECT_EQ(StandingRights(), row.standing) << row.meaning;
    for (const int colour : {White, Black}) {
      EXPECT_EQ(LongRightStands(colour), (row.standing & LongRight(colour)) != 0) << row.meaning;
      EXPECT_EQ(ShortRightStands(colour), (row.standing & ShortRight(colour)) != 0) << row.meaning;
    }
  }
}

}  // namespace
}  // namespace tarvyle
