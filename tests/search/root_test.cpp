// The root search: preparation, book, iterations, result.

#include "search/root.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <set>

#include "eval/evaluate.h"
#include "pv/line.h"
#include "pv/tree.h"
#include "search/history.h"
#include "tests/support/search_support.h"

namespace tarvyle::tests {

namespace {

constexpr const char* kMiddleGame =
    "r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - -";

// Both sides have so many captures that no move of depth 2 is resolved within 4096 nodes.
constexpr const char* kQueens = "qqqqkqqq/qqqqqqqq/8/8/8/8/QQQQQQQQ/QQQQKQQQ w";

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

TEST_F(RootSearch, StartsFromAFreshState) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b");
  std::fill_n(killer, kPlyArray, 7);
  std::fill_n(pv_killer, kPlyArray, 7);
  std::fill_n(pv_line, kLineSize, 7);
  search_mv = 7;
  search_score = search_depth = 7;
  root_side = White;
  cnt_nodes = 99;
  is_stop_search = 1;
  set_dir(White);
  HashInsert(1, 2, 3, 4);
  test_clock.milliseconds = 5000;
  start_time = 0;
  root_hooks.max_depth = 1;  // no iteration
  Move move = 0;
  EXPECT_FALSE(SearchMove(move));
  EXPECT_TRUE(std::all_of(killer, killer + kPlyArray, [](Move m) { return m == 0; }));
  EXPECT_TRUE(std::all_of(pv_killer, pv_killer + kPlyArray, [](Move m) { return m == 0; }));
  EXPECT_TRUE(std::all_of(pv_line, pv_line + kLineSize, [](Move m) { return m == 0; }));
  EXPECT_EQ(search_mv, 0u);
  EXPECT_EQ(search_score, 0);
  EXPECT_EQ(search_depth, 0);
  EXPECT_EQ(root_side, Black);
  EXPECT_EQ(root_mtl[White], 1001000);
  EXPECT_EQ(root_mtl[Black], 1010000);
  EXPECT_EQ(cnt_nodes, 0u);
  EXPECT_EQ(is_stop_search, 0);
  EXPECT_EQ(start_time, 500);
  EXPECT_EQ(dir, dir_black);
  EXPECT_EQ(StoredEntry(), nullptr) << "the table is empty";
}

TEST_F(RootSearch, EvaluationTablesAreThoseOfTheRoot) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 w");
  const int right = score_table[White][King][E1];
  ASSERT_TRUE(InitGame(kStart.data()));
  InitEvaluate();
  ASSERT_NE(score_table[White][King][E1], right);
  ASSERT_TRUE(InitGame("4k3/8/8/8/8/8/4P3/4K3 w"));
  SearchToDepth(2);
  EXPECT_EQ(score_table[White][King][E1], right);
}

