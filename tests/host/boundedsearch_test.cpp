// Searches of one position within bounds.

#include "host/boundedsearch.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "book/learn.h"
#include "host/positiontext.h"
#include "position/text.h"
#include "tests/support/captured.h"
#include "tests/support/host_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr const char* kQuietMiddleGame =
    "r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - -";
constexpr const char* kRookMatesAtOnce = "6k1/5ppp/8/8/8/8/8/R6K w - -";

using BoundedSearch = HostTest;

TEST_F(BoundedSearch, EndsAtItsDepthAndRepeatsItself) {
  const BoundedResult first = SearchPosition(kQuietMiddleGame, {5, 0});
  EXPECT_EQ(first.depth, 5);
  EXPECT_NE(first.move, 0u);
  EXPECT_GT(first.nodes, 1000u);
  EXPECT_GT(first.seconds, 0);
  const BoundedResult second = SearchPosition(kQuietMiddleGame, {5, 0});
  EXPECT_EQ(second.nodes, first.nodes);
  EXPECT_EQ(second.move, first.move);
  EXPECT_EQ(second.score, first.score);
  EXPECT_EQ(second.settled_depth, first.settled_depth);
}

TEST_F(BoundedSearch, LooksAtNoClockWithoutATime) {
  world.milliseconds = [] {
    static std::uint32_t now = 0;
    return now += 100000000;
  };
  EXPECT_EQ(SearchPosition(kQuietMiddleGame, {6, 0}).depth, 6);
  EXPECT_EQ(SearchPosition(kQuietMiddleGame, {6, -1}).depth, 6);
}

TEST_F(BoundedSearch, EndsWhenItsTimeIsOver) {
  // Each look at the clock takes a second.
  world.milliseconds = [] {
    static std::uint32_t now = 0;
    return now += 1000;
  };
  const BoundedResult result = SearchPosition(kQuietMiddleGame, {90, 10});
  EXPECT_NE(result.move, 0u);
  EXPECT_GE(result.nodes, 9 * kNodesPerPoll);
  EXPECT_LT(result.nodes, 11 * kNodesPerPoll);
}

TEST_F(BoundedSearch, TakesATimeBeyondAllMeasureForVeryLong) {
  world.milliseconds = [] {
    static std::uint32_t now = 0;
    return now += 1000;
  };
  EXPECT_EQ(SearchPosition(kQuietMiddleGame, {5, 1e300}).depth, 5);
}

TEST_F(BoundedSearch, TellsWhenTheMoveTookTheLeadForGood) {
  const BoundedResult result = SearchPosition(kQuietMiddleGame, {6, 0});
  FreshProcess();
  ASSERT_EQ(SetUpText(kQuietMiddleGame), "");
  const SearchReport report = SearchToDepth(6, 1);
  // The lines tell the same: the first of the last run of lines that begin with the move.
  std::string leader;
  int depth = 0;
  for (const std::string& line : report.lines) {
    const std::string moves =
        line.substr(line.find(' ', line.find(' ', line.find(' ') + 1) + 1) + 1);
    const std::string first = moves.substr(0, moves.find(' '));
    if (first != leader) depth = std::stoi(line);
    leader = first;
  }
  EXPECT_EQ(result.nodes, report.nodes) << "the seed is 1";
  EXPECT_EQ(MoveToStr(result.move), leader);
  EXPECT_EQ(result.settled_depth, depth);
  EXPECT_GE(result.settled_seconds, 0);
  EXPECT_EQ(SearchPosition(kRookMatesAtOnce, {5, 0}).settled_depth, 2) << "no other ever led";
  EXPECT_LE(result.settled_seconds, result.seconds);
}

TEST_F(BoundedSearch, RemembersItsResultAndNothingElse) {
  ASSERT_TRUE(SetUpRoot(kRookMatesAtOnce));
  EXPECT_EQ(SearchToDepth(3, 1).best_move, "a1a8");
  ASSERT_EQ(Printed([] { SearchPosition(kQuietMiddleGame, {4, 0}); }), "");
  const LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->depth, 4);
  int count = 0;
  for (const LearnNode* head : learn) {
    for (; head != nullptr; head = head->next) ++count;
  }
  EXPECT_EQ(count, 1);
}

TEST_F(BoundedSearch, FindsNoMoveWhereThereIsNone) {
  const BoundedResult result = SearchPosition("7k/5Q2/6K1/8/8/8/8/8 b - -", {4, 0});
  EXPECT_EQ(result.move, 0u);
  EXPECT_EQ(result.depth, 0);
  EXPECT_EQ(result.settled_depth, 0);
}

TEST_F(BoundedSearch, RefusesATextThatIsNoPosition) {
  try {
    SearchPosition("nonsense", {4, 0});
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "no side to move: nonsense");
  }
}

}  // namespace

}  // namespace tarvyle
