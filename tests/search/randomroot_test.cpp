// The randomised root search as a whole: answers at once, its first stage, its times.

#include "search/randomroot.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/support/build_kind.h"
#include "tests/support/randomsearch_support.h"

namespace tarvyle {

using namespace support;

namespace {

// --- answers at once -----------------------------------------------------------------------------

TEST_F(RandomisedSearch, OneLegalMoveIsPlayedAtOnce) {
  GoTo(kOneMove);
  const Outcome run = RunSearch();
  EXPECT_TRUE(run.found);
  EXPECT_EQ(run.move, "h1g1");
  EXPECT_EQ(run.lines, (std::vector<std::string>{"search move ... ", "# one reply "}));
  EXPECT_EQ(cnt_nodes, 0u);
  EXPECT_EQ(search_score, 0);
  EXPECT_EQ(FindCurrentNode(), nullptr) << "nothing is learned";
}

TEST_F(RandomisedSearch, WithoutALegalMoveThereIsNone) {
  for (const char* root :
       {"7k/6Q1/6K1/8/8/8/8/8 b", "7k/5Q2/6K1/8/8/8/8/8 b", "4k3/8/8/8/8/8/4R3/4K3 w"}) {
    SCOPED_TRACE(root);
    GoTo(root);
    const Outcome run = RunSearch();
    EXPECT_FALSE(run.found);
    EXPECT_EQ(run.lines,
              (std::vector<std::string>{"search move ... ", "#cap. king - illegal move "}));
    EXPECT_EQ(cnt_nodes, 0u);
  }
}

TEST_F(RandomisedSearch, BookAnswersInHalfOfTheCallsWhenAuto) {
  ASSERT_TRUE(FreshProcess(DataFile("book.bk")));
  ASSERT_TRUE(HashAllocate(0x10000));
  property_add("book move", "auto");
  stage_clock.steps[0] = stage_clock.steps[1] = stage_clock.steps[2] = 5000;
  const std::set<std::string> book = {"e2e4", "d2d4", "c2c4", "g1f3"};
  int answers = 0;
  for (unsigned seed = 1; seed <= 20; ++seed) {
    ASSERT_TRUE(InitNewGame());
    test_clock.seed = seed;
    std::srand(seed);
    const bool draws_low = std::rand() % 101 < 51;
    const Outcome run = RunSearch();
    ASSERT_TRUE(run.found);
    const std::vector<std::string> answered = {"search move ... ", "# find move from open. book "};
    EXPECT_EQ(run.lines == answered, draws_low) << seed;
    if (!draws_low) continue;
    ++answers;
    EXPECT_EQ(book.count(run.move), 1u) << run.move;
    EXPECT_EQ(MoveToStr(search_mv), run.move);
    EXPECT_EQ(search_score, 0);
  }
  EXPECT_GT(answers, 4);
  EXPECT_LT(answers, 16);
}

TEST_F(RandomisedSearch, BookIsNotAskedOtherwise) {
  ASSERT_TRUE(FreshProcess(DataFile("book.bk")));
  ASSERT_TRUE(HashAllocate(0x10000));
  stage_clock.steps[0] = stage_clock.steps[1] = stage_clock.steps[2] = 5000;
  for (const char* value : {"on", "Auto", ""}) {
    property_clear();
    property_add("book move", value);
    for (unsigned seed = 1; seed <= 4; ++seed) {
      test_clock.seed = seed;
      EXPECT_FALSE(Contains(RunSearch(), "# find move from open. book "));
    }
  }
}

TEST_F(RandomisedSearch, RootMovesStartWithFourRandomBitsEach) {
  ASSERT_TRUE(FreshProcess(DataFile("book.bk")));
  stage_clock.steps[0] = stage_clock.steps[1] = stage_clock.steps[2] = 5000;
  for (const bool book_draws : {false, true}) {
    property_clear();
    if (book_draws) property_add("book move", "auto");
    for (unsigned seed = 1; seed <= 6; ++seed) {
      test_clock.seed = seed;
      std::srand(seed);
      if (book_draws && std::rand() % 101 < 51) continue;
      std::vector<int> wanted;
      for (int i = 0; i < 20; ++i) wanted.push_back(std::rand() & 15);
      RunSearch();
      EXPECT_EQ(stage_clock.values_before_stage1, wanted) << seed;
    }
  }
}

TEST_F(RandomisedSearch, RootMovesTakeNoMoreThanOneNumberEach) {
  GoTo(kMateInOne);
  ASSERT_TRUE(LegalMoveList());
  const int moves = ListLength();
  ASSERT_GT(moves, 1);
  std::srand(test_clock.seed);
  for (int i = 0; i < moves; ++i) std::rand();
  const int next = std::rand();
  EXPECT_TRUE(RunSearch().found);
  EXPECT_EQ(std::rand(), next) << "a mate found is played without any further draw";
}

// --- stage 1 -------------------------------------------------------------------------------------

TEST_F(RandomisedSearch, MateFoundInStage1IsPlayedWithoutCandidates) {
  GoTo(kMateInOne);
  const Outcome run = RunSearch();
  EXPECT_EQ(run.move, "a1a8");
  const LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->score, 999998);
  EXPECT_EQ(run.lines,
            (std::vector<std::string>{
                "search move ... ", "#------> stage1 - search best move, time = 5.000000 ",
                "#----> find best move a1a8,    score 999998, depth " + std::to_string(node->depth),
                "# select move: a1a8, 999998 ", SearchTimeLine()}));
  EXPECT_EQ(treeCnt[0], 0);
  EXPECT_EQ(treeCnt[1], 0);
}

TEST_F(RandomisedSearch, StoppedBeforeAnyMoveIsResolvedItHasNone) {
  GoTo(kQueens);
  const Outcome run = RunSearch(1);
  EXPECT_FALSE(run.found);
  EXPECT_EQ(run.lines,
            (std::vector<std::string>{"search move ... ",
                                      "#------> stage1 - search best move, time = 0.000000 ",
                                      "# move not fond ?!! ", SearchTimeLine()}));
  EXPECT_EQ(s_depth, 2) << "no deeper iteration has begun";
  EXPECT_EQ(FindCurrentNode(), nullptr);
  EXPECT_EQ(treeCnt[0], 0);
  EXPECT_EQ(treeCnt[1], 0);
}

TEST_F(RandomisedSearch, Stage1EndsAfterDepth39) {
  GoTo(kFortress);
  stage_clock.steps[0] = stage_clock.steps[1] = 0;  // only the play-outs are ended by the clock
  const Outcome run = RunSearch();
  ASSERT_EQ(BestMoveOf(run).size(), 1u);
  EXPECT_EQ(BestMoveOf(run)[0].depth, 39);
}

TEST_F(RandomisedSearch, IteratesFromTheFirstDepthToTheLastThatAToolWants) {
  struct Row {
    int first;
    int last;
    int found;  // depth of the best move, 0 without one
  };
  for (const Row& row : {Row{2, 4, 4}, {1, 1, 1}, {2, 3, 3}, {2, 1, 0}}) {
    GoTo(kStart);
    root_hooks.first_depth = row.first;
    root_hooks.max_depth = row.last;
    stage_clock.steps[0] = 0;  // the clock does not end it
    const std::vector<Told> best = BestMoveOf(RunSearch());
    EXPECT_EQ(best.empty() ? 0 : best[0].depth, row.found);
  }
}

TEST_F(RandomisedSearch, BestMoveOfAnInterruptedIterationCounts) {
  // Whatever the clock allows, the best move's depth is that of the last published root result.
  for (const std::uint32_t step : {100u, 300u, 700u, 1500u}) {
    GoTo(kStart);
    stage_clock.steps[0] = step;
    stage_clock.steps[1] = stage_clock.steps[2] = 100000;
    const Outcome run = RunSearch();
    ASSERT_EQ(BestMoveOf(run).size(), 1u);
    EXPECT_GE(BestMoveOf(run)[0].depth, 2);
    EXPECT_EQ(SelectedOf(run)[0].move, run.move);
  }
}

TEST_F(RandomisedSearch, ThinkingLinesAreSuppressed) {
  GoTo(kStart);
  for (const std::string& line : RunSearch().lines) {
    EXPECT_TRUE(line[0] == '#' || line == "search move ... ") << line;
  }
}

// --- times ---------------------------------------------------------------------------------------

TEST_F(RandomisedSearch, EachStageKeepsToItsShareOfTheAllowance) {
  ASSERT_TRUE(HashAllocate(0x10000));
  for (const int allowance : {kAllowance, 750, 400}) {
    if (kSlowBuild && allowance != kAllowance) continue;
    for (const char* root : {kBothMovesAreMated, kStart.data()}) {
      SCOPED_TRACE(testing::Message() << allowance << ", " << root);
      ASSERT_TRUE(FreshProcess());
      GoTo(root);
      stage_clock = {};
      for (std::uint32_t& step : stage_clock.steps)
        step = static_cast<std::uint32_t>(allowance) / 8;
      RunSearch(allowance);
      std::map<int, std::pair<int, int>> span;  // first and last reading by limit
      for (const Reading& reading : stage_clock.readings) {
        auto [at, first] = span.try_emplace(reading.limit, reading.hundredths, reading.hundredths);
        if (!first) at->second.second = reading.hundredths;
      }
      int whole = 0;
      for (const auto& [limit, times] : span) {
        const int elapsed = times.second - times.first;
        if (limit == allowance) continue;  // before the stages, and the last reading of all
        ASSERT_NE(StageOf(limit), -1) << limit;
        // A stage may end one poll later than 95 % of its share.
        EXPECT_LE(elapsed, limit * 95 / 100 + allowance / 80 + 1) << limit;
        whole += elapsed;
      }
      EXPECT_LE(whole, allowance * 3 / 2);
      EXPECT_EQ(span.count(allowance / 2), 1u);
      EXPECT_EQ(span.count(allowance * 90 / 100), 1u);
      if (root == kBothMovesAreMated) {
        EXPECT_EQ(span.count(allowance / 10), 1u);
        const auto [first, last] = span[allowance / 10];
        EXPECT_GE(last - first, allowance / 10 * 95 / 100) << "play-outs fill their time";
      }
    }
  }
}

TEST_F(RandomisedSearch, LastPublishedScoreStaysForTheGameRecord) {
  GoTo(kHangingQueen);
  RunSearch();
  EXPECT_NE(search_score, 0);
  EXPECT_NE(search_mv, 0u);
}

TEST_F(RandomisedSearch, SameSeedAndClockChooseTheSame) {
  std::vector<std::string> lines[2];
  for (auto& run : lines) {
    ASSERT_TRUE(FreshProcess());
    GoTo(kStart);
    test_clock.seed = 9;
    stage_clock = {};
    run = RunSearch().lines;
  }
  EXPECT_EQ(lines[0], lines[1]);
}

}  // namespace

}  // namespace tarvyle
