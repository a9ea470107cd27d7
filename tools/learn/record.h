#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// Learn files as a sequence of records, without the engine's table: any number of files at once,
// each record where it stands.

namespace tarvyle::tools {

// One record of a learn file; book/learn.h says what the fields mean.
struct LearnRecord {
  std::uint32_t key_lo = 0;
  std::uint32_t key_hi = 0;
  std::int32_t score = 0;
  std::int16_t kind = 0;
  std::int8_t side = 0;
  std::int8_t depth = 0;
  std::uint8_t book = 0;
  std::string_view text;   // the position, without its zero
  std::string_view bytes;  // the whole record in its file

  bool Learned() const { return depth > 0; }
  std::uint64_t Key() const { return static_cast<std::uint64_t>(key_hi) << 32 | key_lo; }
};

// Where a learn file stops being one; nothing when it is sound to its end.
struct Damage {
  std::size_t record = 0;  // number of the damaged record, from 1
  std::size_t offset = 0;  // where it begins, in bytes
  std::string what;        // "" for none

  explicit operator bool() const { return !what.empty(); }
};

// Reads the records of a learn file's content in order, each with its number from 1, by the rules
// of the engine's own reader, up to the end or to the first damaged one.
Damage ReadRecords(std::string_view content,
                   const std::function<void(const LearnRecord&, std::size_t)>& on_record);

// "FILE: record 17 (byte 1234): ..."
std::string DamageText(const std::string& file, const Damage& damage);

// The bytes of a record as the engine writes it.
std::string RecordBytes(const LearnRecord& record);

// Appends those to `out`: the fields, with what the old bytes hold behind them.
void AppendRecord(std::string& out, const LearnRecord& record);

}  // namespace tarvyle::tools
