// The staged move picker and the values that it orders by.

#include "search/order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <map>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "position/movegen.h"
#include "search/history.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

// Thirty moves above the value 0 for White, and one more.
constexpr const char* kThirty = "r1r1r1r1/1P1P1P1P/K1p3p1/8/p3Q2p/8/2p1p1p1/k7 b";
constexpr const char* kThirtyOne = "r1r1r1r1/1P1P1P1P/2p3p1/8/p3Q2p/8/2p1p1p1/k1K5 b";

// Every move that the picker offers.
struct Offer {
  Move move;
  bool from_pv;
};

std::vector<Offer> OffersOf(MovePicker& picker) {
  std::vector<Offer> offers;
  Move move = 0;
  while (NextMove(picker, move)) offers.push_back({move, picker.from_pv});
  return offers;
}

// The moves as a text; those named by the caller or the tree in brackets.
std::string Text(const std::vector<Offer>& offers) {
  std::string text;
  for (const Offer& offer : offers) {
    if (!text.empty()) text += ' ';
    text += offer.from_pv ? "[" + std::string(MoveToStr(offer.move)) + "]" : MoveToStr(offer.move);
  }
  return text;
}

std::string OrderOf(MovePicker picker) {
  EXPECT_TRUE(Generate());
  return Text(OffersOf(picker));
}

// The generated move with that text (castling and checks are not looked at).
Move Generated(const std::string& text) {
  EXPECT_TRUE(Generate());
  for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
    if (MoveToStr(tree[i]) == text) return tree[i];
  }
  ADD_FAILURE() << text << " is not generated";
  return 0;
}

using Ordering = SearchTest;

// --- values ------------------------------------------------------------------------------------

TEST_F(Ordering, CapturesGoByVictimThenByCheapestAttackerAndPromotionsByPiece) {
  struct Row {
    const char* root;
    const char* moves;  // the last one is "the move just made"
    const char* move;
    int value;
  };
  constexpr Row kRows[] = {
      {"4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7", "e4d5", 10000 - 1},
      {"4k3/8/8/3n4/4P3/8/8/4K3 b", "e8e7", "e4d5", 3000 - 1},
      {"4k3/8/8/3r4/8/4N3/8/4K3 b", "e8e7", "e3d5", 5000 - 2},
      {"4k3/8/8/3b4/8/1B6/8/4K3 b", "e8e7", "b3d5", 3000 - 3},
      {"4k3/8/8/3p4/8/8/8/3RK3 b", "e8e7", "d1d5", 1000 - 4},
      {"4k3/8/8/3p4/8/8/8/3QK3 b", "e8e7", "d1d5", 1000 - 5},
      {"4k3/8/8/8/8/8/4p3/4K3 b", "e8e7", "e1e2", 1000 - 6},
      {"4k3/8/8/8/8/8/4p3/4K3 b", "e8e7", "e1f2", 0},       // quiet
      {"4k3/8/8/8/8/8/8/4K2R b K", "e8e7", "e1g1", 0},      // castling
      {"4k3/8/8/8/4p3/8/3P4/4K3 w", "d2d4", "e4d3", 2000},  // en passant
      {"4k3/8/8/2pq4/4P3/8/8/4K3 b", "d5d4", "e4e5", 0},
      {"4k3/8/2p5/3P4/4P3/8/8/4K3 b", "c6d5", "e4d5", 1000 - 1 + 5000},  // a recapture
      {"4k3/3P4/8/8/8/8/8/4K3 b", "e8f7", "d7d8q", 10000},
      {"4k3/3P4/8/8/8/8/8/4K3 b", "e8f7", "d7d8n", 3000},
      {"2r1k3/3P4/8/8/8/8/8/4K3 b", "e8f7", "d7c8q", 5000 - 1 + 10000},  // a pawn captures
      {"2r1k3/3P4/8/8/8/8/8/4K3 b", "e8f7", "d7c8n", 5000 - 1 + 3000},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.root << ' ' << row.moves << ' ' << row.move);
    GoTo(row.root, row.moves);
    EXPECT_EQ(CaptureValue(Generated(row.move), LastMove()), row.value);
    Ascend();
  }
}

