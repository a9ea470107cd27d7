// The search of nodes on the principal variation and of the root.

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "search/history.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// A search of the root with its list, quietly. The lines found are dropped.
int SearchTheRoot(const NodeArguments& arguments) {
  EXPECT_TRUE(LegalMoveList());
  status_sink = [](const SearchStatus&) {};
  const int score = SearchOnPv(arguments);
  DropLines();
  status_sink = nullptr;
  return score;
}

using PvSearch = SearchTest;

TEST_F(PvSearch, EmptyRootListIs0) {
  for (const char* root : {"7k/5Q2/6K1/8/8/8/8/8 b", "7k/6Q1/6K1/8/8/8/8/8 b"}) {
    GoTo(root);
    EXPECT_EQ(SearchTheRoot(Depth(3)), 0) << root;
    EXPECT_EQ(search_mv, 0u);
  }
  GoTo(kStart);
  ASSERT_TRUE(LegalMoveList());
  treeCnt[0] = treeCnt[1];  // every move set aside
  EXPECT_EQ(SearchOnPv(Depth(3)), 0);
}

TEST_F(PvSearch, TableNeverEndsANode) {
  GoTo(kMiddleGame, "f1e1");
  const Move move = Find("a7a6");
  HashInsert(4321, kInfinity, 50, move);
  EXPECT_NE(SearchOnPv(Depth(2)), 4321);
  EXPECT_NE(cut_forse[1], kTableCut);
  EXPECT_GT(cnt_nodes, 20u);
}

TEST_F(PvSearch, TableMoveIsTriedEarlyAboveTheRootOnly) {
  // White's quiet table move becomes the first to be searched, so its child gets the full window
  // and stores itself even though the move is a bad one.
  PLAY_STYLE = kKnowledge2;
  struct Row {
    const char* root;
    const char* moves;
    bool probed;
  };
  constexpr Row kRows[] = {{"4k3/8/8/8/8/2n5/4P3/4KR2 b", "e8e7", true},
                           {"4k3/8/8/8/8/2n5/4P3/4KR2 w", "", false}};
  for (const Row& row : kRows) {
    Forget();
    PLAY_STYLE = kKnowledge2;
    GoTo(row.root, row.moves);
    const Move bad = Find("f1f6");
    HashInsert(0, kInfinity, 1, bad);
    NodeArguments arguments = Depth(2);
    if (ply > 0) {
      SearchOnPv(arguments);
    } else {
      for (int i = 0; i < treeCnt[1]; ++i) sort_val[i] = tree[i] == bad ? -9 : 0;
      SearchTheRoot(arguments);
    }
    EXPECT_EQ(StoredDepthAfter(bad) >= 1, row.probed) << row.root;
    Ascend();
  }
}

TEST_F(PvSearch, OnlyKnowledge2StoresTheRealDepth) {
  for (const int style : {0, 1, 2}) {
    for (const int depth : {2, 4}) {
      SCOPED_TRACE(testing::Message() << play_style_str[style] << ", depth " << depth);
      Forget();
      PLAY_STYLE = style;
      GoTo(kMiddleGame, "f1e1");
      const int score = SearchOnPv(Depth(depth));
      ASSERT_NE(StoredEntry(), nullptr);
      EXPECT_EQ(StoredEntry()->depth, style == 1 ? depth : 1);
      EXPECT_EQ(StoredEntry()->bound, kExact);
      EXPECT_EQ(StoredEntry()->score, score);
      EXPECT_EQ(StoredEntry()->move, gl_find_move[1]);
      EXPECT_EQ(node_line[1], gl_find_move[1]);
      Ascend();
    }
  }
}

TEST_F(PvSearch, NodeWhoseMovesAllFailLowStoresNothing) {
  GoTo(kMiddleGame, "f1e1");
  NodeArguments arguments = Depth(2);
  arguments.alpha = 20000;
  arguments.beta = 20010;
  EXPECT_EQ(SearchOnPv(arguments), 20000);
  EXPECT_EQ(StoredEntry(), nullptr);
}

TEST_F(PvSearch, RootIsNotStoredButCountsForTheHistory) {
  GoTo(kMiddleGame);
  SearchTheRoot(Depth(2));
  EXPECT_EQ(StoredEntry(), nullptr);
  ASSERT_NE(search_mv, 0u);
  EXPECT_GE(History(White, search_mv), 2);
}

TEST_F(PvSearch, RootMovesGetTheirScores) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 w");
  SearchTheRoot(Depth(2));
  std::map<std::string, int> values;
  for (int i = 0; i < treeCnt[1]; ++i) values[MoveToStr(tree[i])] = sort_val[i];
  const Move best = search_mv;
  EXPECT_STREQ(MoveToStr(best), "e4d5");
  EXPECT_EQ(values["e4d5"], search_score);
  for (const auto& [move, value_of_move] : values) {
    if (move != "e4d5") {
      EXPECT_LT(value_of_move, search_score) << move;
    }
  }
}

