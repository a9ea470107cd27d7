#include "book/learnfile.h"

#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "base/file.h"
#include "book/learn.h"
#include "book/learnmemory.h"

namespace tarvyle {

namespace {

constexpr std::size_t kBeforeRecord = offsetof(LearnNode, key_lo);  // node bytes not in the file

// Length of the record at `record`, or 0 when it is damaged: cut short, shorter than a text needs,
// a text without its end, or a wrong check byte.
std::size_t SoundRecordLength(const char* record, std::size_t bytes_left) {
  if (bytes_left < kLearnHeader + 1) return 0;
  LearnNode header;
  std::memcpy(&header.key_lo, record, kLearnHeader);
  // cppcheck-suppress uninitvar  ; it does not see that memcpy fills all members up to the text
  if (header.length < kMinLearnRecord) return 0;
  const auto length = static_cast<std::size_t>(header.length);
  if (length > bytes_left) return 0;
  const char* text = record + kLearnHeader;
  if (std::memchr(text, '\0', length - kLearnHeader) == nullptr) return 0;
  return static_cast<std::uint8_t>(StrHashKey(text)) == header.check ? length : 0;
}

// Bytes that a node with a record of this length takes inside a block of nodes.
constexpr std::size_t NodeStride(std::size_t length) {
  return (kBeforeRecord + length + alignof(LearnNode) - 1) / alignof(LearnNode) *
         alignof(LearnNode);
}

// Bytes of a block that holds a node for every record; false when one is damaged.
bool MeasureNodes(const std::string& content, std::size_t& block_size) {
  block_size = 0;
  for (std::size_t at = 0; at < content.size();) {
    const std::size_t length = SoundRecordLength(content.data() + at, content.size() - at);
    if (length == 0) return false;
    block_size += NodeStride(length);
    at += length;
  }
  return true;
}

// Copies every record, known to be sound, into its node of the block and links it.
void LinkNodes(const std::string& content, char* block) {
  for (std::size_t at = 0; at < content.size();) {
    auto* node = reinterpret_cast<LearnNode*>(block);
    std::memcpy(block + kBeforeRecord, content.data() + at, kLearnHeader);
    const auto length = static_cast<std::size_t>(node->length);
    std::memcpy(block + kBeforeRecord, content.data() + at, length);
    LinkLearnNode(node);
    block += NodeStride(length);
    at += length;
  }
}

bool WriteNode(LearnNode& node, std::FILE* file) {
  node.check = static_cast<std::uint8_t>(StrHashKey(node.text));
  node.link = 0;
  const auto length = static_cast<std::size_t>(node.length);
  const char* record = reinterpret_cast<const char*>(&node) + kBeforeRecord;
  return std::fwrite(record, 1, length, file) == length;
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
  if (file == nullptr) return false;
  const bool written = WriteTable(file) && std::fflush(file) == 0 && fsync(fileno(file)) == 0;
  return std::fclose(file) == 0 && written;
}

}  // namespace tarvyle