TEST_F(Ordering, WithoutAMoveBeforeItACaptureOnA8CountsAsARecapture) {
  GoTo("r3k3/8/8/8/8/8/8/R3K3 w");
  EXPECT_EQ(LastMove(), 0u);
  EXPECT_EQ(CaptureValue(Generated("a1a8"), LastMove()), 5000 - 4 + 5000);
}

// --- stages ------------------------------------------------------------------------------------

TEST_F(Ordering, QuietMovesGoByAdvanceThenByOrigin) {
  struct Row {
    const char* root;
    const char* moves;
    const char* order;
  };
  constexpr Row kRows[] = {
      {"4k3/8/8/8/8/8/4P3/4K3 b", "e8e7", "e2e4 e1d2 e2e3 e1f2 e1d1 e1f1"},
      {"4k3/4p3/8/8/8/8/8/4K3 w", "e1e2", "e7e5 e8f7 e7e6 e8d7 e8f8 e8d8"},
      // Equal steps: from the greater square for White, from the smaller one for Black.
      {"7k/8/8/8/8/8/P1K4P/8 b", "h8g7",
       "h2h4 a2a4 c2b3 h2h3 c2c3 a2a3 c2d3 c2b2 c2d2 c2b1 c2c1 c2d1"},
      {"8/p1k4p/8/8/8/8/8/7K w", "h1g2",
       "a7a5 h7h5 c7d6 a7a6 c7c6 h7h6 c7b6 c7d7 c7b7 c7d8 c7c8 c7b8"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.root << ' ' << row.moves);
    GoTo(row.root, row.moves);
    EXPECT_EQ(OrderOf({}), row.order);
    Ascend();
  }
}

TEST_F(Ordering, HistoryComesBeforeAdvance) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 b", "e8e7");
  History(White, Generated("e1f1")) = 1;
  History(White, Generated("e1d1")) = 2;
  History(Black, Generated("e1f2")) = 9;  // the other side's does not count
  EXPECT_EQ(OrderOf({}), "e1d1 e1f1 e2e4 e1d2 e2e3 e1f2");
}

TEST_F(Ordering, GreatestHistoryDoesNotOverflow) {
  GoTo("4k3/8/8/8/8/8/4P3/4K3 b", "e8e7");
  History(White, Generated("e1f1")) = MAX_HIST;
  History(White, Generated("e2e4")) = MAX_HIST - 1;
  EXPECT_EQ(OrderOf({}), "e1f1 e2e4 e1d2 e2e3 e1f2 e1d1");
}

TEST_F(Ordering, CapturesAndPromotionsComeByValueBeforeQuietMoves) {
  GoTo("1n1bk3/P7/8/3q1p2/4P3/2N5/8/6K1 b", "e8e7");
  EXPECT_EQ(OrderOf({}),
            "a7b8q a7a8q e4d5 c3d5 a7b8n a7a8n e4f5 "
            "c3b5 c3a4 g1f2 g1g2 e4e5 g1h2 g1f1 g1h1 c3a2 c3e2 c3b1 c3d1");
}

TEST_F(Ordering, QuietTableMoveComesBeforeAQueenCapture) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  MovePicker picker{};
  picker.tt_move = Generated("e1f1");
  EXPECT_EQ(OrderOf(picker).substr(0, 9), "e1f1 e4d5");
}

