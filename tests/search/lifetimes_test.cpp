// How long things live: what each beginning makes new, and what it leaves alone.

#include "search/lifetimes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "position/directions.h"
#include "pv/line.h"
#include "pv/tree.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using Lifetimes = SearchTest;

// --- the ladder ----------------------------------------------------------------------------------

// Every record that has a life, as it is at some time.
struct Lives {
  SearchSettings settings;
  SearchMemory memory;
  GameRecord game;
  SearchState search;
  SearchClock stage;
  IterationState iteration;
  bool learned;
};

Lives LivesNow() {
  return {search_settings,
          search_memory,
          g,
          search_state,
          search_clock,
          iteration_state,
          std::any_of(std::begin(learn), std::end(learn),
                      [](const LearnNode* node) { return node != nullptr; })};
}

bool SameRecord(const GameRecord& a, const GameRecord& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// What a search for the current root begins with.
SearchState StateForRoot() {
  SearchState state;
  state.root_side = g.side;
  state.root_mtl[White] = g.material[White];
  state.root_mtl[Black] = g.material[Black];
  state.search_tree_width_null_move_cut = 0;  // no queens
  return state;
}

template <typename Record>
void FillWithGarbage(Record& record) {
  std::memset(static_cast<void*>(&record), 0x5A, sizeof record);
}

// Leaves no record as it is when it begins, to the last byte.
void SpoilAllLives() {
  GoTo("4k3/4p3/8/8/8/8/4P3/4K3 b - - moves e7e5 e2e4 e8e7 e1e2");
  Descend("e7e6");
  InsertNodeLearn();
  FillWithGarbage(search_settings);
  FillWithGarbage(search_state);
  FillWithGarbage(search_clock);
  FillWithGarbage(iteration_state);
  DropLines();
  FillWithGarbage(search_memory);
  pv_table = nullptr;
  const Move line[] = {1, 0};
  pvt_push_last(&pv_table, reinterpret_cast<QueueValue>(LineDup(line)));
}

const char* Fate(bool is_new, bool is_kept) { return is_new ? "new" : is_kept ? "kept" : "mixed"; }

// What has become of the lives: "settings kept, learned new, ...".
std::string Fates(const Lives& before, const GameRecord& new_game) {
  const Lives now = LivesNow();
  std::string text;
  const auto add = [&text](const char* name, bool is_new, bool is_kept) {
    text += std::string(text.empty() ? "" : ", ") + name + " " + Fate(is_new, is_kept);
  };
  add("settings", now.settings == SearchSettings{}, now.settings == before.settings);
  add("learned", !now.learned, now.learned);
  add("memory", now.memory == SearchMemory{}, now.memory == before.memory);
  add("game", SameRecord(now.game, new_game), SameRecord(now.game, before.game));
  add("search", now.search == SearchState{} || now.search == StateForRoot(),
      now.search == before.search);
  add("stage", now.stage == SearchClock{}, now.stage == before.stage);
  add("iteration", now.iteration == IterationState{} || s_depth == 7,
      now.iteration == before.iteration);
  return text;
}

TEST_F(Lifetimes, BeginNewOnesOfAllThatIsShorterAndOfNothingElse) {
  struct Rung {
    void (*begin)();
    const char* fates;
  };
  constexpr Rung kLadder[] = {
      {BeginProcess,
       "settings new, learned new, memory new, game new, search new, stage new, iteration new"},
      {ForgetAll,
       "settings kept, learned new, memory new, game new, search new, stage new, iteration new"},
      {ForgetSearches,
       "settings kept, learned kept, memory new, game kept, search new, stage new, iteration new"},
      {BeginGame,
       "settings kept, learned kept, memory kept, game new, search kept, stage kept, "
       "iteration kept"},
      {BeginSearch,
       "settings kept, learned kept, memory kept, game kept, search new, stage new, "
       "iteration new"},
      {TimeReset,
       "settings kept, learned kept, memory kept, game kept, search kept, stage new, "
       "iteration kept"},
      {[] { BeginIteration(7); },
       "settings kept, learned kept, memory kept, game kept, search kept, stage kept, "
       "iteration new"}};
  const GameRecord new_game = g;
  for (const Rung& rung : kLadder) {
    SpoilAllLives();
    const Lives before = LivesNow();
    rung.begin();
    EXPECT_EQ(Fates(before, new_game), rung.fates);
    search_settings = {};
    ForgetAll();
  }
}

TEST_F(Lifetimes, InitSearchClearsTheHistoryAloneOfWhatIsRemembered) {
  SpoilAllLives();
  const Lives before = LivesNow();
  init_search();
  SearchMemory wanted = before.memory;
  std::fill(std::begin(wanted.history), std::end(wanted.history), 0);
  EXPECT_EQ(search_memory, wanted);
  EXPECT_EQ(search_state, StateForRoot());
  EXPECT_EQ(search_settings, before.settings);
  EXPECT_EQ(iteration_state, IterationState{});
  EXPECT_TRUE(SameRecord(g, before.game));
}

// --- process, game -------------------------------------------------------------------------------

TEST_F(Lifetimes, ForgettingSearchesEmptiesTheTreeOfPrincipalVariations) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 w");
  SearchToDepth(4);
  ASSERT_NE(pv_tree.root, nullptr);
  ForgetSearches();
  EXPECT_EQ(pv_tree.root, nullptr);
  EXPECT_EQ(pv_tree.used, 0);
}

// Makes a game and a search under way of what is at hand.
void GoAstray() {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 b - - moves e8e7", "e2e4");
  treeCnt[0] = 3;
  treeCnt[1] = 5;
}