TEST_F(PvSearch, RootScoresStandAtTheMovesPlaces) {
  // The first move is brought to the front of the list; its score goes with it.
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 w");
  ASSERT_TRUE(LegalMoveList());
  NodeArguments arguments = Depth(2);
  arguments.first_move = Find("e4d5");
  const int score = SearchTheRoot(arguments);
  EXPECT_EQ(tree[0], arguments.first_move);
  EXPECT_EQ(sort_val[0], score);
}

// Looks at every node which root move is under way, and stops the search in the third.
Move current_root_move = 0;
int root_moves_begun = 0;

bool StopInTheThirdRootMove() {
  cnt_nodes = kNodesPerPoll - 1;
  if (ply > 0 && g.game_moves[g.game_len] != current_root_move) {
    current_root_move = g.game_moves[g.game_len];
    ++root_moves_begun;
  }
  return root_moves_begun == 3;
}

int SearchUntilTheThirdRootMove(int depth) {
  EXPECT_TRUE(LegalMoveList());
  for (int i = 0; i < treeCnt[1]; ++i) sort_val[i] = 7654321 - i;
  root_moves_begun = 0;
  current_root_move = 0;
  world.should_stop = StopInTheThirdRootMove;
  cnt_nodes = kNodesPerPoll - 1;
  const int score = SearchOnPv(Depth(depth));
  world.should_stop = nullptr;
  DropLines();
  EXPECT_EQ(is_stop_search, 1);
  return score;
}

TEST_F(PvSearch, StoppedRootMoveKeepsItsOldValue) {
  for (const int style : {0, 1, 2}) {
    SCOPED_TRACE(play_style_str[style]);
    Forget();
    PLAY_STYLE = style;
    GoTo(kMiddleGame);
    status_sink = [](const SearchStatus&) {};
    EXPECT_EQ(SearchUntilTheThirdRootMove(4), 0);
    EXPECT_EQ(tree[2], current_root_move);
    EXPECT_LT(sort_val[0], 7000000) << "the two before it have been judged";
    EXPECT_LT(sort_val[1], 7000000);
    EXPECT_EQ(sort_val[2], 7654321 - 2);
    EXPECT_EQ(sort_val[3], 7654321 - 3);
  }
}

TEST_F(PvSearch, FirstMoveIsSearchedFirst) {
  GoTo(kMiddleGame);
  ASSERT_TRUE(LegalMoveList());
  static Move first_published;
  first_published = 0;
  status_sink = [](const SearchStatus& status) {
    if (first_published == 0) first_published = status.line[0];
  };
  NodeArguments arguments = Depth(2);
  arguments.first_move = Find("a2a3");
  SearchOnPv(arguments);
  DropLines();
  EXPECT_EQ(first_published, arguments.first_move);
}

TEST_F(PvSearch, EachNewBestRootMoveIsPublished) {
  GoTo("2kr1bnr/pp5p/5pp1/3pn3/P7/4PP1P/2PPN1P1/RNBQ1K1R w - -");
  ASSERT_TRUE(LegalMoveList());
  static std::vector<int> scores;
  scores.clear();
  status_sink = [](const SearchStatus& status) { scores.push_back(status.score); };
  const int score = SearchOnPv(Depth(2));
  DropLines();
  ASSERT_GT(scores.size(), 1u);
  EXPECT_TRUE(std::is_sorted(scores.begin(), scores.end()));
  EXPECT_EQ(scores.back(), score);
  EXPECT_EQ(search_score, score);
  EXPECT_EQ(search_depth, 2);
  EXPECT_EQ(search_mv, node_line[0]);
}

TEST_F(PvSearch, RootMoveAboveBetaHasNoReplyInItsLine) {
  // No reply gets that move below beta, so there is none to show; what the probe before wrote while
  // it deepened internally, a little outside the window, must not show either.
  PLAY_STYLE = kKnowledge2;
  GoTo(kMiddleGame);
  const auto search = [](int beta) {
    Forget();
    tree[0] = Find("f1e1");
    treeCnt[1] = 1;
    NodeArguments arguments = Depth(5);
    arguments.beta = beta;
    status_sink = [](const SearchStatus&) {};
    const int score = SearchOnPv(arguments);
    DropLines();
    return score;
  };
  const int score = search(kInfinity);
  ASSERT_NE(node_line[1], 0u) << "inside the window there is one";
  for (int beta = score - 60; beta <= score; beta += 3) {
    if (search(beta) < beta) continue;
    EXPECT_STREQ(MoveToStr(node_line[0]), "f1e1");
    EXPECT_EQ(node_line[1], 0u) << beta - score;
  }
}

