// The root search: preparation, iterations, result.

#include "search/root.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "pv/line.h"
#include "pv/tree.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

std::vector<int> Depths(const Report& report) {
  std::vector<int> depths;
  for (const Iteration& iteration : report.iterations) depths.push_back(iteration.depth);
  return depths;
}

std::vector<int> UpTo(int last) {
  std::vector<int> depths;
  for (int depth = 2; depth <= last; ++depth) depths.push_back(depth);
  return depths;
}

std::vector<Move> RootListOfTree() {
  std::vector<Move> moves;
  for (const PvNode* node = pv_tree.root; node != nullptr; node = node->next) {
    moves.push_back(node->move);
  }
  return moves;
}

using RootSearch = SearchTest;

// --- preparation ---------------------------------------------------------------------------------

TEST_F(RootSearch, PositionWithoutLegalMovesGivesNone) {
  struct Row {
    const char* what;
    const char* root;
  };
  constexpr Row kRows[] = {{"mate", "7k/6Q1/6K1/8/8/8/8/8 b"},
                           {"stalemate", "7k/5Q2/6K1/8/8/8/8/8 b"},
                           {"illegal", "4k3/8/8/8/8/8/4R3/4K3 w"}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    GoTo(row.root);
    Move move = 77;
    EXPECT_FALSE(SearchMove(move));
    EXPECT_EQ(move, 77u);
    EXPECT_EQ(search_mv, 0u);
    EXPECT_EQ(FindCurrentNode(), nullptr) << "nothing is learned";
  }
}

TEST_F(RootSearch, TakesOneRandomNumberForEachRootMoveInListOrder) {
  GoTo(kStart);
  ASSERT_TRUE(LegalMoveList());
  std::vector<std::pair<int, Move>> drawn;
  std::srand(5);
  for (int i = 0; i < treeCnt[1]; ++i) drawn.emplace_back(std::rand() % 20, tree[i]);
  const int next = std::rand();

  test_clock.seed = 5;
  root_hooks.max_depth = 1;
  Move move = 0;
  SearchMove(move);
  EXPECT_EQ(std::rand(), next) << "and none for the book, which is off";
  for (int i = 0; i < treeCnt[1]; ++i) {
    EXPECT_NE(std::find(drawn.begin(), drawn.end(), std::pair{sort_val[i], tree[i]}), drawn.end());
  }
}

TEST_F(RootSearch, RootListIsInDescendingOrderAndTheTreesInAscendingOrder) {
  GoTo(kStart);
  root_hooks.max_depth = 1;
  Move move = 0;
  SearchMove(move);
  ASSERT_EQ(treeCnt[1], 20);
  EXPECT_TRUE(std::is_sorted(sort_val, sort_val + 20, std::greater<>()));
  std::vector<Move> list(tree, tree + 20);
  std::reverse(list.begin(), list.end());
  EXPECT_EQ(RootListOfTree(), list);
}

TEST_F(RootSearch, BookMovesGetHigherOrderingValues) {
  ASSERT_TRUE(HashAllocate(0x10000));
  ASSERT_TRUE(FreshProcess(DataFile("book.bk")));
  int greatest_other = 0;
  int greatest_book = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    test_clock.seed = seed;
    root_hooks.max_depth = 1;
    Move move = 0;
    SearchMove(move);
    for (int i = 0; i < treeCnt[1]; ++i) {
      const std::string text = MoveToStr(tree[i]);
      const bool in_book = text == "e2e4" || text == "d2d4" || text == "c2c4" || text == "g1f3";
      int& greatest = in_book ? greatest_book : greatest_other;
      greatest = std::max(greatest, sort_val[i]);
    }
  }
  EXPECT_EQ(greatest_other, 19);
  EXPECT_EQ(greatest_book, 49);
}

TEST_F(RootSearch, HistoryIsCompressedForTheSameRootAndClearedForAnother) {
  for (const bool same : {true, false}) {
    GoTo(kMiddleGame);
    std::fill(std::begin(history), std::end(history), 0);
    history[700] = 9;
    history[701] = history[702] = history[703] = 1;
    search_start_pos_key = same ? std::uint64_t{g.key} : g.key ^ 1;
    root_hooks.max_depth = 1;
    Move move = 0;
    SearchMove(move);
    EXPECT_EQ(history[700], same ? 2 : 0);
    EXPECT_EQ(history[701], same ? 1 : 0);
  }
}

