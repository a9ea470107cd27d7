#include "book/learnrecord.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/book_support.h"

namespace tarvyle {
namespace {

using namespace std::string_literals;

using support::RecordFields;

// Every field differs from every other, and from what a record without it would hold.
RecordFields AllFields() {
  RecordFields fields;
  fields.key_lo = 0x12345678;
  fields.key_hi = 0x9ABCDEF0;
  fields.score = -999123;
  fields.kind = 16;
  fields.side = 1;
  fields.depth = 17;
  fields.book = 3;
  fields.text = "k7/8/8/8/8/8/8/7K w\0"s;
  return fields;
}

std::string BytesOf(const std::string& text) {
  RecordFields fields = AllFields();
  fields.text = text;
  return support::RecordBytes(fields);
}

// A record as a node of the table, with a check byte and a link that are no longer right.
class StaleNode {
 public:
  explicit StaleNode(const std::string& record)
      : memory_((kBeforeRecord + record.size()) / sizeof(LearnNode) + 1) {
    std::memcpy(reinterpret_cast<char*>(memory_.data()) + kBeforeRecord, record.data(),
                record.size());
    Node().check ^= 0x55;
    Node().link = 77;
  }
  LearnNode& Node() { return memory_.front(); }

 private:
  std::vector<LearnNode> memory_;
};

struct FaultRow {
  const char* meaning;
  std::string bytes;
  RecordFault fault;
  int length;
};

std::string WithLength(std::int16_t length) {
  RecordFields fields = AllFields();
  fields.text = "8/8 w\0"s;
  fields.length = length;
  return support::RecordBytes(fields);
}

std::string WithCheck(std::string text, std::uint8_t check) {
  RecordFields fields = AllFields();
  fields.text = std::move(text);
  fields.check = check;
  return support::RecordBytes(fields);
}

TEST(LearnRecord, IsSoundOrHasOneFault) {
  const FaultRow rows[] = {
      {"a sound one", BytesOf("8/8 w\0"s), RecordFault::kNone, 30},
      {"an empty text", BytesOf("\0\0"s), RecordFault::kNone, 26},
      {"bytes behind the text", BytesOf("8\0more\0"s), RecordFault::kNone, 31},
      {"the longest", BytesOf(std::string(INT16_MAX - 24, '\0')), RecordFault::kNone, INT16_MAX},
      {"nothing", "", RecordFault::kCutShort, 0},
      {"a header without a text", BytesOf("8/8 w\0"s).substr(0, 24), RecordFault::kCutShort, 0},
      {"a header and a letter", BytesOf("8/8 w\0"s).substr(0, 25), RecordFault::kBeyondEnd, 30},
      {"all but its last byte", BytesOf("8/8 w\0"s).substr(0, 29), RecordFault::kBeyondEnd, 30},
      {"length 0", WithLength(0), RecordFault::kLength, 0},
      {"length -1", WithLength(-1), RecordFault::kLength, -1},
      {"the least length", WithLength(INT16_MIN), RecordFault::kLength, INT16_MIN},
      {"a text of one byte", BytesOf("\0"s), RecordFault::kLength, 25},
      {"a byte too long", WithLength(31), RecordFault::kBeyondEnd, 31},
      {"a text without its end", BytesOf("8/8 w"s), RecordFault::kEndlessText, 29},
      {"a byte too short", WithLength(29), RecordFault::kEndlessText, 29},
      {"an end that is the next byte", BytesOf("8/8 w"s) + '\0', RecordFault::kEndlessText, 29},
      {"another check byte", WithCheck("8\0"s, '8' + 1), RecordFault::kCheckByte, 26},
      {"a check byte of all", WithCheck("8\0a"s, '8' + 'a'), RecordFault::kCheckByte, 27},
  };
  for (const FaultRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    const RecordLook look = LookAtRecord(row.bytes);
    EXPECT_EQ(look.fault, row.fault);
    EXPECT_EQ(look.length, row.length);
    LearnRecord record;
    record.score = 55;
    EXPECT_EQ(ReadRecord(row.bytes, record).fault, row.fault);
    EXPECT_EQ(record.score, row.fault == RecordFault::kNone ? -999123 : 55);
  }
}

TEST(LearnRecord, EndsBeforeTheNextOne) {
  const std::string bytes = BytesOf("8/8 w\0"s);
  EXPECT_EQ(RecordLength(bytes.data()), 30);
  LearnRecord record;
  const RecordLook look = ReadRecord(bytes + "\xFF\xFF more", record);
  EXPECT_EQ(look.fault, RecordFault::kNone);
  EXPECT_EQ(look.length, 30);
  EXPECT_EQ(record.bytes.size(), 30u);
}

TEST(LearnRecord, IsTakenApartFieldByField) {
  const std::string bytes = BytesOf("k7/8 w\0tail"s);
  LearnRecord record;
  ASSERT_EQ(ReadRecord(bytes, record).fault, RecordFault::kNone);
  EXPECT_EQ(record.key_lo, 0x12345678u);
  EXPECT_EQ(record.key_hi, 0x9ABCDEF0u);
  EXPECT_EQ(record.Key(), 0x9ABCDEF012345678u);
  EXPECT_EQ(record.score, -999123);
  EXPECT_EQ(record.kind, 16);
  EXPECT_EQ(record.side, 1);
  EXPECT_EQ(record.depth, 17);
  EXPECT_EQ(record.book, 3);
  EXPECT_EQ(record.text, "k7/8 w");
  EXPECT_EQ(record.text.data(), bytes.data() + 24);
  EXPECT_EQ(record.bytes, bytes);
  EXPECT_EQ(record.bytes.data(), bytes.data());
}

TEST(LearnRecord, IsLearnedFromDepthOneOn) {
  for (const int depth : {-1, 0, 1, 2}) {
    LearnRecord record;
    record.depth = static_cast<std::int8_t>(depth);
    EXPECT_EQ(record.Learned(), depth >= 1) << depth;
  }
}

TEST(LearnRecord, IsPutTogetherAgainWithAZeroLink) {
  RecordFields fields = AllFields();
  fields.link = 0xDEADBEEF;
  fields.text = "k7/8 w\0tail\0"s;
  const std::string bytes = support::RecordBytes(fields);
  LearnRecord record;
  ASSERT_EQ(ReadRecord(bytes, record).fault, RecordFault::kNone);
  std::string out = "before";
  AppendRecord(out, record);
  fields.link = 0;
  EXPECT_EQ(out, "before" + support::RecordBytes(fields));
}

TEST(LearnRecord, IsPutTogetherFromItsFieldsAndNotFromOldBytes) {
  const std::string bytes = support::RecordBytes(AllFields());
  LearnRecord record;
  ASSERT_EQ(ReadRecord(bytes, record).fault, RecordFault::kNone);
  record.score = 42;
  record.depth = 5;
  record.book = 0;
  record.kind = 0;
  RecordFields fields = AllFields();
  fields.score = 42;
  fields.depth = 5;
  fields.book = 0;
  fields.kind = 0;
  std::string out;
  AppendRecord(out, record);
  EXPECT_EQ(out, support::RecordBytes(fields));
}

TEST(LearnRecord, OfANodeIsSealedInPlace) {
  for (const std::string& text : {"k7/8 w\0"s, "8\0and more\0"s, "\0\0"s}) {
    StaleNode stale(BytesOf(text));
    const std::string_view record = SealRecord(stale.Node());
    EXPECT_EQ(record, BytesOf(text));
    EXPECT_EQ(record.data(), reinterpret_cast<const char*>(&stale.Node().key_lo));
    EXPECT_EQ(stale.Node().link, 0u);
  }
}

TEST(LearnRecord, OfANodeIsCopiedAndTheNodeStays) {
  for (const std::string& text : {"k7/8 w\0"s, "8\0and more\0"s, "\0\0"s}) {
    StaleNode stale(BytesOf(text));
    const std::uint8_t check = stale.Node().check;
    EXPECT_EQ(RecordOf(stale.Node()), BytesOf(text));
    EXPECT_EQ(stale.Node().link, 77u);
    EXPECT_EQ(stale.Node().check, check);
  }
}

TEST(LearnRecord, HasTheLowBitsOfTheSumOfItsTextForACheck) {
  EXPECT_EQ(StrHashKey(""), 0u);
  EXPECT_EQ(StrHashKey("a"), 97u);
  EXPECT_EQ(StrHashKey("ab"), 195u);
  EXPECT_EQ(StrHashKey("\xFF\xFF\xFF"), 765u);
  EXPECT_EQ(StrHashKey(std::string(100000, '\xFF').c_str()), 25500000u);
  EXPECT_EQ(CheckByte(""), 0);
  EXPECT_EQ(CheckByte("ab"), 195);
  EXPECT_EQ(CheckByte("\xFF\xFF\xFF"), 765 % 256);
}

}  // namespace
}  // namespace tarvyle
