#include "book/learnrecord.h"

#include <cstring>

namespace tarvyle {

namespace {

std::uint32_t ByteSum(std::string_view text) {
  std::uint32_t sum = 0;
  for (const char letter : text) sum += static_cast<unsigned char>(letter);
  return sum;
}

void Seal(LearnNode& node, std::string_view text) {
  node.link = 0;
  node.check = CheckByte(text);
}

void AppendHeader(std::string& out, const LearnNode& node) {
  out.append(reinterpret_cast<const char*>(&node) + kBeforeRecord, kLearnHeader);
}

// The text of a record of that length; without data when it has no end.
std::string_view TextOf(const char* record, std::size_t length) {
  const char* text = record + kLearnHeader;
  const void* end = std::memchr(text, '\0', length - kLearnHeader);
  if (end == nullptr) return {};
  return {text, static_cast<std::size_t>(static_cast<const char*>(end) - text)};
}

}  // namespace

int RecordLength(const char* record) {
  std::int16_t length;
  std::memcpy(&length, record + kRecordLengthAt, sizeof length);
  return length;
}

RecordLook LookAtRecord(std::string_view bytes) {
  if (bytes.size() <= kLearnHeader) return {RecordFault::kCutShort, 0};
  const int length = RecordLength(bytes.data());
  if (length < kMinLearnRecord) return {RecordFault::kLength, length};
  const auto size = static_cast<std::size_t>(length);
  if (size > bytes.size()) return {RecordFault::kBeyondEnd, length};
  const std::string_view text = TextOf(bytes.data(), size);
  if (text.data() == nullptr) return {RecordFault::kEndlessText, length};
  const auto check = static_cast<std::uint8_t>(bytes[kRecordCheckAt]);
  return {CheckByte(text) == check ? RecordFault::kNone : RecordFault::kCheckByte, length};
}

RecordLook ReadRecord(std::string_view bytes, LearnRecord& record) {
  const RecordLook look = LookAtRecord(bytes);
  if (look.fault != RecordFault::kNone) return look;
  const auto size = static_cast<std::size_t>(look.length);
  LearnNode header{};
  std::memcpy(reinterpret_cast<char*>(&header) + kBeforeRecord, bytes.data(), kLearnHeader);
  record = {header.key_lo,        header.key_hi, header.score, header.kind,
            header.side,          header.depth,  header.book,  TextOf(bytes.data(), size),
            bytes.substr(0, size)};
  return look;
}

std::string_view SealRecord(LearnNode& node) {
  Seal(node, node.text);
  return {reinterpret_cast<const char*>(&node) + kBeforeRecord,
          static_cast<std::size_t>(node.length)};
}

std::string RecordOf(const LearnNode& node) {
  LearnNode header = node;
  Seal(header, node.text);
  std::string bytes;
  AppendHeader(bytes, header);
  return bytes.append(node.text, static_cast<std::size_t>(node.length) - kLearnHeader);
}

void AppendRecord(std::string& out, const LearnRecord& record) {
  LearnNode header{};
  header.key_lo = record.key_lo;
  header.key_hi = record.key_hi;
  header.score = record.score;
  header.kind = record.kind;
  header.length = static_cast<std::int16_t>(record.bytes.size());
  header.side = record.side;
  header.depth = record.depth;
  header.book = record.book;
  Seal(header, record.text);
  AppendHeader(out, header);
  out.append(record.bytes.substr(kLearnHeader));
}

std::uint8_t CheckByte(std::string_view text) { return static_cast<std::uint8_t>(ByteSum(text)); }

// With the length known, many bytes are added at once.
std::uint32_t StrHashKey(const char* text) { return ByteSum(text); }

}  // namespace tarvyle
