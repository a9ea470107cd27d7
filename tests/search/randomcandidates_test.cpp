// How the randomised root search finds its candidates and decides among them.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/build_kind.h"
#include "tests/support/randomsearch_support.h"

namespace tarvyle {

using namespace support;

namespace {

// --- candidates ----------------------------------------------------------------------------------

TEST_F(RandomisedSearch, MovesMoreThanTwoPawnsBelowTheBestAreRefused) {
  GoTo(kHangingQueen);
  const Outcome run = RunSearch();
  EXPECT_EQ(run.move, "e4d5");
  const LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(
      run.lines,
      (std::vector<std::string>{
          "search move ... ", "#------> stage1 - search best move, time = 5.000000 ",
          "#----> find best move e4d5,    score " + std::to_string(node->score) + ", depth " +
              std::to_string(node->depth),
          "#----> search kandidate's moves ...  time = 9.000000 ", "# find search. one move only ",
          "# select move: e4d5, " + std::to_string(node->score) + " ", SearchTimeLine()}));
}

TEST_F(RandomisedSearch, CandidateStageThatTimeDeniesIsAnnouncedAllTheSame) {
  GoTo(kStart);
  stage_clock.steps[1] = 100000;  // over at the first poll
  const Outcome run = RunSearch();
  EXPECT_TRUE(Contains(run, "#----> search kandidate's moves ...  time = 9.000000 "));
  EXPECT_TRUE(Contains(run, "# find search. one move only "));
  EXPECT_EQ(run.move, BestMoveOf(run)[0].move);
}

TEST_F(RandomisedSearch, CandidateStageStartsFromAnAgedTable) {
  GoTo(kHangingQueen);
  stage_clock.steps[1] = 100000;  // over before it can store deep entries of its own
  const Outcome run = RunSearch();
  int deepest = 0;
  for (const HashEntry* table : hash) {
    for (int i = 0; i < Hash_Size; ++i) {
      if (table[i].generation == hash_generation) deepest = std::max<int>(deepest, table[i].depth);
    }
  }
  EXPECT_GT(deepest, 0);
  EXPECT_LT(deepest, BestMoveOf(run).at(0).depth - 2);
}

TEST_F(RandomisedSearch, CandidatesLieWithinTwoPawnsOfTheBestAtItsDepth) {
  GoTo("4k3/pp6/8/3n4/2P1P3/8/P7/4K3 w");  // the knight can be taken two ways
  stage_clock.steps[1] = 0;                // until a pass finds none
  const Outcome run = RunSearch();
  const Told best = BestMoveOf(run).at(0);
  const std::vector<Told> candidates = CandidatesOf(run);
  ASSERT_FALSE(candidates.empty());
  std::set<std::string> seen = {best.move};
  for (const Told& candidate : candidates) {
    EXPECT_GT(candidate.score, best.score - 2000);
    EXPECT_GE(candidate.depth, best.depth);
    EXPECT_TRUE(seen.insert(candidate.move).second) << candidate.move << " twice";
    EXPECT_NE(Find(candidate.move), 0u);
  }
  EXPECT_LT(seen.size(), 10u) << "moves that leave the knight alone are refused";
  EXPECT_EQ(seen.count("c4d5"), 1u);
  EXPECT_EQ(seen.count("e4d5"), 1u);
}

TEST_F(RandomisedSearch, NothingBecomesACandidateAfterTheStop) {
  // The stage is stopped after any number of nodes: in the last depth, too, when a move has got
  // above the floor already.
  ASSERT_TRUE(HashAllocate(0x10000));
  int stopped_between = 0;
  for (int nodes = 1000; nodes <= 4000; nodes += 50) {
    ASSERT_TRUE(FreshProcess());
    GoTo(kMiddleGame);
    stage_clock = {};
    stage_clock.steps[0] = 100000;  // over at the first poll
    stage_clock.steps[1] = 5000;    // over at the second, 4096 nodes later
    stage_clock.first_poll = nodes;
    const Outcome run = RunSearch();
    stopped_between += CandidatesOf(run).empty() ? 0 : 1;
    EXPECT_EQ(1 + static_cast<int>(CandidatesOf(run).size()), stage_clock.set_aside_at_stop)
        << nodes;
  }
  EXPECT_GT(stopped_between, 3) << "the stage has been stopped with candidates found";
}

TEST_F(RandomisedSearch, NoDepthIsBegunAfterTheStop) {
  GoTo(kMiddleGame);
  stage_clock.steps[1] = 100000;
  stage_clock.first_poll = 1;
  const Outcome run = RunSearch();
  EXPECT_GT(s_depth, 2) << "still that of the stage before";
  EXPECT_GE(s_depth, BestMoveOf(run).at(0).depth);
}

TEST_F(RandomisedSearch, AllMovesCanBeCandidates) {
  GoTo(kFortress);
  stage_clock.steps[0] = stage_clock.steps[1] = 0;
  const Outcome run = RunSearch();
  EXPECT_EQ(CandidatesOf(run).size(), 1u);  // of two moves
}

// Whether the decision was between just the moves that were told, each told once.
void ExpectDecisionAmong(const std::vector<Told>& told, const Outcome& run) {
  std::map<std::string, int> scores;
  for (const Told& one : told) {
    EXPECT_TRUE(scores.emplace(one.move, one.score).second) << one.move << " twice";
  }
  const std::vector<Told> results = ResultsOf(run);
  if (!results.empty()) {
    EXPECT_EQ(results.size(), told.size());
    for (const Told& result : results) EXPECT_EQ(scores.count(result.move), 1u) << result.move;
  }
  const Told selected = SelectedOf(run).at(0);
  EXPECT_EQ(selected.move, run.move);
  ASSERT_EQ(scores.count(selected.move), 1u) << selected.move;
  if (results.empty()) {
    EXPECT_EQ(selected.score, scores[selected.move]);
  }
}

TEST_F(RandomisedSearch, CandidatesReachDownToTwoPawnsBelowTheBestButNotFurther) {
  // Positions with gains and losses of all sizes, shallow searches.
  constexpr int kSearches = kSlowBuild ? 20 : 100;
  ASSERT_TRUE(HashAllocate(0x10000));
  int widest = 0;
  int searches = 0;  // with a candidate
  for (const auto& row : DataRows("positions.tsv")) {
    if (searches == kSearches) break;
    SCOPED_TRACE(row[0]);
    ASSERT_TRUE(FreshProcess());
    ASSERT_TRUE(SetUpGame(row[0]));
    stage_clock = {};
    stage_clock.steps[0] = 3000;  // over at the second poll
    stage_clock.steps[1] = 400;
    stage_clock.steps[2] = 100000;
    const Outcome run = RunSearch();
    const std::vector<Told> candidates = CandidatesOf(run);
    if (candidates.empty()) continue;
    ++searches;
    std::vector<Told> told = BestMoveOf(run);
    ASSERT_EQ(told.size(), 1u);
    for (const Told& candidate : candidates) {
      EXPECT_LT(told[0].score - candidate.score, 2000) << candidate.move;
      widest = std::max(widest, told[0].score - candidate.score);
    }
    told.insert(told.end(), candidates.begin(), candidates.end());
    ExpectDecisionAmong(told, run);
  }
  EXPECT_EQ(searches, kSearches);
  EXPECT_GE(widest, kSlowBuild ? 0 : 1990);
}

// In each some other move scores exactly two pawns less at that depth.
TEST_F(RandomisedSearch, ExactlyTwoPawnsBelowTheBestIsNoCandidate) {
  struct Row {
    const char* root;
    const char* best;
    int score;
  };
  constexpr Row kRows[] = {{"5n2/k7/3P4/3p4/3P4/2p2R2/6P1/4K3 w", "f3f8", 6095},
                           {"2R5/8/4P1P1/8/4k3/8/2K5/n7 w", "c2b2", 6161},
                           {"8/8/8/8/8/2p3RP/8/k4nK1 w", "g1f1", 5050}};
  ASSERT_TRUE(HashAllocate(0x400));
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.root);
    ASSERT_TRUE(FreshProcess());
    GoTo(row.root);
    stage_clock = {};
    stage_clock.first_poll = 400;
    for (auto& step : stage_clock.steps) step = 100000;
    const Outcome run = RunSearch();
    ASSERT_EQ(BestMoveOf(run).size(), 1u);
    EXPECT_EQ(BestMoveOf(run)[0].move, row.best);
    EXPECT_EQ(BestMoveOf(run)[0].score, row.score);
    EXPECT_EQ(BestMoveOf(run)[0].depth, 2);
    for (const Told& candidate : CandidatesOf(run)) {
      EXPECT_LT(row.score - candidate.score, 2000) << candidate.move;
    }
  }
}

