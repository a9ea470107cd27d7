#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "book/learnrecord.h"
#include "tools/learn/recordreader.h"

namespace tarvyle::tools {

// Knowledge brought together from several learn files: one record a position, that of the deepest
// search (of equal depths the one that came first), with the book flag of any of them.
class RecordSet {
 public:
  // Adds the records of a learn file's content, which is kept. Damage stops it there; what came
  // before is in.
  Damage AddContent(std::string content);

  // Reads a file and adds its records. Throws std::runtime_error for a file that cannot be read,
  // and for a damaged one, which adds nothing unless `salvage` is set: then a note on standard
  // error tells what was left out.
  void AddFile(const std::string& path, bool salvage = false);

  // Adds what the engine's learn table holds now.
  void AddEngineTable();

  // Adds one record; its bytes must stay where they are.
  void Add(const LearnRecord& record);

  // The record of the same position, or null.
  const LearnRecord* Find(const LearnRecord& record) const;

  // Takes the book flag from every position, and forgets those that were book positions only.
  // Returns how many had it.
  std::size_t DropBook();

  const std::vector<LearnRecord>& Records() const { return records_; }

  // The content of a learn file with all records, bucket by bucket as the engine writes it; the
  // same positions always give the same order.
  std::string FileContent() const;

 private:
  struct Identity {
    std::uint64_t key;
    std::int8_t side;
    std::string_view text;
    bool operator==(const Identity&) const = default;
  };
  struct IdentityHash {
    std::size_t operator()(const Identity& identity) const { return identity.key; }
  };
  static Identity IdentityOf(const LearnRecord& record) {
    return {record.Key(), record.side, record.text};
  }

  std::deque<std::string> contents_;  // what the records point into
  std::vector<LearnRecord> records_;
  std::unordered_map<Identity, std::size_t, IdentityHash> places_;  // into records_
};

}  // namespace tarvyle::tools
