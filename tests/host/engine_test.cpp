// The engine held as a library.

#include "host/engine.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "book/learn.h"
#include "position/record.h"
#include "position/text.h"
#include "position/types.h"
#include "tests/support/data_rows.h"
#include "tests/support/files.h"
#include "tests/support/host_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr const char* kEngineStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";
constexpr const char* kStalemate = "7k/5Q2/6K1/8/8/8/8/8 b - -";

std::uint32_t StandingClock() { return 0; }
std::uint32_t OtherClock() { return 12340; }
unsigned OtherSeed() { return 99; }
bool StopAtOnce() { return true; }

void IgnoreIteration(int /*depth*/, int /*score*/) {}
void IgnoreLine(const SearchStatus& /*status*/) {}

int LearnedPositions() {
  int count = 0;
  for (const LearnNode* head : learn) {
    for (; head != nullptr; head = head->next) ++count;
  }
  return count;
}

using Engine = HostTest;

TEST_F(Engine, StartsWithTheUsualTablesAtTheStartPosition) {
  EXPECT_TRUE(SetUpRoot("8/8/8/8/8/k7/8/K7 b - -"));
  EXPECT_TRUE(StartEngine());
  EXPECT_EQ(Hash_Size, kUsualEntries);
  EXPECT_EQ(g.game_len, 0);
  EXPECT_EQ(g.piece_cnt[White][Pawn], 8);
  EXPECT_EQ(SearchToDepth(4, 1).depth, 4);
}

TEST_F(Engine, ForgetsAllInAFreshProcess) {
  ASSERT_TRUE(SetUpRoot(std::string(kEngineStart) + " moves e2e4 e7e5"));
  EXPECT_EQ(SearchToDepth(4, 1).depth, 4);
  EXPECT_EQ(LearnedPositions(), 1);
  EXPECT_TRUE(FreshProcess());
  EXPECT_EQ(g.game_len, 0);
  EXPECT_EQ(g.side, White);
  EXPECT_EQ(LearnedPositions(), 0);
  EXPECT_EQ(search_mv, 0u);
  EXPECT_EQ(search_depth, 0);
}

TEST_F(Engine, ReadsABookWhenThereIsOne) {
  const TemporaryFolder folder;
  const std::string book = folder.Write("lines.bk", "e2e4 e7e5\n");
  EXPECT_TRUE(FreshProcess(book));
  EXPECT_EQ(LearnedPositions(), 2);
  EXPECT_EQ(g.game_len, 0);
  EXPECT_TRUE(FreshProcess());
  EXPECT_EQ(LearnedPositions(), 0);
  EXPECT_FALSE(FreshProcess(folder.Path("missing.bk")));
}

TEST_F(Engine, SetsUpPositionsAndGames) {
  EXPECT_TRUE(SetUpRoot("8/8/8/8/8/k7/7p/K7 b - -"));
  EXPECT_EQ(g.side, Black);
  EXPECT_EQ(g.game_len, 0);
  EXPECT_TRUE(SetUpRoot(std::string(kEngineStart) + " moves e2e4 e7e5 g1f3"));
  EXPECT_EQ(g.game_len, 3);
  EXPECT_EQ(g.side, Black);
  EXPECT_STREQ(MoveToStr(g.game_moves[2]), "g1f3");
  EXPECT_TRUE(SetUpRoot(std::string(kEngineStart) + " moves "));
  EXPECT_EQ(g.game_len, 0);
}

TEST_F(Engine, RefusesWhatIsNoPositionOrMove) {
  EXPECT_FALSE(SetUpRoot(""));
  EXPECT_FALSE(SetUpRoot("nonsense"));
  EXPECT_FALSE(SetUpRoot(std::string(kEngineStart) + " moves e2e5"));
  EXPECT_FALSE(SetUpRoot(std::string(kEngineStart) + " moves e2e4 e2e4"));
  EXPECT_FALSE(SetUpRoot(std::string(kEngineStart) + " moves nonsense"));
}

TEST_F(Engine, RefusesAGameLongerThanItsRecord) {
  const char* const cycle[] = {" g1f3", " g8f6", " f3g1", " f6g8"};
  std::string root = std::string(kEngineStart) + " moves";
  for (int i = 0; i < kMaxGameMoves; ++i) root += cycle[i % 4];
  EXPECT_TRUE(SetUpRoot(root));
  EXPECT_FALSE(SetUpRoot(root + " g1f3"));
}

TEST_F(Engine, EvaluatesForTheSideToMove) {
  ASSERT_TRUE(SetUpRoot("4k3/8/8/8/8/8/8/QQ2K3 w - -"));
  const int white = StaticScore();
  EXPECT_GT(white, 15000);
  ASSERT_TRUE(SetUpRoot("4k3/8/8/8/8/8/8/QQ2K3 b - -"));
  EXPECT_LT(StaticScore(), -15000);
  ASSERT_TRUE(SetUpRoot("qq2k3/8/8/8/8/8/8/4K3 b - -"));
  EXPECT_EQ(StaticScore(), white) << "the mirrored position";
}

