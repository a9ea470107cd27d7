#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Helpers of the tests of book and learn table.

namespace tarvyle::support {

// The start position, an empty learn table and zeroed repetition counters.
void StartAfresh();

// The text of the current position by MakeEpd, whose buffer held something else before.
std::string Epd();

// A record of the learn file, field by field.
struct RecordFields {
  std::uint32_t key_lo = 0;
  std::uint32_t key_hi = 0;
  std::uint32_t link = 0;
  std::int32_t score = 0;
  std::int16_t kind = 16;
  std::optional<std::int16_t> length;  // what the text asks for, unless set
  std::int8_t side = 0;
  std::int8_t depth = 0;
  std::uint8_t book = 1;
  std::optional<std::uint8_t> check;  // what the text asks for, unless set
  std::string text;                   // all bytes after the header, the zero included
};
std::string RecordBytes(const RecordFields& fields);

// The records of a learn file in file order, or none when the file is damaged.
std::optional<std::vector<std::string>> SplitRecords(std::string_view bytes);

// The learn table as records with a zero link: bucket by bucket, in list order.
std::vector<std::string> TableRecords();

// What the table holds after records were put, one by one, at the head of their buckets.
std::vector<std::string> AsLinked(const std::vector<std::string>& records);

// The texts of all nodes of the table, in no particular order.
std::vector<std::string> TableTexts();

}  // namespace tarvyle::support