TEST_F(Ordering, TableMoveHasItsOtherBonusesToo) {
  struct Row {
    const char* root;
    const char* last;
    const char* table_move;
    const char* killer;
    const char* pv_killer;
    const char* first_two;
  };
  // The capture with promotion, 10000 - 1 + 10000, against a quiet table move's 20000.
  constexpr const char* kQuiet = "2q1k3/1P6/8/8/8/8/8/6K1 b";
  // The same as a recapture, 24999, against a knight that takes a rook as the table move: 24998.
  constexpr const char* kCapture = "2Rqk3/1P6/6r1/4N3/8/8/8/5K2 b";
  // And against a pawn that takes the rook: equal, so the list decides.
  constexpr const char* kEqual = "2Rqk3/1P6/6r1/7P/8/8/8/5K2 b";
  constexpr Row kRows[] = {
      {kQuiet, "e8e7", "g1f1", "", "", "g1f1 b7c8q"},
      {kQuiet, "e8e7", "g1f1", "", "b7c8q", "b7c8q g1f1"},
      {kQuiet, "e8e7", "g1f1", "g1f1", "b7c8q", "g1f1 b7c8q"},
      {kQuiet, "e8e7", "g1f1", "b7c8q", "", "b7c8q g1f1"},
      {kQuiet, "e8e7", "g1f1", "b7c8q", "g1f1", "b7c8q g1f1"},
      {kQuiet, "e8e7", "g1f1", "g1f1", "g1f1", "g1f1 b7c8q"},
      {kCapture, "d8c8", "e5g6", "", "", "b7c8q e5g6"},
      {kCapture, "d8c8", "e5g6", "e5g6", "", "e5g6 b7c8q"},
      {kCapture, "d8c8", "e5g6", "", "e5g6", "e5g6 b7c8q"},
      {kCapture, "d8c8", "e5g6", "b7c8q", "e5g6", "b7c8q e5g6"},
      {kCapture, "d8c8", "e5g6", "e5g6", "b7c8q", "e5g6 b7c8q"},
      {kCapture, "d8c8", "f1f2", "f1f2", "f1f2", "b7c8q f1f2"},  // 22980
      {kEqual, "d8c8", "h5g6", "", "", "b7c8q h5g6"},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row.table_move << " against b7c8q, killers " << row.killer
                                    << ", " << row.pv_killer);
    GoTo(row.root, row.last);
    MovePicker picker{};
    picker.tt_move = Generated(row.table_move);
    killer[1] = row.killer[0] != '\0' ? Generated(row.killer) : 0;
    pv_killer[1] = row.pv_killer[0] != '\0' ? Generated(row.pv_killer) : 0;
    EXPECT_EQ(OrderOf(picker).substr(0, std::string_view(row.first_two).size()), row.first_two);
    Ascend();
  }
}

TEST_F(Ordering, KillersAreWorthAlmostTwoPawnsAndAlmostOne) {
  struct Row {
    const char* killer;
    const char* pv_killer;
    const char* front;
  };
  // Captures: a knight for a pawn's 2999, a pawn for 999 or a king's 994.
  constexpr Row kRows[] = {
      {"", "", "c4d5 g4f5 h2h3 "},          {"g4g5", "", "c4d5 g4g5 g4f5 h2h3 "},
      {"", "g4g5", "c4d5 g4f5 h2h3 g4g5 "}, {"g4g5", "g4g5", "c4d5 g4g5 g4f5 h2h3 "},
      {"h2h3", "", "c4d5 h2h3 g4f5 "},      {"g4f5", "", "c4d5 g4f5 h2h3 "},
      {"", "h2h3", "c4d5 h2h3 g4f5 "},      {"h2h3", "g4f5", "c4d5 h2h3 g4f5 "},
      {"g4f5", "h2h3", "c4d5 g4f5 h2h3 "},  {"h2h3", "h2h3", "h2h3 c4d5 g4f5 "},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << "killers " << row.killer << ", " << row.pv_killer);
    GoTo("4k3/8/8/3n1p2/2P3P1/7p/7K/8 b", "e8e7");
    killer[1] = row.killer[0] != '\0' ? Generated(row.killer) : 0;
    pv_killer[1] = row.pv_killer[0] != '\0' ? Generated(row.pv_killer) : 0;
    EXPECT_EQ(OrderOf({}).substr(0, std::string_view(row.front).size()), row.front);
    Ascend();
  }
}

TEST_F(Ordering, KillersOfOtherPliesDoNotCount) {
  GoTo("4k3/8/8/3n1p2/2P3P1/8/7K/8 b", "e8e7");
  const std::string plain = OrderOf({});
  killer[0] = killer[2] = pv_killer[0] = pv_killer[2] = Generated("g4g5");
  EXPECT_EQ(OrderOf({}), plain);
}

