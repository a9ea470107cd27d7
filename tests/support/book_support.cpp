#include "tests/support/book_support.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <map>
#include <type_traits>

#include "book/epd.h"
#include "book/learn.h"
#include "position/movestack.h"
#include "position/record.h"
#include "tests/support/eval_support.h"

namespace tarvyle::support {

namespace {

template <typename Number>
void Append(std::string& bytes, Number number) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

template <typename Number>
Number At(std::string_view bytes, std::size_t offset) {
  Number number;
  std::memcpy(&number, bytes.data() + offset, sizeof number);
  return number;
}

std::uint8_t ByteSum(std::string_view text) {
  unsigned sum = 0;
  for (const char letter : text.substr(0, text.find('\0'))) {
    sum += static_cast<unsigned char>(letter);
  }
  return static_cast<std::uint8_t>(sum);
}

std::string WithoutLink(std::string record) { return record.replace(8, 4, 4, '\0'); }

}  // namespace

void StartAfresh() {
  LearnReset();
  ClearRepetitions();
  treeCnt[0] = 0;
  SetUpRoot("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -");
}

std::string Epd() {
  char text[kEpdSize];
  std::memset(text, 'x', sizeof text);
  MakeEpd(text);
  return text;
}

std::string RecordBytes(const RecordFields& fields) {
  std::string bytes;
  Append(bytes, fields.key_lo);
  Append(bytes, fields.key_hi);
  Append(bytes, fields.link);
  Append(bytes, fields.score);
  Append(bytes, fields.kind);
  Append(bytes, fields.length.value_or(static_cast<std::int16_t>(24 + fields.text.size())));
  Append(bytes, fields.side);
  Append(bytes, fields.depth);
  Append(bytes, fields.book);
  Append(bytes, fields.check.value_or(ByteSum(fields.text)));
  return bytes + fields.text;
}

std::optional<std::vector<std::string>> SplitRecords(std::string_view bytes) {
  std::vector<std::string> records;
  while (!bytes.empty()) {
    if (bytes.size() < 25) return std::nullopt;
    const int length = At<std::int16_t>(bytes, 18);
    if (length < 26 || static_cast<std::size_t>(length) > bytes.size()) return std::nullopt;
    const auto record = bytes.substr(0, static_cast<std::size_t>(length));
    const auto text = record.substr(24);
    if (text.find('\0') == std::string_view::npos) return std::nullopt;
    if (ByteSum(text) != At<std::uint8_t>(record, 23)) return std::nullopt;
    records.emplace_back(record);
    bytes.remove_prefix(record.size());
  }
  return records;
}

std::vector<std::string> TableRecords() {
  std::vector<std::string> records;
  for (const LearnNode* head : learn) {
    for (const LearnNode* node = head; node != nullptr; node = node->next) {
      const char* begin = reinterpret_cast<const char*>(node) + offsetof(LearnNode, key_lo);
      records.push_back(WithoutLink({begin, static_cast<std::size_t>(node->length)}));
    }
  }
  return records;
}

std::vector<std::string> AsLinked(const std::vector<std::string>& records) {
  std::map<std::uint16_t, std::vector<std::string>> buckets;
  for (const std::string& record : records) {
    auto& bucket = buckets[At<std::uint16_t>(record, 0)];
    bucket.insert(bucket.begin(), WithoutLink(record));
  }
  std::vector<std::string> linked;
  for (const auto& [index, bucket] : buckets) {
    linked.insert(linked.end(), bucket.begin(), bucket.end());
  }
  return linked;
}

std::vector<std::string> TableTexts() {
  std::vector<std::string> texts;
  for (const std::string& record : TableRecords()) texts.emplace_back(record.c_str() + 24);
  std::sort(texts.begin(), texts.end());
  return texts;
}

}  // namespace tarvyle::support
