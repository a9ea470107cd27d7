#include "position/invariant.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <memory>

#include "position/makemove.h"
#include "position/pieces.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

constexpr int kAbortedStatus = 40;

// Ends the process with a status that tells how often __foo has been raised.
void ExitWithFoo(int) { _exit(kAbortedStatus + __foo); }

TEST(Invariant, TrueConditionDoesNothing) {
  const int before = __foo;
  (assert)(true);
  EXPECT_EQ(__foo, before);
}

TEST(InvariantDeathTest, FalseConditionAbortsWithoutAMessage) {
  EXPECT_EXIT((assert)(false), support::Aborted(), support::kSilence);
}

class CounterDeathTest : public support::PositionTest {
 protected:
  // Expects that `broken` raises the counter by one and aborts, after this message.
  template <typename Procedure>
  static void ExpectCounted(Procedure broken, const char* message) {
    ASSERT_EQ(__foo, 0);
    EXPECT_EXIT(
        {
          std::signal(SIGABRT, ExitWithFoo);
          broken();
        },
        testing::ExitedWithCode(kAbortedStatus + 1), message);
  }
};

TEST_F(CounterDeathTest, CounterIsRaisedByOneBeforeTheAbort) {
  ExpectCounted([] { (assert)(false); }, support::kSilence);
}

TEST_F(CounterDeathTest, BrokenPositionIsCounted) {
  ExpectCounted([] { MakeMove(MoveWord(Pawn, E8, E1)); }, support::kSilence);
  ExpectCounted([] { InsertPiece(Pawn, White, E1, 0); }, support::kSilence);
}

TEST_F(CounterDeathTest, FailedSelfCheckOfTheGameIsCounted) {
  const Move move = support::LegalMove("e2e4");
  g.undo[0].cap_sq = 1;
  ExpectCounted([&] { InsertMoveInGame(move, 0); }, "error control summ");
}

}  // namespace
}  // namespace tarvyle