TEST_F(Engine, EvaluatesEveryPositionFromScratch) {
  int compared = 0;
  for (const auto& row : DataRows("positions.tsv")) {
    if (row[1] == "refused" || !SetUpRoot(row[0])) continue;
    EXPECT_EQ(std::to_string(StaticScore()), row[1]) << row[0];
    ++compared;
  }
  EXPECT_GT(compared, 50);
}

TEST_F(Engine, SearchesToADepthAndReportsTheWay) {
  ASSERT_TRUE(SetUpRoot(kEngineStart));
  const SearchReport report = SearchToDepth(5, 1);
  ASSERT_EQ(report.iterations.size(), 4u);
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(report.iterations[i].depth, static_cast<int>(i) + 2);
    EXPECT_GT(report.iterations[i].nodes, i > 0 ? report.iterations[i - 1].nodes : 0);
  }
  EXPECT_EQ(report.iterations.back().score, report.score);
  EXPECT_EQ(report.depth, 5);
  EXPECT_GE(report.nodes, report.iterations.back().nodes);
  EXPECT_EQ(report.best_move.size(), 4u);
  ASSERT_FALSE(report.lines.empty());
  const std::string& last = report.lines.back();
  EXPECT_TRUE(last.starts_with("5 " + std::to_string(ShownScore(report.score)) + " ")) << last;
  EXPECT_NE(last.find(" " + report.best_move + " "), std::string::npos) << last;
  EXPECT_NE(last.back(), ' ') << last;
}

TEST_F(Engine, RepeatsASearchNodeByNode) {
  ASSERT_TRUE(SetUpRoot(kEngineStart));
  const SearchReport first = SearchToDepth(5, 7);
  FreshProcess();
  const SearchReport second = SearchToDepth(5, 7);
  EXPECT_EQ(first.nodes, second.nodes);
  EXPECT_EQ(first.lines, second.lines);
  FreshProcess();
  EXPECT_NE(SearchToDepth(5, 8).nodes, first.nodes) << "another seed";
}

TEST_F(Engine, FindsNoMoveWhereThereIsNone) {
  ASSERT_TRUE(SetUpRoot(kStalemate));
  const SearchReport report = SearchToDepth(4, 1);
  EXPECT_EQ(report.best_move, "");
  EXPECT_TRUE(report.iterations.empty());
}

TEST_F(Engine, AsksWhetherToStop) {
  ASSERT_TRUE(SetUpRoot(kEngineStart));
  world.should_stop = StopAtOnce;
  const SearchReport report = SearchToDepth(30, 1);
  EXPECT_LT(report.depth, 30);
  EXPECT_GE(report.nodes, kNodesPerPoll);
  EXPECT_LT(report.nodes, 2 * kNodesPerPoll);
}

TEST_F(Engine, SearchesWithAClockOfItsOwn) {
  static std::uint32_t now;
  now = 0;
  SearchSetting setting;
  setting.world = {[] { return now += 1000; }, OtherSeed};
  setting.allowance = 500;
  ASSERT_TRUE(SetUpRoot(kEngineStart));
  setting.on_line = IgnoreLine;
  Move move = 0;
  EXPECT_TRUE(SearchWith(setting, move));
  EXPECT_NE(move, 0u);
  // A second at each look: five looks, the first of them before any node.
  EXPECT_EQ(now, 6000u);
}

TEST_F(Engine, TakesItsSeedAndItsHooksFromTheSetting) {
  static int iterations;
  static int lines;
  iterations = 0;
  lines = 0;
  ASSERT_TRUE(SetUpRoot(kEngineStart));
  const Move only[] = {MoveWord(Pawn, 48, 40), 0};  // a2a3
  SearchSetting setting;
  setting.world = {StandingClock, OtherSeed};
  setting.hooks = {4, [](int /*depth*/, int /*score*/) { ++iterations; }, only};
  setting.on_line = [](const SearchStatus& /*status*/) { ++lines; };
  Move move = 0;
  ASSERT_TRUE(SearchWith(setting, move));
  EXPECT_STREQ(MoveToStr(move), "a2a3");
  EXPECT_EQ(iterations, 3);
  EXPECT_GE(lines, 3);
}

TEST_F(Engine, LeavesClockHooksAndReceiverAsTheyWere) {
  world = {OtherClock, OtherSeed, StopAtOnce, [] { return std::uint64_t{17}; }};
  SearchSetting setting;
  setting.world = {StandingClock, [] { return 1u; }, nullptr, [] { return std::uint64_t{5}; }};
  setting.hooks = {3, IgnoreIteration, nullptr};
  setting.on_line = IgnoreLine;
  Move move = 0;
  ASSERT_TRUE(SearchWith(setting, move));
  EXPECT_EQ(world.milliseconds, OtherClock);
  EXPECT_EQ(world.seed, OtherSeed);
  EXPECT_EQ(world.should_stop, StopAtOnce);
  EXPECT_EQ(world.first_count(), 17u);
  EXPECT_EQ(root_hooks.max_depth, kMaxIteration);
  EXPECT_EQ(root_hooks.after_iteration, nullptr);
  EXPECT_EQ(root_hooks.only, nullptr);
  EXPECT_EQ(status_sink, nullptr);
}

}  // namespace

}  // namespace tarvyle
