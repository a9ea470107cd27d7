#include "pv/tree.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "position/text.h"
#include "tests/support/line_support.h"

namespace tarvyle {
namespace {

using support::LineOf;
using support::MoveOf;
using support::NumberedMove;

// A list of siblings as text; replies in brackets behind their move.
std::string AsText(const PvNode* list) {
  std::string text;
  for (const PvNode* node = list; node != nullptr; node = node->next) {
    if (!text.empty()) text += ' ';
    text += MoveToStr(node->move);
    if (node->child != nullptr) text += "(" + AsText(node->child) + ")";
  }
  return text;
}

class PvTreeTest : public testing::Test {
 protected:
  void SetUp() override { pvReset(pv_tree); }

  static void Insert(const std::string& moves) { pvInsertLine(pv_tree, LineOf(moves).data()); }

  static PvNode* Node(const std::string& move) { return pvNewNode(pv_tree, MoveOf(move)); }
};

TEST_F(PvTreeTest, IsZeroedWhole) {
  Insert("e2e4 e7e5");
  pvReset(pv_tree);
  EXPECT_EQ(pv_tree.used, 0);
  EXPECT_EQ(pv_tree.root, nullptr);
  for (const PvNode& node : pv_tree.nodes) {
    ASSERT_EQ(node.move, 0u);
    ASSERT_EQ(node.next, nullptr);
    ASSERT_EQ(node.child, nullptr);
  }
}

TEST_F(PvTreeTest, HandsItsNodesOutInOrderUntilThePoolIsEmpty) {
  for (int i = 0; i < kPvNodes; ++i) ASSERT_EQ(pvNew(pv_tree), &pv_tree.nodes[i]);
  EXPECT_EQ(pv_tree.used, 10000);
  EXPECT_EQ(pvNew(pv_tree), nullptr);
  EXPECT_EQ(pvNewNode(pv_tree, 1), nullptr);
  EXPECT_EQ(pv_tree.used, 10000);
}

TEST_F(PvTreeTest, PutsTheMoveIntoANewNode) {
  const PvNode* node = Node("e2e4");
  EXPECT_EQ(node, &pv_tree.nodes[0]);
  EXPECT_EQ(node->move, MoveOf("e2e4"));
  EXPECT_EQ(pvNew(pv_tree)->move, 0u);
}

TEST_F(PvTreeTest, FindsTheLinkThatPointsAtAMove) {
  PvNode* head = nullptr;
  EXPECT_EQ(pvFindMove(&head, MoveOf("e2e4")), nullptr);
  for (const char* move : {"c2c4", "d2d4", "e2e4"}) pvInsertToFront(pv_tree, &head, Node(move));
  EXPECT_EQ(pvFindMove(&head, MoveOf("e2e4")), &head);
  EXPECT_EQ(pvFindMove(&head, MoveOf("d2d4")), &head->next);
  EXPECT_EQ(pvFindMove(&head, MoveOf("c2c4")), &head->next->next);
  EXPECT_EQ(pvFindMove(&head, MoveOf("g1f3")), nullptr);
  PvNode** link = pvFindMove(&head, MoveOf("d2d4"));
  *link = (*link)->next;
  EXPECT_EQ(AsText(head), "e2e4 c2c4") << "by its link a node can be unlinked";
}

struct FrontRow {
  const char* move;
  const char* after;
};

TEST_F(PvTreeTest, MovesANodeToTheFrontOfItsList) {
  const FrontRow rows[] = {
      {"e2e4", "e2e4 d2d4 c2c4"}, {"d2d4", "d2d4 e2e4 c2c4"}, {"c2c4", "c2c4 e2e4 d2d4"}};
  for (const FrontRow& row : rows) {
    pvReset(pv_tree);
    PvNode* head = nullptr;
    for (const char* move : {"c2c4", "d2d4", "e2e4"}) pvInsertToFront(pv_tree, &head, Node(move));
    EXPECT_EQ(pvToFront(pvFindMove(&head, MoveOf(row.move)), &head), &head);
    EXPECT_EQ(AsText(head), row.after);
  }
}

TEST_F(PvTreeTest, InsertsInFrontUnlessTheNodeIsThereAlready) {
  PvNode* head = nullptr;
  PvNode* node = Node("e2e4");
  pvInsertToFront(pv_tree, &head, node);
  pvInsertToFront(pv_tree, &head, node);
  EXPECT_EQ(AsText(head), "e2e4");
  pvInsertToFront(pv_tree, &head, Node("d2d4"));
  EXPECT_EQ(AsText(head), "d2d4 e2e4");
}

TEST_F(PvTreeTest, InsertsAtTheEndUnlessTheNodeIsTheFirst) {
  PvNode* head = nullptr;
  PvNode* first = Node("e2e4");
  PvNode* second = Node("d2d4");
  second->next = first;  // cleared when it becomes the last
  EXPECT_EQ(pvInsertToEnd(pv_tree, &head, first), &head);
  EXPECT_EQ(AsText(head), "e2e4");
  EXPECT_EQ(pvInsertToEnd(pv_tree, &head, second), &first->next);
  EXPECT_EQ(AsText(head), "e2e4 d2d4");
  EXPECT_EQ(pvInsertToEnd(pv_tree, &head, Node("c2c4")), &second->next);
  EXPECT_EQ(pvInsertToEnd(pv_tree, &head, first), &head);
  EXPECT_EQ(AsText(head), "e2e4 d2d4 c2c4");
}

struct MergeRow {
  const char* meaning;
  std::vector<const char*> lines;
  const char* tree;
  int nodes;
};

TEST_F(PvTreeTest, MergesLinesNewestFirst) {
  const MergeRow rows[] = {
      {"an empty line", {""}, "", 0},
      {"one line", {"e2e4 e7e5 g1f3"}, "e2e4(e7e5(g1f3))", 3},
      {"the same line twice", {"e2e4 e7e5", "e2e4 e7e5"}, "e2e4(e7e5)", 2},
      {"a, b, c and then a, d", {"a2a3 b7b6 c2c3", "a2a3 d7d6"}, "a2a3(d7d6 b7b6(c2c3))", 4},
      {"a beginning of a known line", {"a2a3 b7b6 c2c3", "a2a3"}, "a2a3(b7b6(c2c3))", 3},
      {"an older alternative comes back to the front",
       {"a2a3 b7b6", "c2c3", "d2d3", "a2a3 e7e6"},
       "a2a3(e7e6 b7b6) d2d3 c2c3",
       5},
      {"the last of the list, whole", {"a2a3 b7b6", "c2c3", "a2a3 b7b6"}, "a2a3(b7b6) c2c3", 3},
      {"alternatives deep down",
       {"a2a3 b7b6 c2c3", "a2a3 b7b6 d2d3", "a2a3 b7b6 c2c3 e7e6"},
       "a2a3(b7b6(c2c3(e7e6) d2d3))",
       5},
  };
  for (const MergeRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    pvReset(pv_tree);
    for (const char* line : row.lines) Insert(line);
    EXPECT_EQ(AsText(pv_tree.root), row.tree);
    EXPECT_EQ(pv_tree.used, row.nodes);
  }
}

TEST_F(PvTreeTest, StoresALineUpToItsEightiethMove) {
  std::vector<Move> line;
  for (int i = 0; i < 100; ++i) line.push_back(NumberedMove(i));
  line.push_back(0);
  pvInsertLine(pv_tree, line.data());
  EXPECT_EQ(pv_tree.used, 80);
  int depth = 0;
  for (const PvNode* node = pv_tree.root; node != nullptr; node = node->child) {
    EXPECT_EQ(node->move, line[depth++]);
    EXPECT_EQ(node->next, nullptr);
  }
  EXPECT_EQ(depth, 80);
}

TEST_F(PvTreeTest, DropsTheRestOfALineWhenThePoolIsEmpty) {
  for (int i = 0; i < kPvNodes - 2; ++i) pvNew(pv_tree);
  Insert("e2e4 e7e5 g1f3 b8c6");
  EXPECT_EQ(AsText(pv_tree.root), "e2e4(e7e5)");
  Insert("d2d4 d7d5");
  EXPECT_EQ(AsText(pv_tree.root), "e2e4(e7e5)") << "not even its first move finds a node";
  EXPECT_EQ(pv_tree.used, kPvNodes);
}

TEST_F(PvTreeTest, StillReordersKnownMovesWhenThePoolIsEmpty) {
  Insert("e2e4 e7e5");
  Insert("d2d4");
  while (pvNew(pv_tree) != nullptr) {
  }
  Insert("e2e4 c7c5");
  EXPECT_EQ(AsText(pv_tree.root), "e2e4(e7e5) d2d4");
}

struct FollowRow {
  const char* line;
  int count;
  const char* replies;  // null: a move is missing on the way
};

TEST_F(PvTreeTest, FollowsALineToTheRepliesBehindIt) {
  Insert("e2e4 e7e5 g1f3");
  Insert("e2e4 c7c5");
  Insert("d2d4");
  const FollowRow rows[] = {
      {"e2e4 e7e5", 2, "g1f3"},  {"e2e4", 1, "c7c5 e7e5(g1f3)"},      {"e2e4 c7c5", 2, ""},
      {"d2d4", 1, ""},           {"e2e4 e7e5 g1f3", 3, ""},           {"c2c4", 1, nullptr},
      {"e2e4 d7d5", 2, nullptr}, {"e2e4 e7e5 g1f3 b8c6", 4, nullptr}, {"e2e4", 2, nullptr},
      {"", 1, nullptr},
  };
  for (const FollowRow& row : rows) {
    SCOPED_TRACE(row.line);
    PvNode** link = pvFindNodeTree(pv_tree, LineOf(row.line).data(), row.count);
    ASSERT_EQ(link != nullptr, row.replies != nullptr);
    if (link == nullptr) continue;
    EXPECT_EQ(AsText(*link), row.replies);
  }
}

TEST_F(PvTreeTest, GivesTheRootLinkForNoMovesAndForAnEmptyTree) {
  const std::vector<Move> line = LineOf("e2e4");
  EXPECT_EQ(pvFindNodeTree(pv_tree, line.data(), 1), &pv_tree.root);
  EXPECT_EQ(pvFindNodeTree(pv_tree, line.data(), 0), &pv_tree.root);
  Insert("d2d4");
  EXPECT_EQ(pvFindNodeTree(pv_tree, line.data(), 0), &pv_tree.root);
  EXPECT_EQ(pvFindNodeTree(pv_tree, line.data(), -3), &pv_tree.root);
}

TEST_F(PvTreeTest, GivesTheLinkItselfSoThatRepliesCanBeHungOn) {
  Insert("e2e4");
  PvNode** link = pvFindNodeTree(pv_tree, LineOf("e2e4").data(), 1);
  ASSERT_EQ(link, &pv_tree.root->child);
  pvInsertToFront(pv_tree, link, Node("e7e5"));
  EXPECT_EQ(AsText(pv_tree.root), "e2e4(e7e5)");
}

}  // namespace
}  // namespace tarvyle
