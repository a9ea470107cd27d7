#include "pv/tree.h"

#include <cstring>

namespace tarvyle {

PvTree pv_tree;

void pvReset(PvTree& tree) { std::memset(&tree, 0, sizeof tree); }

PvNode* pvNew(PvTree& tree) { return tree.used < kPvNodes ? &tree.nodes[tree.used++] : nullptr; }

PvNode* pvNewNode(PvTree& tree, Move move) {
  PvNode* node = pvNew(tree);
  if (node != nullptr) node->move = move;
  return node;
}

PvNode** pvFindMove(PvNode** head, Move move) {
  for (PvNode** link = head; *link != nullptr; link = &(*link)->next) {
    if ((*link)->move == move) return link;
  }
  return nullptr;
}

PvNode** pvToFront(PvNode** link, PvNode** head) {
  PvNode* node = *link;
  if (node != *head) {
    *link = node->next;
    node->next = *head;
    *head = node;
  }
  return head;
}

void pvInsertToFront(PvTree& /*tree*/, PvNode** head, PvNode* node) {
  if (node == *head) return;
  node->next = *head;
  *head = node;
}

PvNode** pvInsertToEnd(PvTree& /*tree*/, PvNode** head, PvNode* node) {
  if (node == *head) return head;
  PvNode** link = head;
  while (*link != nullptr) link = &(*link)->next;
  node->next = nullptr;
  *link = node;
  return link;
}

void pvInsertLine(PvTree& tree, const Move* line) {
  PvNode** list = &tree.root;
  for (int i = 0; i < kPvLineMoves && line[i] != 0; ++i) {
    if (PvNode** link = pvFindMove(list, line[i]); link != nullptr) {
      pvToFront(link, list);
    } else {
      PvNode* node = pvNewNode(tree, line[i]);
      if (node == nullptr) return;
      pvInsertToFront(tree, list, node);
    }
    list = &(*list)->child;
  }
}

PvNode** pvFindNodeTree(PvTree& tree, const Move* line, int count) {
  PvNode** list = &tree.root;
  if (*list == nullptr) return list;
  for (int i = 0; i < count; ++i) {
    PvNode** link = pvFindMove(list, line[i]);
    if (link == nullptr) return nullptr;
    list = &(*link)->child;
  }
  return list;
}

}  // namespace tarvyle
