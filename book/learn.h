#pragma once

#include <cstdint>

#include "book/learnrecord.h"  // IWYU pragma: export

// The learn table: positions of the opening book and positions searched at the root, with their
// scores, found by key, side to move and position text. It is written to the learn file at exit.

namespace tarvyle {

inline constexpr int kLearnBuckets = 65536;

// Bucket heads, newest node first; all null is the empty table. Nodes come in through
// LinkLearnNode, which also notes their keys: others are not found.
extern LearnNode* learn[kLearnBuckets];

// Whether a node is a position of the opening book: its flag is set.
inline bool IsBookNode(const LearnNode& node) { return node.book != 0; }

inline LearnNode*& LearnBucket(std::uint32_t key_lo) { return learn[key_lo & 0xFFFF]; }

// Forgets every node; nothing is freed.
void LearnClear();

// Forgets every node and frees their memory; for tests and tools only.
void LearnReset();

// First node with these key halves and side, or null. The text is not looked at.
LearnNode* SearchNode(int side, std::uint32_t key_lo, std::uint32_t key_hi);

// Node of the current position, text included, or null.
LearnNode* FindCurrentNode();

// A new book node for the current position with the given text, not yet linked; null without
// memory, and for a text longer than any record.
LearnNode* NewLNode(const char* text);

// Puts a node at the head of its bucket; null is allowed and ignored.
void LinkLearnNode(LearnNode* node);

// Enters the current position as a book node unless it is known.
// Offered to others; the engine itself never calls it.
void InsertNodeLearn();

// Remembers a root search result for the current position, overwriting an older one even of
// greater depth. A position that finds no memory is not remembered.
void SaveSearchResult(int score, int depth);

// Looks for a stored score: one of at least `depth`, or, of a book position without one, the bound
// that lies outside -15..15. Writes it to `score` and returns true, or returns false.
bool LearnLook(int depth, int alpha, int beta, int& score);

// The positional remainder of a score, mate scores aside: above 0 thousands are subtracted until it
// is 500 or less, below 0 added until it is 500 or more.
int extract_strateg_score(int score);

}  // namespace tarvyle