void ExpectTheRootOfANewGame() {
  EXPECT_EQ(treeCnt[0], 0);
  EXPECT_EQ(treeCnt[1], 0);
  EXPECT_EQ(ply, 0);
  EXPECT_EQ(dir, dir_white);
}

std::uint32_t EnteredPositions() {
  return std::accumulate(std::begin(repetition_set), std::end(repetition_set), 0u);
}

TEST_F(Lifetimes, ANewGameBeginsAtTheRootAndLeavesTheRepetitionCounters) {
  GoAstray();
  const std::uint32_t entered = EnteredPositions();
  BeginGame();
  ExpectTheRootOfANewGame();
  EXPECT_EQ(EnteredPositions(), entered + 1);
}

TEST_F(Lifetimes, ForgettingAllLeavesOnePositionEntered) {
  GoAstray();
  ForgetAll();
  ExpectTheRootOfANewGame();
  EXPECT_EQ(EnteredPositions(), 1u) << "the start position";
}

// --- search --------------------------------------------------------------------------------------

// Spoils whatever a search starts from.
void SpoilBeforeSearch() {
  std::fill_n(killer, kPlyArray, 7);
  std::fill_n(pv_killer, kPlyArray, 7);
  std::fill_n(pv_line, kLineSize, 7);
  std::fill_n(sort_val, kTreeSize, 7);
  std::fill(std::begin(history), std::end(history), 7);
  search_mv = 7;
  search_score = search_depth = 7;
  root_side = White;
  search_tree_width_null_move_cut = 1;
  cnt_nodes = 99;
  is_stop_search = 1;
  start_time = 0;
  set_dir(White);
  HashInsert(1, 2, 3, 4);
  pvInsertToFront(pv_tree, &pv_tree.root, pvNewNode(pv_tree, 77));
}

// What every search starts from, in a position of Black's queen against White's pawn.
constexpr const char* kRoot = "4k3/8/8/3q4/4P3/8/8/4K3 b";
void ExpectPreparedRoot() {
  const auto zero = [](Move move) { return move == 0; };
  EXPECT_TRUE(std::all_of(killer, killer + kPlyArray, zero));
  EXPECT_TRUE(std::all_of(pv_killer, pv_killer + kPlyArray, zero));
  EXPECT_TRUE(std::all_of(pv_line, pv_line + kLineSize, zero));
  EXPECT_EQ(search_mv, 0u);
  EXPECT_EQ(search_score, 0);
  EXPECT_EQ(search_depth, 0);
  EXPECT_EQ(root_side, Black);
  EXPECT_EQ(root_mtl[White], 1001000);
  EXPECT_EQ(root_mtl[Black], 1010000);
  EXPECT_EQ(search_tree_width_null_move_cut, 0);
  EXPECT_EQ(cnt_nodes, 0u);
  EXPECT_EQ(is_stop_search, 0);
  EXPECT_EQ(start_time, 500);
  EXPECT_EQ(dir, dir_black);
  EXPECT_EQ(StoredEntry(), nullptr) << "the table is empty";
}

TEST_F(Lifetimes, EverySearchStartsFromAFreshState) {
  for (const int randomised : {0, 1}) {
    GoTo(kRoot);
    SpoilBeforeSearch();
    test_clock.milliseconds = 5000;
    if (randomised != 0) {
      init_search();
    } else {
      root_hooks.max_depth = 1;  // no iteration
      Move move = 0;
      EXPECT_FALSE(SearchMove(move));
    }
    ExpectPreparedRoot();
  }
}

TEST_F(Lifetimes, InitSearchForgetsHistoryTreeAndRootListToo) {
  GoTo(kRoot);
  SpoilBeforeSearch();
  treeCnt[0] = 3;
  treeCnt[1] = 9;
  test_clock.seed = 11;
  init_search();
  EXPECT_TRUE(std::all_of(sort_val, sort_val + kTreeSize, [](int v) { return v == 0; }));
  EXPECT_TRUE(std::all_of(std::begin(history), std::end(history), [](int c) { return c == 0; }));
  EXPECT_EQ(treeCnt[0], 0);
  EXPECT_EQ(treeCnt[1], 0);
  EXPECT_EQ(pv_tree.root, nullptr);
  EXPECT_EQ(pv_tree.used, 0);
  const int drawn = std::rand();
  std::srand(11);
  EXPECT_EQ(std::rand(), drawn) << "the generator is seeded";
}

TEST_F(Lifetimes, EvaluationTablesAreThoseOfTheRoot) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 w");
  const int right = score_table[White][King][E1];
  ASSERT_TRUE(InitGame(kStart.data()));
  InitEvaluate();
  ASSERT_NE(score_table[White][King][E1], right);
  ASSERT_TRUE(InitGame("4k3/8/8/8/8/8/4P3/4K3 w"));
  SearchToDepth(2);
  EXPECT_EQ(score_table[White][King][E1], right);
}

TEST_F(Lifetimes, NullMoveIsOnWhenBothSidesHaveAQueen) {
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

TEST_F(Lifetimes, RepetitionHookDoesNothing) {
  GoTo(std::string(kStart) + " moves e2e4");
  const GameRecord before = g;
  std::vector<std::uint32_t> repetitions(std::begin(repetition_set), std::end(repetition_set));
  set_rep();
  EXPECT_EQ(std::memcmp(&g, &before, sizeof g), 0);
  EXPECT_TRUE(std::equal(repetitions.begin(), repetitions.end(), repetition_set));
}

}  // namespace

}  // namespace tarvyle