TEST_F(Ordering, KillersAreTakenAtTheFirstCall) {
  GoTo("4k3/8/8/3n1p2/2P3P1/8/7K/8 b", "e8e7");
  const Move g4g5 = Generated("g4g5");
  const Move c4c5 = Generated("c4c5");
  killer[1] = g4g5;
  pv_killer[1] = c4c5;
  pv_line[1] = g4g5;
  MovePicker picker{};
  picker.first_move = Generated("h2h1");
  Move move = 0;
  ASSERT_TRUE(NextMove(picker, move));
  killer[1] = pv_killer[1] = 0;
  EXPECT_EQ(picker.killer_move, g4g5);
  EXPECT_EQ(picker.pv_killer_move, c4c5);
  EXPECT_EQ(picker.line_move, g4g5);
  EXPECT_EQ(Text(OffersOf(picker)).substr(0, 20), "c4d5 g4g5 g4f5 c4c5 ");
}

TEST_F(Ordering, RootsLineIsNotTakenInANullMoveSearch) {
  GoTo("4k3/8/8/3n1p2/2P3P1/8/7K/8 b", "e8e7");
  pv_line[1] = Generated("g4g5");
  doNull = 1;
  MovePicker picker{};
  Move move = 0;
  ASSERT_TRUE(NextMove(picker, move));
  EXPECT_EQ(picker.line_move, 0u);
}

TEST_F(Ordering, EqualValuesAreTakenInListOrder) {
  // Two pawns take two knights; the list has the lower slot's captures first.
  GoTo("4k3/8/8/1n3n2/2P1P3/8/8/4K3 b", "e8e7");
  EXPECT_EQ(OrderOf({}).substr(0, 9), "c4b5 e4f5");
}

TEST_F(Ordering, ThirtyTacticalMovesAreSelectedHighestFirst) {
  GoTo(kThirty, "0");
  MovePicker picker{};
  ASSERT_TRUE(Generate());
  const std::vector<Offer> offers = OffersOf(picker);
  int previous = 1000000;
  for (int i = 0; i < 30; ++i) {
    const int value_of_move = CaptureValue(offers[static_cast<std::size_t>(i)].move, 0);
    EXPECT_GT(value_of_move, 0) << i;
    EXPECT_LE(value_of_move, previous) << i;
    previous = value_of_move;
  }
  EXPECT_EQ(CaptureValue(offers[30].move, 0), 0);
  EXPECT_FALSE(picker.presorted);
}

TEST_F(Ordering, ThirtyOneTacticalMovesAreWalkedLowestFirst) {
  GoTo(kThirtyOne, "0");
  const Move table_move = Generated("c1b1");
  MovePicker picker{};
  picker.tt_move = table_move;  // with this one it is thirty-two
  ASSERT_TRUE(Generate());
  const std::vector<Offer> offers = OffersOf(picker);
  int previous = 0;
  for (int i = 0; i < 31; ++i) {
    const int value_of_move = CaptureValue(offers[static_cast<std::size_t>(i)].move, 0);
    EXPECT_GE(value_of_move, previous) << i;
    previous = value_of_move;
  }
  // The table move is worth more than all captures and so comes last of them.
  EXPECT_EQ(offers[31].move, table_move);
  EXPECT_EQ(CaptureValue(offers[32].move, 0), 0);
}

TEST_F(Ordering, LastOfALongListIsSortedWithTheOthers) {
  GoTo(kThirtyOne, "0");
  MovePicker picker{};
  ASSERT_TRUE(Generate());
  const Move last = tree[treeCnt[2] - 1];
  std::vector<int> values;
  for (const Offer& offer : OffersOf(picker)) values.push_back(CaptureValue(offer.move, 0));
  ASSERT_LT(CaptureValue(last, 0), values[30]) << "it is not there by chance";
  EXPECT_TRUE(std::is_sorted(values.begin(), values.begin() + 31))
      << testing::PrintToString(values);
}

TEST_F(Ordering, BorderBetweenTheTwoIsThirty) {
  for (const auto& [root, presorted] : {std::pair{kThirty, false}, std::pair{kThirtyOne, true}}) {
    GoTo(root, "0");
    MovePicker picker{};
    ASSERT_TRUE(Generate());
    Move move = 0;
    ASSERT_TRUE(NextMove(picker, move));
    EXPECT_EQ(picker.presorted, presorted) << root;
    EXPECT_EQ(picker.end - treeCnt[1], presorted ? 31 : 30);
    Ascend();
  }
}

