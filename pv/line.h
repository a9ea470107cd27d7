#pragma once

#include <cstdint>

#include "position/types.h"

// Move lines: arrays of moves ended by 0. And the small queue that holds work lists of lines.

namespace tarvyle {

// Number of moves before the terminating 0.
int LineLen(const Move* line);

// Copies the moves and the terminating 0; returns `destination`, which must be large enough.
Move* LineCopy(Move* destination, const Move* source);

// A copy of exactly (length + 1) words on the heap, owned by the caller, or null without memory.
Move* LineDup(const Move* line);

// Frees a heap line; null is allowed.
void LineFree(Move* line);

// Number of leading moves that `b` shares with `a`, up to the first difference or the end of `b`.
int LineInCnt(const Move* a, const Move* b);

// Prints each move followed by a blank, then a newline, on standard output.
// Offered to others; the engine itself never calls it.
void LinePrint(const Move* line);

// What a queue holds: a move, or a pointer to a line. The queue never owns what it points at.
using QueueValue = std::uintptr_t;

// One value of a queue and the link to the next, null at the end.
struct QueueNode {
  QueueValue value;
  QueueNode* next;
};

// A queue is the link to its first node; null is the empty queue.
using Queue = QueueNode*;

// Puts a value in front; nothing happens without memory.
// Offered to others; the engine itself never calls it.
void pvt_push_first(Queue* queue, QueueValue item);

// Appends a value and returns its node, or null without memory.
QueueNode* pvt_push_last(Queue* queue, QueueValue item);

// Takes the first value out, or returns 0 when the queue is empty.
QueueValue pvt_pop_first(Queue* queue);

// Calls `visit` with each value, front to back.
// Offered to others; the engine itself never calls it.
void pvt_for_each(const Queue* queue, void (*visit)(QueueValue));

// Frees all nodes and leaves the queue empty; the values are left alone.
// Offered to others; the engine itself never calls it.
void pvt_clear_all(Queue* queue);

}  // namespace tarvyle
