#include "pv/line.h"

#include <algorithm>
#include <cstdio>
#include <new>

#include "position/text.h"

namespace tarvyle {

int LineLen(const Move* line) {
  int length = 0;
  while (line[length] != 0) ++length;
  return length;
}

Move* LineCopy(Move* destination, const Move* source) {
  std::copy_n(source, LineLen(source) + 1, destination);
  return destination;
}

Move* LineDup(const Move* line) {
  Move* copy = new (std::nothrow) Move[static_cast<std::size_t>(LineLen(line)) + 1];
  return copy != nullptr ? LineCopy(copy, line) : nullptr;
}

void LineFree(Move* line) { delete[] line; }

int LineInCnt(const Move* a, const Move* b) {
  int shared = 0;
  while (b[shared] != 0 && a[shared] == b[shared]) ++shared;
  return shared;
}

void LinePrint(const Move* line) {
  for (; *line != 0; ++line) std::printf("%s ", MoveToStr(*line));
  std::putchar('\n');
}

void pvt_push_first(Queue* queue, QueueValue item) {
  auto* node = new (std::nothrow) QueueNode{item, *queue};
  if (node != nullptr) *queue = node;
}

QueueNode* pvt_push_last(Queue* queue, QueueValue item) {
  while (*queue != nullptr) queue = &(*queue)->next;
  return *queue = new (std::nothrow) QueueNode{item, nullptr};
}

QueueValue pvt_pop_first(Queue* queue) {
  QueueNode* first = *queue;
  if (first == nullptr) return 0;
  const QueueValue item = first->value;
  *queue = first->next;
  delete first;
  return item;
}

void pvt_for_each(const Queue* queue, void (*visit)(QueueValue)) {
  for (const QueueNode* node = *queue; node != nullptr; node = node->next) visit(node->value);
}

void pvt_clear_all(Queue* queue) {
  while (*queue != nullptr) pvt_pop_first(queue);
}

}  // namespace tarvyle