// --- stage 2 -------------------------------------------------------------------------------------

TEST_F(RandomisedSearch, NearEqualLeadersGetRandomScores) {
  GoTo(kBothMovesAreMated);
  const Outcome run = RunSearch();
  const Told best = BestMoveOf(run).at(0);
  const std::vector<Told> candidates = CandidatesOf(run);
  ASSERT_EQ(candidates.size(), 1u);
  EXPECT_EQ(best.score, -999997);
  EXPECT_EQ(candidates[0].score, -999997);

  const std::vector<Told> results = ResultsOf(run);
  ASSERT_EQ(results.size(), 2u);
  EXPECT_GE(results[0].score, results[1].score) << "in descending order";
  EXPECT_EQ((std::set<std::string>{results[0].move, results[1].move}),
            (std::set<std::string>{"h8g8", "a6a5"}));
  for (const Told& result : results) {
    EXPECT_LT(result.score, -999997) << "some play-outs are lost, none can be won";
  }
  EXPECT_EQ(run.move, results[0].move);
  EXPECT_EQ(run.lines,
            (std::vector<std::string>{
                "search move ... ", "#------> stage1 - search best move, time = 5.000000 ",
                "#----> find best move " + best.move + ",    score -999997, depth " +
                    std::to_string(best.depth),
                "#----> search kandidate's moves ...  time = 9.000000 ",
                "#----> find kandidat move " + candidates[0].move + ", score -999997, depth " +
                    std::to_string(candidates[0].depth),
                "#-----> stage2: assign additional random score,  time = 1.000000 ",
                "# ----> result of search ",
                "#move " + results[0].move + ", score " + std::to_string(results[0].score),
                "#move " + results[1].move + ", score " + std::to_string(results[1].score),
                "# select move: " + run.move + ", " + std::to_string(results[0].score) + " ",
                SearchTimeLine()}));
  const LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->score, results[0].score) << "the value with its random part is learned";
  EXPECT_EQ(node->depth, best.depth);
}