TEST_F(RootSearch, LinePredictedLastTimeIsSearchedFirst) {
  struct Row {
    const char* what;
    const char* predicted_game;  // the game that the last search predicted
    bool same_key;
    bool inserted;
  };
  constexpr Row kRows[] = {{"all as predicted", "e2e4 e7e5", true, true},
                           {"another way to the same position", "e2e3 e7e5", true, false},
                           {"another position", "e2e4 e7e5", false, false}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    ForgetSearches();
    GoTo(std::string(kStart) + " moves " + row.predicted_game);
    std::vector<Move> list(g.game_moves, g.game_moves + 2);
    GoTo(std::string(kStart) + " moves e2e4 e7e5");
    const Move a2a3 = Find("a2a3");
    list.push_back(a2a3);
    ASSERT_TRUE(Descend("a2a3"));
    list.push_back(Find("h7h6"));
    Ascend();
    std::copy(list.begin(), list.end(), search_list);
    search_list[4] = 0;
    search_start_pos_key = row.same_key ? std::uint64_t{g.key} : g.key ^ 1;
    root_hooks.max_depth = 1;
    Move move = 0;
    SearchMove(move);
    EXPECT_EQ(RootListOfTree().front() == a2a3, row.inserted);
    PvNode** const link = pvFindMove(&pv_tree.root, a2a3);
    EXPECT_EQ((*link)->child != nullptr, row.inserted);
  }
}

TEST_F(RootSearch, PredictionOfAnEarlierRootIsNotUsedAfterTheGameWentOn) {
  // Two moves later the position is another one, even though the game follows the prediction.
  GoTo(kStart);
  SearchToDepth(4);
  ASSERT_GT(LineLen(search_list), 2);
  const std::vector<Move> predicted(search_list, search_list + 3);
  for (int i = 0; i < 2; ++i) {
    Move typed = 0;
    ASSERT_TRUE(StrToMove(MoveToStr(predicted[static_cast<std::size_t>(i)]), typed));
    ASSERT_TRUE(InsertMoveInGame(typed, kTypedMove));
  }
  root_hooks.max_depth = 1;
  Move move = 0;
  SearchMove(move);
  EXPECT_EQ((*pvFindMove(&pv_tree.root, predicted[2]))->child, nullptr);
}

// --- iterations ----------------------------------------------------------------------------------

TEST_F(RootSearch, Depth90IsTheDeepestIteration) {
  EXPECT_EQ(kMaxIteration, 90);
  GoTo(kFortress);
  EXPECT_EQ(Depths(SearchToDepth(kMaxIteration)), UpTo(90));
  GoTo(kFortress);
  status_sink = [](const SearchStatus&) {};
  Move move = 0;
  EXPECT_TRUE(SearchMove(move)) << "and without a bound by tools";
  EXPECT_EQ(s_depth, 90);
}

TEST_F(RootSearch, MateFoundEndsTheSearchAtDepth6AtTheEarliest) {
  for (const auto& [root, score] : {std::pair{"7k/8/8/8/8/8/R7/1R5K w", 999996},
                                    std::pair{"6k1/5ppp/8/8/8/8/8/R6K w", 999998}}) {
    GoTo(root);
    const Report report = SearchToDepth(kMaxIteration);
    EXPECT_EQ(Depths(report), UpTo(6)) << root;
    EXPECT_EQ(report.iterations.back().score, score);
    EXPECT_EQ(search_score, score);
  }
}

TEST_F(RootSearch, BeingMatedEndsItNotAtDepth6ButAtDepth7) {
  GoTo("7k/R7/8/8/8/8/8/1R5K b");  // mate next move, whatever is played
  const Report report = SearchToDepth(kMaxIteration);
  EXPECT_EQ(Depths(report), UpTo(7));
  EXPECT_EQ(report.iterations.back().score, -999997);
}

TEST_F(RootSearch, MateThatALaterIterationFindsEndsThatOne) {
  GoTo("8/5k2/8/8/8/2R5/8/1R5K w");
  const Report report = SearchToDepth(kMaxIteration);
  ASSERT_EQ(Depths(report), UpTo(7));
  EXPECT_LT(report.iterations[4].score, 999900);
  EXPECT_EQ(report.iterations[5].score, 999992);
}

// Elapsed time in 1/100 s that an iteration of that depth is made to end at.
int stop_depth = 0;
int stop_elapsed = 0;

void SetElapsed(int depth, int /*score*/) {
  curr_time = start_time + (depth == stop_depth ? stop_elapsed : 0);
}

