#include "book/learnfile.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

#include "base/file.h"
#include "base/replace.h"
#include "book/learn.h"
#include "book/learnmemory.h"

namespace tarvyle {

namespace {

// Bytes that a node with a record of this length takes inside a block of nodes.
constexpr std::size_t NodeStride(std::size_t length) {
  return (kBeforeRecord + length + alignof(LearnNode) - 1) / alignof(LearnNode) *
         alignof(LearnNode);
}

// Bytes of a block that holds a node for every record; false when one is damaged.
bool MeasureNodes(const std::string& content, std::size_t& block_size) {
  block_size = 0;
  for (std::size_t at = 0; at < content.size();) {
    const RecordLook look = LookAtRecord(std::string_view(content).substr(at));
    if (look.fault != RecordFault::kNone) return false;
    const auto length = static_cast<std::size_t>(look.length);
    block_size += NodeStride(length);
    at += length;
  }
  return true;
}

// Copies every record, known to be sound, into its node of the block and links it.
void LinkNodes(const std::string& content, char* block) {
  for (std::size_t at = 0; at < content.size();) {
    const char* record = content.data() + at;
    const auto length = static_cast<std::size_t>(RecordLength(record));
    std::memcpy(block + kBeforeRecord, record, length);
    LinkLearnNode(reinterpret_cast<LearnNode*>(block));
    block += NodeStride(length);
    at += length;
  }
}

bool WriteNode(LearnNode& node, std::FILE* file) {
  const std::string_view record = SealRecord(node);
  return std::fwrite(record.data(), 1, record.size(), file) == record.size();
}

bool WriteTable(std::FILE* file) {
  for (LearnNode* head : learn) {
    for (LearnNode* node = head; node != nullptr; node = node->next) {
      if (!WriteNode(*node, file)) return false;
    }
  }
  return true;
}

LearnFileState AddRecords(const char* path) {
  std::string content;
  switch (ReadFile(path, content)) {
    case FileState::kMissing: return LearnFileState::kMissing;
    case FileState::kUnreadable: return LearnFileState::kUnreadable;
    case FileState::kRead: break;
  }
  std::size_t block_size = 0;
  if (!MeasureNodes(content, block_size)) return LearnFileState::kDamaged;
  char* block = static_cast<char*>(LearnAllocate(block_size));
  if (block == nullptr) return LearnFileState::kUnreadable;
  LinkNodes(content, block);
  return LearnFileState::kLoaded;
}

}  // namespace

LearnFileState ReadLearnFile(const char* path) {
  const LearnFileState state = AddRecords(path);
  if (state != LearnFileState::kLoaded) LearnClear();
  return state;
}

bool LoadLearnTable(const char* path) { return ReadLearnFile(path) == LearnFileState::kLoaded; }

bool SaveLearnTable(const char* path) {
  std::FILE* file = std::fopen(path, "wb");
  return file != nullptr && FinishFile(file, WriteTable(file));
}

}  // namespace tarvyle
