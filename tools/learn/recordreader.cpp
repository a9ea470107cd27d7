#include "tools/learn/recordreader.h"

namespace tarvyle::tools {

namespace {

// What is wrong with a record, of whose file so many bytes are left; "" for nothing.
std::string FaultText(const RecordLook& look, std::size_t left) {
  const std::string length = std::to_string(look.length) + " bytes";
  const std::string rest = std::to_string(left);
  switch (look.fault) {
    case RecordFault::kNone: break;
    case RecordFault::kCutShort: return "cut short, only " + rest + " bytes are left in the file";
    case RecordFault::kLength: return "its length cannot be " + length;
    case RecordFault::kBeyondEnd:
      return "its length is " + length + ", but only " + rest + " are left in the file";
    case RecordFault::kEndlessText: return "its text has no end";
    case RecordFault::kCheckByte: return "its text and its check byte do not agree";
  }
  return "";
}

}  // namespace

Damage ReadRecords(std::string_view content,
                   const std::function<void(const LearnRecord&, std::size_t)>& on_record) {
  LearnRecord record;
  std::size_t number = 1;
  for (std::size_t at = 0; at < content.size(); at += record.bytes.size(), ++number) {
    const std::string_view rest = content.substr(at);
    const RecordLook look = ReadRecord(rest, record);
    if (look.fault != RecordFault::kNone) return {number, at, FaultText(look, rest.size())};
    on_record(record, number);
  }
  return {};
}

std::string DamageText(const std::string& file, const Damage& damage) {
  return file + ": record " + std::to_string(damage.record) + " (byte " +
         std::to_string(damage.offset) + ") is damaged: " + damage.what;
}

}  // namespace tarvyle::tools