TEST_F(RandomisedSearch, PlayoutsAreRandom) {
  std::set<std::string> outcomes;
  for (unsigned seed = 1; seed <= 5; ++seed) {
    ASSERT_TRUE(FreshProcess());
    GoTo(kBothMovesAreMated);
    test_clock.seed = seed;
    const std::vector<Told> results = ResultsOf(RunSearch());
    ASSERT_EQ(results.size(), 2u);
    outcomes.insert(results[0].move + ' ' + std::to_string(results[0].score));
  }
  EXPECT_GT(outcomes.size(), 2u);
}

TEST_F(RandomisedSearch, OnlyLeadersWithinFiveGetRandomScores) {
  // The second may lead: the table holds other things when it is searched. Seeds that make it lead
  // by so much have been found by trying.
  constexpr const char* kClose = "rnbqkb1r/pppp1p1p/4p1pn/8/5P2/7N/PPPPPKPP/RNBQ1B1R w kq -";
  struct Row {
    const char* root;
    unsigned seed;
    int lead;  // of the best over the second
    bool near_equal;
    int step = 1000;  // of the clock while candidates are found: a fast one leaves few
  };
  constexpr Row kRows[] = {
      {kClose, 3, -5, true},
      {kClose, 5, -6, false},
      {kClose, 5, -6, false, 2500},  // the leader is the last one
      {"r2q1rk1/1ppnbppp/p2p1nb1/3Pp3/2P1P1P1/2N2N1P/PPB1QP2/R1B2RK1 b - -", 3, -1, true},
      {"8/7k/8/8/3K4/pQ6/8/8 w - -", 1, 1, false},
      {kFortress.data(), 1, 0, true},
      {kClose, 9, 0, true}};
  ASSERT_TRUE(HashAllocate(0x10000));
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.root << ", seed " << row.seed);
    ASSERT_TRUE(FreshProcess());
    GoTo(row.root);
    test_clock.seed = row.seed;
    stage_clock = {};
    stage_clock.now = 0;
    stage_clock.steps[0] = 1500;
    stage_clock.steps[1] = row.step;
    stage_clock.steps[2] = 500;
    if (row.root == kFortress) stage_clock.steps[0] = stage_clock.steps[1] = 0;
    const Outcome run = RunSearch();
    std::vector<Told> all = BestMoveOf(run);
    for (const Told& candidate : CandidatesOf(run)) all.push_back(candidate);
    ASSERT_GE(all.size(), 2u);
    EXPECT_EQ(all[0].score - all[1].score, row.lead);
    EXPECT_EQ(Contains(run, "#skip random score (result undefined) "), !row.near_equal);
    EXPECT_EQ(Contains(run, "#-----> stage2: assign additional random score,  time = 1.000000 "),
              row.near_equal);
    EXPECT_EQ(Contains(run, "# ----> result of search "), row.near_equal);
    ASSERT_EQ(ResultsOf(run).size(), row.near_equal ? all.size() : 0u);
    const Told selected = SelectedOf(run).at(0);
    EXPECT_EQ(selected.move, run.move);
    if (row.near_equal) {
      EXPECT_EQ(selected.move, ResultsOf(run)[0].move);
    } else {
      EXPECT_EQ(selected.score,
                std::max_element(all.begin(), all.end(), [](const Told& a, const Told& b) {
                  return a.score < b.score;
                })->score);
    }
  }
}

}  // namespace

}  // namespace tarvyle