TEST_F(RootSearch, NoIterationStartsThatIsNotExpectedToEnd) {
  struct Row {
    int limit;
    int depth;
    int elapsed;
    bool goes_on;
  };
  constexpr Row kRows[] = {{750, 6, 630, false}, {750, 6, 626, false}, {750, 6, 625, true},
                           {750, 7, 630, false}, {750, 5, 700, true},  {1000, 6, 834, false},
                           {1000, 6, 833, true}, {750, 8, 0, true}};
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.elapsed << " at depth " << row.depth);
    ForgetSearches();
    GoTo(kFortress);
    limit_time = row.limit;
    stop_depth = row.depth;
    stop_elapsed = row.elapsed;
    const Report report = SearchToDepth(9, SetElapsed);
    EXPECT_TRUE(report.found);
    EXPECT_EQ(Depths(report), UpTo(row.goes_on ? 9 : row.depth));
  }
}

TEST_F(RootSearch, EachIterationBeginsWithAPollOfTheStop) {
  GoTo(kFortress);
  const Report report = SearchToDepth(9, [](int depth, int /*score*/) {
    if (depth == 4) is_stop_search = 1;
  });
  EXPECT_TRUE(report.found);
  EXPECT_EQ(Depths(report), UpTo(4));
  EXPECT_EQ(s_depth, 4);
  EXPECT_EQ(cnt_nodes, report.iterations.back().nodes + 1);
}

TEST_F(RootSearch, MateScoresAreSearchedAgainWithAWindowThatHoldsThem) {
  struct Row {
    const char* root;
    int score;
  };
  constexpr Row kRows[] = {{"6k1/5ppp/8/8/8/8/8/R6K w", 999998},
                           {"7k/R7/8/8/8/8/8/1R5K b", -999997}};
  for (const Row& row : kRows) {
    GoTo(row.root);
    const Report report = SearchToDepth(4);
    EXPECT_EQ(report.iterations.back().score, row.score) << row.root;
    EXPECT_EQ(search_score, row.score);
  }
}

TEST_F(RootSearch, LinesOfAnIterationAreMergedIntoTheTree) {
  GoTo(kMiddleGame);
  const Report report = SearchToDepth(4);
  EXPECT_EQ(pv_table, nullptr);
  // The newest line is in front, move by move.
  const PvNode* node = pv_tree.root;
  for (int i = 0; pv_line[i] != 0; ++i) {
    ASSERT_NE(node, nullptr);
    EXPECT_EQ(node->move, pv_line[i]) << i;
    node = node->child;
  }
  EXPECT_EQ(MoveToStr(pv_line[0]), report.move);
}

// --- the clock -----------------------------------------------------------------------------------

TEST_F(RootSearch, InterruptedIterationsBestMoveIsPlayed) {
  // Clocks of several speeds stop the search at different places, some of them right after a move
  // of the interrupted iteration has raised alpha.
  int taken_from_interrupted = 0;
  for (std::uint32_t step = 100; step <= 1000; step += 75) {
    ASSERT_TRUE(FreshProcess());
    GoTo(kMiddleGame);
    limit_time = 400;
    test_clock = {};
    test_clock.step = step;
    const Report report = SearchToDepth(kMaxIteration);
    ASSERT_TRUE(report.found);
    EXPECT_EQ(ply, 0);
    const std::vector<std::string> words = Words(report.lines.back());
    EXPECT_EQ(words[0], std::to_string(search_depth));
    EXPECT_EQ(words[3], report.move) << "the last move that was published";
    if (is_stop_search != 0 && search_depth == s_depth) ++taken_from_interrupted;
  }
  EXPECT_GT(taken_from_interrupted, 0);
}

TEST_F(RootSearch, StopsAtTheFirstPollFrom95PercentOn) {
  GoTo(kMiddleGame);
  limit_time = 750;
  test_clock.step = 1000;
  const Report report = SearchToDepth(kMaxIteration);
  EXPECT_TRUE(report.found);
  EXPECT_EQ(curr_time - start_time, 800);
  EXPECT_EQ(test_clock.readings, 1 + 8);
  EXPECT_GE(cnt_nodes, 8u * 4096);
}

TEST_F(RootSearch, WithoutAResolvedRootMoveThereIsNone) {
  GoTo(kQueens);
  limit_time = 0;  // the first poll stops
  Move move = 77;
  EXPECT_FALSE(SearchMove(move));
  EXPECT_EQ(search_mv, 0u);
  EXPECT_EQ(FindCurrentNode(), nullptr) << "nothing is learned";
}