TEST_F(RootSearch, NullMoveIsOnWhenBothSidesHaveAQueen) {
  struct Row {
    const char* root;
    int allowed;
  };
  constexpr Row kRows[] = {{"3qk3/8/8/8/8/8/8/3QK3 w", 1},
                           {"4k3/8/8/8/8/8/8/3QK3 w", 0},
                           {"3qk3/8/8/8/8/8/8/4K3 w", 0},
                           {"3rk3/8/8/8/8/8/8/3RK3 w", 0},
                           {"2qqk3/8/8/8/8/8/8/2QQK3 b", 1}};
  for (const Row& row : kRows) {
    for (const int before : {0, 1}) {
      GoTo(row.root);
      search_tree_width_null_move_cut = before;
      root_hooks.max_depth = 1;
      Move move = 0;
      SearchMove(move);
      EXPECT_EQ(search_tree_width_null_move_cut, row.allowed) << row.root;
    }
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

// --- book ----------------------------------------------------------------------------------------

TEST_F(RootSearch, BookAnswersInHalfOfTheCallsWhenAuto) {
  ASSERT_TRUE(HashAllocate(0x10000));  // each search clears the tables
  ASSERT_TRUE(FreshProcess(DataFile("book.bk")));
  property_add("book move", "auto");
  root_hooks.max_depth = 1;
  const std::set<std::string> book = {"e2e4", "d2d4", "c2c4", "g1f3"};
  std::set<std::string> played;
  int answers = 0;
  for (unsigned seed = 1; seed <= 400; ++seed) {
    test_clock.seed = seed;
    std::srand(seed);
    for (int i = 0; i < 20; ++i) std::rand();  // the ordering values
    const bool draws_low = std::rand() % 101 < 51;
    Move move = 0;
    ASSERT_EQ(SearchMove(move), draws_low) << seed;
    if (!draws_low) continue;
    ++answers;
    EXPECT_EQ(search_mv, move);
    EXPECT_EQ(search_score, 0);
    EXPECT_EQ(search_depth, 0);
    EXPECT_EQ(cnt_nodes, 0u);
    EXPECT_EQ(book.count(MoveToStr(move)), 1u) << MoveToStr(move);
    played.insert(MoveToStr(move));
  }
  EXPECT_GT(answers, 150);
  EXPECT_LT(answers, 250);
  EXPECT_EQ(played, book);
  EXPECT_EQ(FindCurrentNode(), nullptr) << "a book move teaches nothing";
}

TEST_F(RootSearch, AnyOtherValueNeverConsultsTheBook) {
  ASSERT_TRUE(HashAllocate(0x10000));
  ASSERT_TRUE(FreshProcess(DataFile("book.bk")));
  root_hooks.max_depth = 1;
  for (const char* text : {"", "Auto", "auto ", " auto", "on", "enable", "automatic"}) {
    property_clear();
    property_add("book move", text);
    for (unsigned seed = 1; seed <= 20; ++seed) {
      test_clock.seed = seed;
      std::srand(seed);
      for (int i = 0; i < 20; ++i) std::rand();
      const int next = std::rand();
      Move move = 0;
      ASSERT_FALSE(SearchMove(move)) << text;
      ASSERT_EQ(std::rand(), next) << "no number is drawn";
    }
  }
  property_clear();
  Move move = 0;
  EXPECT_FALSE(SearchMove(move)) << "no such key";
}

TEST_F(RootSearch, WithoutABookPositionItSearches) {
  property_add("book move", "auto");
  for (unsigned seed = 1; seed <= 5; ++seed) {
    test_clock.seed = seed;
    EXPECT_EQ(Depths(SearchToDepth(2)), UpTo(2));
  }
}

// --- history and predicted line ------------------------------------------------------------------

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
    ResetSearchState();
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

// --- iterations
// ------------------------------------------------------------------------------------

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

void SetElapsed(int depth, int score) {
  NoteIteration(depth, score);
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
    ResetSearchState();
    GoTo(kFortress);
    limit_time = row.limit;
    stop_depth = row.depth;
    stop_elapsed = row.elapsed;
    Report report;
    running_report = &report;
    root_hooks = {9, SetElapsed};
    status_sink = [](const SearchStatus&) {};
    Move move = 0;
    EXPECT_TRUE(SearchMove(move));
    EXPECT_EQ(Depths(report), UpTo(row.goes_on ? 9 : row.depth));
  }
}

TEST_F(RootSearch, EachIterationBeginsWithAPollOfTheStop) {
  GoTo(kFortress);
  Report report;
  running_report = &report;
  root_hooks = {9, [](int depth, int score) {
                  NoteIteration(depth, score);
                  if (depth == 4) is_stop_search = 1;
                }};
  status_sink = [](const SearchStatus&) {};
  Move move = 0;
  EXPECT_TRUE(SearchMove(move));
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

// --- result
// ----------------------------------------------------------------------------------------

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
  GameRecord after = g;
  for (int i = g.game_len; i < kRecordMoves; ++i) after.undo[i] = before.undo[i];
  EXPECT_EQ(std::memcmp(&after, &before, sizeof before), 0);
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

// --- small operations ----------------------------------------------------------------------------

TEST_F(RootSearch, InitSearchResetsTheWholeState) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b");
  std::fill_n(killer, kPlyArray, 7);
  std::fill_n(pv_killer, kPlyArray, 7);
  std::fill_n(pv_line, kLineSize, 7);
  std::fill_n(sort_val, kTreeSize, 7);
  std::fill(std::begin(history), std::end(history), 7);
  search_mv = 7;
  search_score = search_depth = 7;
  treeCnt[0] = 3;
  treeCnt[1] = 9;
  pvInsertToFront(pv_tree, &pv_tree.root, pvNewNode(pv_tree, 77));
  HashInsert(1, 2, 3, 4);
  set_dir(White);
  cnt_nodes = 9;
  is_stop_search = 1;
  root_side = White;
  search_tree_width_null_move_cut = 1;
  test_clock.seed = 11;
  init_search();
  EXPECT_TRUE(std::all_of(killer, killer + kPlyArray, [](Move m) { return m == 0; }));
  EXPECT_TRUE(std::all_of(pv_killer, pv_killer + kPlyArray, [](Move m) { return m == 0; }));
  EXPECT_TRUE(std::all_of(pv_line, pv_line + kLineSize, [](Move m) { return m == 0; }));
  EXPECT_TRUE(std::all_of(sort_val, sort_val + kTreeSize, [](int v) { return v == 0; }));
  EXPECT_TRUE(std::all_of(std::begin(history), std::end(history), [](int c) { return c == 0; }));
  EXPECT_EQ(search_mv, 0u);
  EXPECT_EQ(search_score, 0);
  EXPECT_EQ(search_depth, 0);
  EXPECT_EQ(treeCnt[0], 0);
  EXPECT_EQ(treeCnt[1], 0);
  EXPECT_EQ(pv_tree.root, nullptr);
  EXPECT_EQ(pv_tree.used, 0);
  EXPECT_EQ(StoredEntry(), nullptr);
  EXPECT_EQ(dir, dir_black);
  EXPECT_EQ(cnt_nodes, 0u);
  EXPECT_EQ(is_stop_search, 0);
  EXPECT_EQ(root_side, Black);
  EXPECT_EQ(root_mtl[White], 1001000);
  EXPECT_EQ(root_mtl[Black], 1010000);
  EXPECT_EQ(search_tree_width_null_move_cut, 0);
  const int drawn = std::rand();
  std::srand(11);
  EXPECT_EQ(std::rand(), drawn) << "the generator is seeded";
}

TEST_F(RootSearch, CountsSlidingPieces) {
  struct Row {
    const char* root;
    int white;
    int black;
  };
  constexpr Row kRows[] = {{kStart.data(), 5, 5},
                           {"4k3/8/8/8/8/8/8/4K3 w", 0, 0},
                           {"rbqnk3/pppp4/8/8/8/8/8/QQ2KNN1 w", 2, 3}};
  for (const Row& row : kRows) {
    ASSERT_TRUE(InitGame(row.root));
    EXPECT_EQ(SweepCnt(White), row.white) << row.root;
    EXPECT_EQ(SweepCnt(Black), row.black) << row.root;
  }
}

TEST_F(RootSearch, RepetitionHookDoesNothing) {
  GoTo(std::string(kStart) + " moves e2e4");
  const GameRecord before = g;
  std::vector<std::uint32_t> repetitions(std::begin(repetition_set), std::end(repetition_set));
  set_rep();
  EXPECT_EQ(std::memcmp(&g, &before, sizeof g), 0);
  EXPECT_TRUE(std::equal(repetitions.begin(), repetitions.end(), repetition_set));
}

TEST_F(RootSearch, PhaseRecordIsResetButForItsAmount) {
  PhaseInfo phase;
  std::memset(&phase, 0x55, sizeof phase);
  EXPECT_EQ(tree_is_good(phase), 0x55555555);
  PhaseInfoReset(phase, 42);
  for (const int counter : phase.counters) EXPECT_EQ(counter, 0);
  for (const int counter : phase.more_counters) EXPECT_EQ(counter, 0);
  EXPECT_EQ(phase.flags[0], 0);
  EXPECT_EQ(phase.flags[1], 0);
  EXPECT_EQ(phase.amount, 42);
  EXPECT_EQ(tree_is_good(phase), 0);
  phase.flags[0] = 1;
  EXPECT_EQ(tree_is_good(phase), 1);
}

TEST_F(RootSearch, MergingTakesTheOldestLineFirst) {
  const Move lines[3][3] = {{1, 2, 0}, {3, 4, 0}, {1, 5, 0}};
  for (const auto& line : lines) {
    pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  }
  MergeLines();
  EXPECT_EQ(pv_table, nullptr);
  EXPECT_EQ(RootListOfTree(), (std::vector<Move>{1, 3}));
  EXPECT_EQ(pv_tree.root->child->move, 5u);
  EXPECT_EQ(pv_tree.root->child->next->move, 2u);
}

TEST_F(RootSearch, DroppedLinesDoNotReachTheTree) {
  const Move line[] = {1, 2, 0};
  pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
  DropLines();
  EXPECT_EQ(pv_table, nullptr);
  EXPECT_EQ(pv_tree.root, nullptr);
}

}  // namespace

}  // namespace tarvyle::tests
