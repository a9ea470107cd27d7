#include "book/learnmemory.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace tarvyle {

namespace {

// Nodes are cut from chunks; a request larger than a chunk gets one of its own.
struct alignas(std::max_align_t) Chunk {
  Chunk* next;
};

constexpr std::size_t kChunkBytes = std::size_t{1} << 16;
constexpr std::size_t kAlignment = alignof(void*);

Chunk* chunks = nullptr;
char* free_begin = nullptr;
char* free_end = nullptr;

bool AddChunk(std::size_t bytes) {
  void* memory = std::calloc(1, sizeof(Chunk) + bytes);
  if (memory == nullptr) return false;
  chunks = new (memory) Chunk{chunks};
  free_begin = static_cast<char*>(memory) + sizeof(Chunk);
  free_end = free_begin + bytes;
  return true;
}

}  // namespace

void* LearnAllocate(std::size_t bytes) {
  bytes = (bytes + kAlignment - 1) / kAlignment * kAlignment;
  const auto left = static_cast<std::size_t>(free_end - free_begin);
  const bool enough = chunks != nullptr && left >= bytes;
  if (!enough && !AddChunk(std::max(bytes, kChunkBytes))) return nullptr;
  void* memory = free_begin;
  free_begin += bytes;
  return memory;
}

void LearnRelease() {
  while (chunks != nullptr) {
    Chunk* chunk = chunks;
    chunks = chunk->next;
    std::free(chunk);
  }
  free_begin = nullptr;
  free_end = nullptr;
}

}  // namespace tarvyle