TEST_F(Ordering, QuietMovesAreScoredOnlyWhenTheyAreNeeded) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  ASSERT_TRUE(Generate());
  std::fill_n(sort_val + treeCnt[1], ListLength(), -77);
  MovePicker picker{};
  Move move = 0;
  ASSERT_TRUE(NextMove(picker, move));
  EXPECT_STREQ(MoveToStr(move), "e4d5");
  EXPECT_EQ(std::count(sort_val + treeCnt[1] + 1, sort_val + treeCnt[2], -77), ListLength() - 1);
  ASSERT_TRUE(NextMove(picker, move));
  EXPECT_EQ(std::count(sort_val + treeCnt[1] + 1, sort_val + treeCnt[2], -77), 0);
}

TEST_F(Ordering, QuietMovesAfterALongSegmentAreSelectedAgain) {
  GoTo(kThirtyOne, "0");
  History(White, Generated("c1d1")) = 5;
  MovePicker picker{};
  ASSERT_TRUE(Generate());
  const std::vector<Offer> offers = OffersOf(picker);
  EXPECT_STREQ(MoveToStr(offers[31].move), "c1d1");
}

TEST_F(Ordering, FirstMoveComesFirst) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  MovePicker picker{};
  picker.first_move = Generated("e1f1");
  EXPECT_EQ(OrderOf(picker), "[e1f1] e4d5 e1d2 e1e2 e4e5 e1f2 e1d1");
}

TEST_F(Ordering, FirstMoveThatIsNotInTheListIsIgnored) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 b", "e8e7");
  const std::string plain = OrderOf({});
  MovePicker picker{};
  picker.first_move = MoveWord(King, E1, A8);
  EXPECT_EQ(OrderOf(picker), plain);
}

TEST_F(Ordering, StoredContinuationsFollowInTheTreesOrder) {
  GoTo(kStart, "e2e4");
  const Move e2e4 = g.game_moves[0];
  for (const char* reply : {"a7a6", "g8f6", "e7e5"}) {
    const Move line[] = {e2e4, Generated(reply), 0};
    pvInsertLine(pv_tree, line);
  }
  const Move unplayable[] = {e2e4, MoveWord(King, E8, A1), 0};
  pvInsertLine(pv_tree, unplayable);
  MovePicker picker{};
  picker.on_pv = true;
  EXPECT_EQ(OrderOf(picker).substr(0, 20), "[e7e5] [g8f6] [a7a6]");
  // The first move is not offered a second time.
  picker.first_move = Generated("g8f6");
  EXPECT_EQ(OrderOf(picker).substr(0, 21), "[g8f6] [e7e5] [a7a6] ");
}

TEST_F(Ordering, ContinuationsAreOfThePathPlayedSinceTheRoot) {
  GoTo(std::string(kStart) + " - moves e2e4 e7e5", "g1f3 b8c6");
  const Move line[] = {g.game_moves[2], g.game_moves[3], Generated("a2a3"), 0};
  const Move other[] = {g.game_moves[2], Generated("h2h3"), 0};
  pvInsertLine(pv_tree, line);
  pvInsertLine(pv_tree, other);
  MovePicker picker{};
  picker.on_pv = true;
  const std::string order = OrderOf(picker);
  EXPECT_EQ(order.substr(0, 6), "[a2a3]");
  EXPECT_EQ(order.find('[', 1), std::string::npos);
}

TEST_F(Ordering, ContinuationsAreNotOfferedOffTheLineNorInANullMoveSearch) {
  GoTo(kStart, "e2e4");
  const Move line[] = {g.game_moves[0], Generated("a7a6"), 0};
  pvInsertLine(pv_tree, line);
  MovePicker picker{};
  EXPECT_EQ(OrderOf(picker).find('['), std::string::npos);
  picker.on_pv = true;
  EXPECT_NE(OrderOf(picker).find("[a7a6]"), std::string::npos);
  doNull = 1;
  EXPECT_EQ(OrderOf(picker).find('['), std::string::npos);
}

