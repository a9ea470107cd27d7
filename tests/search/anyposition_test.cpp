// Positions that no game leads to: whatever a set-up accepts is generated, evaluated and searched
// without leaving a table, and in time.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "book/epd.h"
#include "eval/attackmap.h"
#include "eval/evaluate.h"
#include "position/directions.h"
#include "position/movegen.h"
#include "position/soundness.h"
#include "pv/tree.h"
#include "tests/support/any_position.h"
#include "tests/support/build_kind.h"
#include "tests/support/eval_support.h"
#include "tests/support/search_support.h"

namespace tarvyle {
namespace {

using support::ExtremePositions;
using support::RandomBoard;
using support::Scaled;

// The three play styles, then the randomised search.
constexpr int kKinds = 4;
constexpr int kRandomised = 3;

void SelectKind(int kind) {
  is_rnd_search = kind == kRandomised ? 1 : 0;
  PLAY_STYLE = kind == kRandomised ? 2 : kind;
}

class AnyPosition : public support::SearchTest {
 protected:
  AnyPosition() {
    constexpr int kFewEntries = 0x400;  // they are cleared at every search
    support::Start(kFewEntries);
    status_sink = [](const SearchStatus&) {};
    limit_time = 10000;
  }

  // Calls `visit` with every extreme position, then with random ones.
  static void Visit(unsigned seed, int count, const std::function<void()>& visit) {
    for (const std::string& fen : ExtremePositions()) VisitOne(fen, visit);
    support::Random random(seed);
    while (count-- > 0 && !HasFailure()) VisitOne(RandomBoard(random), visit);
  }

