#pragma once

#include <cstddef>
#include <cstdint>

// The learn table: positions of the opening book and positions searched at the root, with their
// scores, found by key, side to move and position text. It is written to the learn file at exit.

namespace tarvyle {

// One position. From key_lo on it is the record of the learn file, `length` bytes of it.
struct LearnNode {
  LearnNode* next;       // older node of the same bucket, or null; not in the file
  std::uint32_t key_lo;  // low half of the position key; its low 16 bits choose the bucket
  std::uint32_t key_hi;  // high half
  std::uint32_t link;    // no meaning; written as 0
  std::int32_t score;    // from the side to move's point of view; 0 for book nodes
  std::int16_t kind;     // 16 from the book or the generic insert, 0 from a search; never tested
  std::int16_t length;   // bytes of the record: length of the text + 25
  std::int8_t side;      // side to move
  std::int8_t depth;     // depth of the score; 0 for book nodes
  std::uint8_t book;     // 1: position of the opening book
  std::uint8_t check;    // low 8 bits of the sum of the text's bytes
  char text[1];          // the position's text, zero-terminated (longer than declared)
};

inline constexpr std::size_t kLearnHeader = offsetof(LearnNode, text) - offsetof(LearnNode, key_lo);
inline constexpr int kMinLearnRecord = static_cast<int>(kLearnHeader) + 2;
inline constexpr int kLearnBuckets = 65536;
inline constexpr int kMateScore = 999900;  // scores beyond this, on either side, are mates
static_assert(kLearnHeader == 24);
static_assert(offsetof(LearnNode, score) - offsetof(LearnNode, key_lo) == 12);
static_assert(offsetof(LearnNode, kind) - offsetof(LearnNode, key_lo) == 16);
static_assert(offsetof(LearnNode, length) - offsetof(LearnNode, key_lo) == 18);
static_assert(offsetof(LearnNode, side) - offsetof(LearnNode, key_lo) == 20);
static_assert(offsetof(LearnNode, check) - offsetof(LearnNode, key_lo) == 23);

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

// Sum of a text's bytes; its low 8 bits are the record's check byte.
std::uint32_t StrHashKey(const char* text);

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
