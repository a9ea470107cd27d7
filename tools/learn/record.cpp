#include "tools/learn/record.h"

#include <cstring>
#include <utility>

#include "book/learn.h"

namespace tarvyle::tools {

namespace {

constexpr std::size_t kBeforeRecord = offsetof(LearnNode, key_lo);

// A record's fields up to its text.
LearnNode HeaderOf(std::string_view bytes) {
  LearnNode header{};
  std::memcpy(&header.key_lo, bytes.data(), kLearnHeader);
  return header;
}

std::uint8_t CheckByte(std::string_view text) {
  std::uint32_t sum = 0;
  for (const char letter : text) sum += static_cast<unsigned char>(letter);
  return static_cast<std::uint8_t>(sum);
}

LearnRecord MakeRecord(const LearnNode& header, std::string_view text, std::string_view bytes) {
  return {header.key_lo, header.key_hi, header.score, header.kind, header.side,
          header.depth,  header.book,   text,         bytes};
}

std::string LengthText(std::size_t length, std::size_t left) {
  return "its length is " + std::to_string(length) + " bytes, but only " + std::to_string(left) +
         " are left in the file";
}

// Reads the record at the front of `rest`; returns what is wrong with it, or "".
std::string ReadRecord(std::string_view rest, LearnRecord& record) {
  if (rest.size() <= kLearnHeader) {
    return "cut short, only " + std::to_string(rest.size()) + " bytes are left in the file";
  }
  const LearnNode header = HeaderOf(rest);
  if (header.length < kMinLearnRecord) {
    return "its length cannot be " + std::to_string(header.length) + " bytes";
  }
  const auto length = static_cast<std::size_t>(header.length);
  if (length > rest.size()) return LengthText(length, rest.size());
  const std::string_view held = rest.substr(kLearnHeader, length - kLearnHeader);
  const std::size_t end = held.find('\0');
  if (end == std::string_view::npos) return "its text has no end";
  const std::string_view text = held.substr(0, end);
  if (CheckByte(text) != header.check) return "its text and its check byte do not agree";
  record = MakeRecord(header, text, rest.substr(0, length));
  return "";
}

}  // namespace

Damage ReadRecords(std::string_view content,
                   const std::function<void(const LearnRecord&, std::size_t)>& on_record) {
  LearnRecord record;
  std::size_t number = 1;
  for (std::size_t at = 0; at < content.size(); at += record.bytes.size(), ++number) {
    std::string what = ReadRecord(content.substr(at), record);
    if (!what.empty()) return {number, at, std::move(what)};
    on_record(record, number);
  }
  return {};
}

std::string DamageText(const std::string& file, const Damage& damage) {
  return file + ": record " + std::to_string(damage.record) + " (byte " +
         std::to_string(damage.offset) + ") is damaged: " + damage.what;
}

std::string RecordBytes(const LearnRecord& record) {
  std::string bytes;
  AppendRecord(bytes, record);
  return bytes;
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
  header.check = CheckByte(record.text);
  out.append(reinterpret_cast<const char*>(&header) + kBeforeRecord, kLearnHeader);
  out.append(record.bytes.substr(kLearnHeader));
}

}  // namespace tarvyle::tools