// --- extensions ----------------------------------------------------------------------------------

TEST_F(PvSearch, OnlyMovesAboveTheRootsOwnAreExtended) {
  // "knowledge2" probes at the child's depth at once, and that probe stores it.
  struct Row {
    const char* what;
    const char* root;    // for the root, the move before it left out
    const char* deeper;  // the same one ply above a root
    const char* moves;
    const char* move;
    int extension;
  };
  constexpr Row kRows[] = {
      {"quiet", "8/4k3/8/8/8/8/4P3/4K3 w", "4k3/8/8/8/8/8/4P3/4K3 b", "e8e7", "e2e4", 0},
      {"check", "8/4k3/8/8/8/8/8/R3K3 w", "4k3/8/8/8/8/8/8/R3K3 b", "e8e7", "a1a7", 1},
      {"pawn to the seventh row", "8/8/4P3/6k1/8/8/8/4K3 w", "8/8/4P1k1/8/8/8/8/4K3 b", "g6g5",
       "e6e7", 1},
      {"both: never more than one", "3k4/8/4P3/8/8/8/8/4K3 w", "4k3/8/4P3/8/8/8/8/4K3 b", "e8d8",
       "e6e7", 1},
      {"single reply to a check", "6k1/8/8/8/8/8/4RPPP/r5K1 w", "r5k1/8/8/8/8/8/4RPPP/6K1 b",
       "a8a1", "e2e1", 1},
      {"one reply of two", "6k1/8/8/8/8/8/4R1PP/r5K1 w", "r5k1/8/8/8/8/8/4R1PP/6K1 b", "a8a1",
       "e2e1", 0},
  };
  for (const Row& row : kRows) {
    for (const bool at_root : {true, false}) {
      SCOPED_TRACE(testing::Message() << row.what << (at_root ? " at the root" : ""));
      Forget();
      PLAY_STYLE = kKnowledge2;
      GoTo(at_root ? row.root : row.deeper, at_root ? "" : row.moves);
      NodeArguments arguments = Depth(3);
      arguments.first_move = Find(row.move);
      ASSERT_NE(arguments.first_move, 0u);
      if (at_root) {
        SearchTheRoot(arguments);
      } else {
        SearchOnPv(arguments);
      }
      EXPECT_EQ(StoredDepthAfter(arguments.first_move), 2 + (at_root ? 0 : row.extension));
      Ascend();
    }
  }
}

// --- play styles ---------------------------------------------------------------------------------

TEST_F(PvSearch, StylesSearchTheSameRootInTheirOwnWays) {
  std::map<std::uint64_t, int> styles_by_nodes;
  for (const int style : {0, 1, 2}) {
    Forget();
    PLAY_STYLE = style;
    GoTo(kMiddleGame);
    SearchTheRoot(Depth(4));
    styles_by_nodes[cnt_nodes] = style;
  }
  EXPECT_EQ(styles_by_nodes.size(), 3u);
}

TEST_F(PvSearch, MoveThatFailsLowGetsTheProbesOfItsStyle) {
  // A root with one move in its list, which fails low. Every node above the root is cut off by its
  // first reply and a leaf needs one node, so the nodes tell which probes there were.
  constexpr const char* kKings = "k7/8/8/8/8/7p/7P/7K w";
  constexpr const char* kRook = "4k3/8/8/8/8/8/8/R3K3 w";
  struct Row {
    const char* what;
    const char* root;
    const char* move;
    int style;
    int depth;
    std::uint64_t nodes;  // the root's own included
  };
  constexpr Row kRows[] = {
      {"one probe at depth 1: the child and a leaf", kKings, "h1g1", 1, 2, 1 + 2},
      // The full search again is the child, a probed leaf and, as that is above alpha, the leaf.
      {"the same, and a full search in any case", kKings, "h1g1", 0, 2, 1 + 2 + 3},
      {"one probe at depth 0: a leaf", kKings, "h1g1", 2, 2, 1 + 1},
      {"one probe at depth 1, none at 2 after it has failed low", kKings, "h1g1", 2, 3, 1 + 2},
      {"a check is not probed at depth 0, but at 1", kRook, "a1a8", 2, 2, 1 + 2},
      {"no check: probed at depth 0", kRook, "a1a7", 2, 2, 1 + 1},
      {"no check: probed at depth 1, and no more", kRook, "a1a7", 2, 3, 1 + 2},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.what);
    Forget();
    PLAY_STYLE = row.style;
    search_tree_width_null_move_cut = 0;
    GoTo(row.root);
    const Move move = Find(row.move);
    ASSERT_NE(move, 0u);
    tree[0] = move;
    treeCnt[1] = 1;
    NodeArguments arguments = Depth(row.depth);
    arguments.alpha = 20000;
    arguments.beta = 20001;
    EXPECT_EQ(SearchOnPv(arguments), 20000);
    EXPECT_EQ(cnt_nodes, row.nodes);
  }
}