// --- result --------------------------------------------------------------------------------------

TEST_F(RootSearch, ResultGoesToTheLearnTable) {
  GoTo(kMiddleGame);
  const Report report = SearchToDepth(4);
  ASSERT_TRUE(report.found);
  const LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->score, search_score);
  EXPECT_EQ(node->depth, search_depth);
  EXPECT_EQ(node->book, 0);
}

TEST_F(RootSearch, ThinkingLinesArePrinted) {
  GoTo("6k1/5ppp/8/8/8/8/8/R6K w");
  root_hooks.max_depth = 2;
  Move move = 0;
  const std::string printed = Printed([&] { SearchMove(move); });
  EXPECT_STREQ(MoveToStr(move), "a1a8");
  EXPECT_NE(printed.find(" a1a8 \n"), std::string::npos);
  EXPECT_EQ(printed.substr(0, 2), " 2");
}

TEST_F(RootSearch, BeginsWithTheFirstIterationThatAToolWants) {
  static std::vector<int> depths;
  root_hooks.after_iteration = [](int depth, int) { depths.push_back(depth); };
  root_hooks.max_depth = 4;
  for (const int first : {1, 2, 3}) {
    depths.clear();
    GoTo(kStart);
    root_hooks.first_depth = first;
    Move move = 0;
    EXPECT_TRUE(SearchMove(move));
    std::vector<int> wanted;
    for (int depth = first; depth <= 4; ++depth) wanted.push_back(depth);
    EXPECT_EQ(depths, wanted);
  }
}

TEST_F(RootSearch, SameSearchTwiceVisitsTheSameNodes) {
  std::vector<std::string> lines[2];
  std::uint64_t nodes[2];
  for (int run = 0; run < 2; ++run) {
    ASSERT_TRUE(FreshProcess());
    GoTo(std::string(kStart) + " moves e2e4 c7c5");
    lines[run] = SearchToDepth(6).lines;
    nodes[run] = cnt_nodes;
  }
  EXPECT_EQ(lines[0], lines[1]);
  EXPECT_EQ(nodes[0], nodes[1]);
}

TEST_F(RootSearch, LeavesTheGameAsItWas) {
  GoTo(std::string(kStart) + " moves e2e4 c7c5 g1f3");
  const GameRecord before = g;
  std::vector<std::uint32_t> repetitions(std::begin(repetition_set), std::end(repetition_set));
  SearchToDepth(5);
  EXPECT_EQ(ply, 0);
  EXPECT_TRUE(IsSameGame(before));
  EXPECT_TRUE(std::equal(repetitions.begin(), repetitions.end(), repetition_set));
}

TEST_F(RootSearch, MovesKeptForRedoSurvive) {
  for (const int randomised : {0, 1}) {
    SCOPED_TRACE(randomised != 0 ? "randomised" : "normal");
    ASSERT_TRUE(FreshProcess());
    GoTo(std::string(kStart) + " moves e2e4 c7c5 g1f3 d7d6");
    const std::vector<Move> game(g.game_moves, g.game_moves + 4);
    for (int i = 0; i < 3; ++i) UndoGameMove();
    is_rnd_search = randomised;
    limit_time = 100;
    test_clock.step = 100;
    Move move = 0;
    Printed([&] { EXPECT_TRUE(SearchMove(move)); });
    is_rnd_search = 0;
    EXPECT_EQ(g.game_len, 1);
    EXPECT_EQ(g.game_max, 4);
    EXPECT_EQ(std::vector<Move>(g.game_moves, g.game_moves + 4), game);
    for (int i = 0; i < 3; ++i) RedoGameMove();
    EXPECT_EQ(g.game_len, 4);
    EXPECT_NE(Find("d2d4"), 0u) << "the position after 1 e4 c5 2 Nf3 d6";
  }
}

TEST_F(RootSearch, GameOf400MovesIsSearched) {
  ASSERT_TRUE(PlayKnightMoves(kMaxGameMoves));
  const Report report = SearchToDepth(4);
  EXPECT_TRUE(report.found);
  EXPECT_EQ(g.game_len, kMaxGameMoves);
  EXPECT_EQ(LineLen(search_list), kMaxGameMoves + std::min(4, LineLen(pv_line)));
}

}  // namespace

}  // namespace tarvyle
