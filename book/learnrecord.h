#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// A position and what is known of it, as one record of the learn file: what its bytes are, when
// they are sound, and how they are made.

namespace tarvyle {

// A record in the learn table: from key_lo on these are the bytes of the file, `length` of them.
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

inline constexpr std::size_t kBeforeRecord = offsetof(LearnNode, key_lo);  // not in the file

// Where things are in a record, in bytes: the header ends where the text begins.
inline constexpr std::size_t kRecordLengthAt = offsetof(LearnNode, length) - kBeforeRecord;
inline constexpr std::size_t kRecordCheckAt = offsetof(LearnNode, check) - kBeforeRecord;
inline constexpr std::size_t kLearnHeader = offsetof(LearnNode, text) - kBeforeRecord;
static_assert(offsetof(LearnNode, key_hi) - kBeforeRecord == 4);
static_assert(offsetof(LearnNode, link) - kBeforeRecord == 8);
static_assert(offsetof(LearnNode, score) - kBeforeRecord == 12);
static_assert(offsetof(LearnNode, kind) - kBeforeRecord == 16);
static_assert(kRecordLengthAt == 18);
static_assert(offsetof(LearnNode, side) - kBeforeRecord == 20);
static_assert(offsetof(LearnNode, depth) - kBeforeRecord == 21);
static_assert(offsetof(LearnNode, book) - kBeforeRecord == 22);
static_assert(kRecordCheckAt == 23);
static_assert(kLearnHeader == 24);

inline constexpr int kMinLearnRecord = static_cast<int>(kLearnHeader) + 2;
inline constexpr std::size_t kMaxLearnRecord = INT16_MAX;  // all that `length` can say

// A record outside the table, its bytes where they were found.
struct LearnRecord {
  std::uint32_t key_lo = 0;
  std::uint32_t key_hi = 0;
  std::int32_t score = 0;
  std::int16_t kind = 0;
  std::int8_t side = 0;
  std::int8_t depth = 0;
  std::uint8_t book = 0;
  std::string_view text;   // the position, without its zero
  std::string_view bytes;  // the whole record

  bool Learned() const { return depth > 0; }
  std::uint64_t Key() const { return static_cast<std::uint64_t>(key_hi) << 32 | key_lo; }
};

enum class RecordFault {
  kNone,
  kCutShort,     // fewer bytes than a header and one of the text
  kLength,       // a length that no record has
  kBeyondEnd,    // more bytes long than there are
  kEndlessText,  // no zero in it
  kCheckByte,    // text and check byte do not agree
};

// What the bytes of a record, followed by any others, say of it.
struct RecordLook {
  RecordFault fault;
  int length;  // its own word for it; 0 when it is cut short before that
};

// The length of the record that begins there, by its own word.
int RecordLength(const char* record);

// Looks whether the record at the front of `bytes` is sound.
RecordLook LookAtRecord(std::string_view bytes);

// The same; a sound record is taken apart. The views of `record` lead into `bytes`.
RecordLook ReadRecord(std::string_view bytes, LearnRecord& record);

// A node's record as the file holds it, in place: what the table does not keep up, link and check
// byte, is put right.
std::string_view SealRecord(LearnNode& node);

// The same as a copy.
std::string RecordOf(const LearnNode& node);

// Appends the bytes of a record to `out`: its fields, and what its old bytes hold behind them.
void AppendRecord(std::string& out, const LearnRecord& record);

// The check byte of a text.
std::uint8_t CheckByte(std::string_view text);

// Sum of a text's bytes; its low 8 bits are the check byte.
std::uint32_t StrHashKey(const char* text);

}  // namespace tarvyle