TEST_F(Ordering, RootMovesKeepTheValuesThatTheyHave) {
  GoTo("4k3/8/8/3q4/4P3/8/8/4K3 w");
  MovePicker picker{};
  picker.first_move = Find("e1f1");
  // What would come early elsewhere: a table move that is both killers, and a queen's capture.
  const Move table_move = Find("e1f2");
  picker.tt_move = killer[0] = pv_killer[0] = table_move;
  History(White, table_move) = 100;
  const Move capture = Find("e4d5");
  ASSERT_TRUE(LegalMoveList());
  std::map<Move, int> value_of;
  for (int i = 0; i < treeCnt[1]; ++i) value_of[tree[i]] = i * 37 % 11;
  value_of[picker.first_move] = -1;
  value_of[capture] = -2;
  value_of[table_move] = -3;
  for (int i = 0; i < treeCnt[1]; ++i) sort_val[i] = value_of[tree[i]];
  std::vector<int> values;
  for (const Offer& offer : OffersOf(picker)) {
    const int at = static_cast<int>(values.size());
    EXPECT_EQ(tree[at], offer.move);
    EXPECT_EQ(sort_val[at], value_of[offer.move]) << "values travel with their moves";
    values.push_back(value_of[offer.move]);
  }
  ASSERT_EQ(values.size(), value_of.size());
  ASSERT_GT(values.size(), 4u);
  EXPECT_EQ(values.front(), -1);
  EXPECT_TRUE(std::is_sorted(values.rbegin(), values.rend() - 1));
  EXPECT_EQ(values.back(), -3);
}

TEST_F(Ordering, RootMovesSetAsideAreNotOffered) {
  GoTo(kStart);
  ASSERT_TRUE(LegalMoveList());
  treeCnt[0] = 3;
  const std::set<Move> aside(tree, tree + 3);
  MovePicker picker{};
  picker.first_move = tree[1];
  const std::vector<Offer> offers = OffersOf(picker);
  EXPECT_EQ(offers.size(), 17u);
  for (const Offer& offer : offers) EXPECT_EQ(aside.count(offer.move), 0u);
}

TEST_F(Ordering, AfterTheLastMoveThereIsNone) {
  GoTo("4k3/8/8/8/8/8/8/4K3 b", "e8e7");
  ASSERT_TRUE(Generate());
  MovePicker picker{};
  OffersOf(picker);
  Move move = 77;
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(NextMove(picker, move));
  EXPECT_EQ(move, 77u);
  EXPECT_EQ(picker.stage, kExhausted);
}

TEST_F(Ordering, EmptyListOffersNothing) {
  GoTo("4k3/8/8/8/8/8/8/4K3 b", "e8e7");
  treeCnt[2] = treeCnt[1];
  MovePicker picker{};
  Move move = 0;
  EXPECT_FALSE(NextMove(picker, move));
}

TEST_F(Ordering, EveryMoveOfAPositionIsOfferedOnce) {
  int checked = 0;
  std::mt19937 random(1);
  for (const auto& row : support::DataRows("movelists.tsv")) {
    ASSERT_TRUE(SetUpGame(row[0]));
    treeCnt[1] = 0;
    MakeMove(0);
    if (Generate()) {
      const int count = ListLength();
      std::vector<Move> listed(&tree[treeCnt[1]], &tree[treeCnt[2]]);
      MovePicker picker{};
      if (count > 0) {
        const auto any = [&] { return listed[random() % listed.size()]; };
        picker.first_move = any();
        picker.tt_move = any();
        killer[1] = any();
        pv_killer[1] = any();
      }
      std::vector<Move> offered;
      for (const Offer& offer : OffersOf(picker)) offered.push_back(offer.move);
      std::sort(listed.begin(), listed.end());
      std::sort(offered.begin(), offered.end());
      EXPECT_EQ(listed, offered) << row[0];
      checked += count;
    }
    UnMakeMove(0);
  }
  EXPECT_GT(checked, 1000);
}

}  // namespace

}  // namespace tarvyle