  static void VisitOne(const std::string& fen, const std::function<void()>& visit) {
    SCOPED_TRACE(fen);
    ASSERT_TRUE(InitGame(fen.c_str()));
    set_dir(g.side);
    visit();
  }
};

TEST_F(AnyPosition, HasListsThatFitAndAnEvaluation) {
  Visit(71, Scaled(3000, 100000), [] {
    Generate();
    EXPECT_LE(ListLength(), kMaxListMoves);
    GenerateCaptures();
    EXPECT_LE(ListLength(), kMaxListMoves);
    LegalMoveList();
    GenerateAttackes();
    InitEvaluate();
    const int score = Evaluate(-kInfinity, kInfinity);
    EXPECT_LT(std::abs(score), kMateWindow);
    char text[kEpdSize];
    MakeEpd(text);
    EXPECT_LT(std::strlen(text), sizeof text);
  });
}

// Searches go down to ply 97 at most; every list on the way is kept.
TEST_F(AnyPosition, HasRoomForAListAtEveryPly) {
  support::Random random(72);
  int fullest = 0;
  int deepest = 0;
  Visit(73, Scaled(1000, 20000), [&] {
    while (ply < kMaxPly && Generate()) {
      fullest = std::max(fullest, treeCnt[ply + 1]);
      deepest = std::max(deepest, ply);
      LegalMoveList();
      if (ListLength() == 0) break;
      MakeMove(tree[treeCnt[ply] + support::Below(random, ListLength())]);
    }
    support::Ascend();
    EXPECT_TRUE(RecordIsSound(g));
  });
  EXPECT_EQ(deepest, kMaxPly - 1);
  EXPECT_LE(fullest, kTreeSize);
}

// The quiet moves of queens that cannot reach each other's king leave them all on the board.
TEST_F(AnyPosition, KeepsLongListsApartAtEveryPly) {
  ASSERT_TRUE(InitGame("R6R/3Q4/1Q4Q1/4Q3/2Q4Q/Q4Q2/pp1Q4/kBNN1KB1 w - -"));
  while (ply < kMaxPly) {
    ASSERT_TRUE(Generate());
    ASSERT_EQ(ListLength() > 200, g.side == White) << ply;
    MakeMove(0);
  }
  EXPECT_GT(treeCnt[kMaxPly], 10000);
  support::Ascend();
}

void SearchOnce(int kind) {
  SelectKind(kind);
  const GameRecord before = g;
  Move move = 0;
  bool found = false;
  const std::string said = support::Printed([&] { found = SearchMove(move); });
  EXPECT_EQ(said.empty(), kind != kRandomised) << said;
  EXPECT_EQ(ply, 0);
  EXPECT_EQ(treeCnt[0], 0);
  EXPECT_LE(pv_tree.used, kPvNodes);
  EXPECT_EQ(std::memcmp(g.board, before.board, sizeof g.board), 0);
  EXPECT_TRUE(g.key == before.key && g.side == before.side && g.fifty == before.fifty);
  EXPECT_TRUE(RecordIsSound(g));
  EXPECT_EQ(found ? support::Find(std::string(MoveToStr(move))) : 0, move)
      << "the move found is not legal";
}

void SearchInEveryWay() {
  for (int kind = 0; kind < kKinds; ++kind) {
    SCOPED_TRACE("kind " + std::to_string(kind));
    SearchOnce(kind);
  }
}

TEST_F(AnyPosition, IsSearchedInEveryStyle) {
  support::EndSearchesAfter(400);
  Visit(74, Scaled(2000, 30000), SearchInEveryWay);
}

TEST_F(AnyPosition, IsSearchedFurtherWhereItIsExtreme) {
  support::EndSearchesAfter(4000);
  Visit(75, 0, SearchInEveryWay);
}

// --- time ----------------------------------------------------------------------------------------

constexpr int kLatest = 200;  // milliseconds after the allowance

// The stage of a search that runs: a stage begins where the nodes are counted anew.
struct Stage {
  std::uint32_t begin = 0;
  int allowance = 0;     // milliseconds
  int latest = INT_MIN;  // greatest lateness of all stages so far
};
Stage stage;

// The time that this process has used: what a machine with nothing else to do would show.
std::uint32_t OwnMilliseconds() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<std::uint32_t>(used.tv_sec) * kMillisecondsPerSecond +
         static_cast<std::uint32_t>(used.tv_nsec / 1000000);
}

void EndStage(std::uint32_t now) {
  const int late = static_cast<int>(now - stage.begin) - stage.allowance;
  stage.latest = std::max(stage.latest, late);
}

std::uint32_t WatchingClock() {
  const std::uint32_t now = OwnMilliseconds();
  if (cnt_nodes == 0) {
    EndStage(now);
    stage.begin = now;
    stage.allowance = limit_time * 10;
  }
  return now;
}

// How late the latest stage of a search ended, in milliseconds.
int Lateness(int kind, int allowance) {
  SelectKind(kind);
  limit_time = allowance;
  stage = {OwnMilliseconds(), 10 * allowance};
  cnt_nodes = 0;
  Move move = 0;
  support::Printed([&] { SearchMove(move); });
  EndStage(OwnMilliseconds());
  return stage.latest;
}

TEST_F(AnyPosition, StopsTheSearchInTime) {
  if (support::kSlowBuild) GTEST_SKIP() << "an instrumented build is late everywhere";
  HashAllocate(support::kReferenceEntries);
  world.milliseconds = WatchingClock;
  const std::size_t step = support::LongTests() ? 1 : 5;
  const int allowance = support::LongTests() ? 100 : 20;  // 1/100 s
  int latest = INT_MIN;
  for (std::size_t i = 0; i < ExtremePositions().size(); i += step) {
    VisitOne(ExtremePositions()[i], [&] {
      for (int kind = 0; kind < kKinds; ++kind) {
        const int late = Lateness(kind, allowance);
        latest = std::max(latest, late);
        EXPECT_LE(late, kLatest) << "kind " << kind;
      }
    });
  }
  RecordProperty("latest_milliseconds", latest);
}

}  // namespace
}  // namespace tarvyle
