#include "tools/learn/recordset.h"

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <tuple>
#include <utility>

#include "host/learntable.h"
#include "tools/files.h"

namespace tarvyle::tools {

namespace {

auto FileOrder(const LearnRecord& record) {
  return std::tuple(record.key_lo & 0xFFFF, record.Key(), record.side, record.text);
}

// The deeper result, with the book flag and the kind of both.
void Unite(LearnRecord& known, const LearnRecord& other) {
  const std::uint8_t book = known.book | other.book;
  const std::int16_t kind = std::max(known.kind, other.kind);
  if (other.depth > known.depth) known = other;
  known.book = book;
  known.kind = kind;
}

std::string EngineRecords() {
  std::string content;
  VisitLearnTable([&content](const LearnNode& node) {
    content += RecordOf(node);
    return true;
  });
  return content;
}

void TellSalvage(const std::string& path, const Damage& damage, std::size_t size) {
  std::fprintf(stderr, "tarv: %s; %zu records before it are taken, %zu bytes are left out\n",
               DamageText(path, damage).c_str(), damage.record - 1, size - damage.offset);
}

}  // namespace

Damage RecordSet::AddContent(std::string content) {
  const std::string& kept = contents_.emplace_back(std::move(content));
  return ReadRecords(kept, [this](const LearnRecord& record, std::size_t) { Add(record); });
}

void RecordSet::AddFile(const std::string& path, bool salvage) {
  std::string content = ReadWholeFile(path);
  const std::size_t size = content.size();
  const Damage damage = ReadRecords(content, [](const LearnRecord&, std::size_t) {});
  if (damage && !salvage) throw std::runtime_error(DamageText(path, damage));
  if (damage) TellSalvage(path, damage, size);
  (void)AddContent(std::move(content));
}

void RecordSet::AddEngineTable() {
  const Damage damage = AddContent(EngineRecords());
  if (damage) throw std::logic_error(DamageText("learn table", damage));
}

void RecordSet::Add(const LearnRecord& record) {
  const auto [place, fresh] = places_.try_emplace(IdentityOf(record), records_.size());
  if (fresh) {
    records_.push_back(record);
  } else {
    Unite(records_[place->second], record);
  }
}

const LearnRecord* RecordSet::Find(const LearnRecord& record) const {
  const auto place = places_.find(IdentityOf(record));
  return place == places_.end() ? nullptr : &records_[place->second];
}

std::size_t RecordSet::DropBook() {
  std::size_t count = 0;
  std::vector<LearnRecord> kept;
  for (LearnRecord& record : records_) {
    count += record.book != 0 ? 1 : 0;
    if (record.book != 0 && !record.Learned()) continue;
    record.book = 0;
    kept.push_back(record);
  }
  records_.clear();
  places_.clear();
  for (const LearnRecord& record : kept) Add(record);
  return count;
}

std::string RecordSet::FileContent() const {
  std::vector<const LearnRecord*> ordered;
  std::size_t size = 0;
  for (const LearnRecord& record : records_) {
    ordered.push_back(&record);
    size += record.bytes.size();
  }
  std::sort(ordered.begin(), ordered.end(), [](const LearnRecord* a, const LearnRecord* b) {
    return FileOrder(*a) < FileOrder(*b);
  });
  std::string content;
  content.reserve(size);
  for (const LearnRecord* record : ordered) AppendRecord(content, *record);
  return content;
}

}  // namespace tarvyle::tools
