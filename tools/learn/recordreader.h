#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

#include "book/learnrecord.h"

// Learn files as a sequence of records, without the engine's table: any number of files at once,
// each record where it stands.

namespace tarvyle::tools {

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

}  // namespace tarvyle::tools
