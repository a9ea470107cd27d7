#include "polyglot/entry.h"

#include <algorithm>
#include <compare>
#include <tuple>

namespace tarvyle::polyglot {

namespace {

template <typename Number>
Number TakeNumber(std::string_view& bytes) {
  Number number = 0;
  for (std::size_t i = 0; i < sizeof number; ++i) {
    number = static_cast<Number>(number << 8 | static_cast<unsigned char>(bytes[i]));
  }
  bytes.remove_prefix(sizeof number);
  return number;
}

template <typename Number>
void PutNumber(Number number, std::string& bytes) {
  for (std::size_t i = sizeof number; i-- > 0;) {
    bytes += static_cast<char>(number >> 8 * i & 0xFF);
  }
}

bool StandsBefore(const Entry& left, const Entry& right) {
  return std::tie(left.key, right.weight, left.move) < std::tie(right.key, left.weight, right.move);
}

}  // namespace

Entry EntryOf(std::string_view bytes) {
  Entry entry;
  entry.key = TakeNumber<std::uint64_t>(bytes);
  entry.move = TakeNumber<std::uint16_t>(bytes);
  entry.weight = TakeNumber<std::uint16_t>(bytes);
  entry.learn = TakeNumber<std::uint32_t>(bytes);
  return entry;
}

std::string BytesOf(std::vector<Entry> entries) {
  std::sort(entries.begin(), entries.end(), StandsBefore);
  std::string bytes;
  bytes.reserve(entries.size() * kEntrySize);
  for (const Entry& entry : entries) {
    PutNumber(entry.key, bytes);
    PutNumber(entry.move, bytes);
    PutNumber(entry.weight, bytes);
    PutNumber(entry.learn, bytes);
  }
  return bytes;
}

}  // namespace tarvyle::polyglot