TEST_F(PvSearch, OnlyTheRootsOwnMovesAreSearchedFullyThoughTheyFailLow) {
  // The same position with the same one legal move, above a root.
  PLAY_STYLE = kKnowledge1;
  search_tree_width_null_move_cut = 0;
  GoTo("8/k7/8/8/8/7p/7P/7K b", "a7a8");
  NodeArguments arguments = Depth(2);
  arguments.alpha = 20000;
  arguments.beta = 20001;
  cnt_nodes = 0;
  EXPECT_EQ(SearchOnPv(arguments), 20000);
  EXPECT_EQ(cnt_nodes, 1u + 2u) << "the node, the probed child and its leaf";
}

TEST_F(PvSearch, CheckIsProbedAtBothDepthsThoughItFailsLow) {
  for (const auto& [text, both] : {std::pair{"a1a8", true}, std::pair{"a1a7", false}}) {
    Forget();
    search_tree_width_null_move_cut = 0;
    GoTo("4k3/8/8/8/8/8/8/R3K3 w");
    const Move move = Find(text);
    tree[0] = move;
    treeCnt[1] = 1;
    NodeArguments arguments = Depth(3);
    arguments.alpha = 20000;
    arguments.beta = 20001;
    SearchOnPv(arguments);
    EXPECT_EQ(StoredDepthAfter(move), both ? 2 : 1) << text;
  }
}

void SearchWithStyle(int style) {
  SayAloud();
  PLAY_STYLE = style;
  GoTo(kStart);
  SearchTheRoot(Depth(2));
}

TEST_F(PvSearch, UnknownStyleIsToldAndAborts) {
  for (const int style : {-1, 3, 77}) {
    EXPECT_EXIT(SearchWithStyle(style), testing::KilledBySignal(SIGABRT),
                "^#----> main_search\\(\\); unknow style\n$");
  }
}

TEST_F(PvSearch, EveryStyleFindsAMateInTwo) {
  for (const int style : {0, 1, 2}) {
    Forget();
    PLAY_STYLE = style;
    GoTo("7k/8/8/8/8/8/R7/1R5K w");  // the rooks' ladder
    EXPECT_EQ(SearchTheRoot(Depth(4)), 999996) << play_style_str[style];
  }
}

// --- the stop ------------------------------------------------------------------------------------

TEST_F(PvSearch, StoppedSearchReturns0AndKeepsTheBestMoveFound) {
  // A queen behind: the 0 of a stopped move would be far better than any.
  constexpr const char* kQueenBehind =
      "r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1B2RK1 w - -";
  static SearchStatus last;
  for (const int style : {0, 1, 2}) {
    SCOPED_TRACE(play_style_str[style]);
    Forget();
    PLAY_STYLE = style;
    GoTo(kQueenBehind);
    const GameRecord before = g;
    last = {};
    status_sink = [](const SearchStatus& status) { last = status; };
    EXPECT_EQ(SearchUntilTheThirdRootMove(4), 0);
    EXPECT_NE(search_mv, 0u);
    EXPECT_NE(search_mv, current_root_move);
    EXPECT_EQ(gl_find_move[0], search_mv);
    EXPECT_EQ(node_line[0], search_mv);
    EXPECT_EQ(search_list[0], search_mv);
    EXPECT_LT(search_score, -3000);
    EXPECT_EQ(search_score, last.score);
    EXPECT_EQ(ply, 0);
    EXPECT_EQ(std::memcmp(g.board, before.board, sizeof g.board), 0);
    EXPECT_EQ(g.key, before.key);
  }
}

TEST_F(PvSearch, ReplyIsForgottenBeforeEachProbe) {
  // A child that a null move cuts off leaves no reply: what stood there must not pass for one.
  GoTo("4k3/8/8/8/8/8/4P3/4K3 w");
  search_tree_width_null_move_cut = 1;
  gl_find_move[1] = 77;
  NodeArguments arguments = Depth(3);
  arguments.alpha = 20000;
  arguments.beta = 20001;
  SearchTheRoot(arguments);
  EXPECT_EQ(cut_forse[1], kNullMoveCut);
  EXPECT_EQ(gl_find_move[1], 0u);
}

}  // namespace

}  // namespace tarvyle
