#include "book/learnfilter.h"

#include <cstddef>
#include <new>
#include <vector>

namespace tarvyle {

namespace {

// Every key has its word, and there four bits: with this many words to the keys, few unknown keys
// find all of theirs set, and each look costs one cache line.
constexpr std::size_t kFirstWords = std::size_t{1} << 10;
constexpr std::size_t kKeysPerWord = 4;
constexpr std::size_t kGrowth = 8;

std::vector<std::uint64_t> words(kFirstWords);
std::size_t keys = 0;

std::uint64_t& WordOf(std::uint32_t key_lo, std::uint32_t key_hi) {
  // The bucket is chosen by the low bits of key_lo; these are others.
  const std::uint64_t number = static_cast<std::uint64_t>(key_hi) << 16 | key_lo >> 16;
  return words[number & (words.size() - 1)];
}

std::uint64_t BitsOf(std::uint32_t key_hi) {
  const auto bit = [&](int shift) { return std::uint64_t{1} << (key_hi >> shift & 63); };
  return bit(8) | bit(14) | bit(20) | bit(26);
}

}  // namespace

bool MayBeLearned(std::uint32_t key_lo, std::uint32_t key_hi) {
  const std::uint64_t bits = BitsOf(key_hi);
  return (WordOf(key_lo, key_hi) & bits) == bits;
}

void PrefetchLearned(std::uint32_t key_lo, std::uint32_t key_hi) {
  __builtin_prefetch(&WordOf(key_lo, key_hi));
}

void NoteLearned(std::uint32_t key_lo, std::uint32_t key_hi) {
  WordOf(key_lo, key_hi) |= BitsOf(key_hi);
  ++keys;
}

bool LearnFilterIsFull() { return keys >= words.size() * kKeysPerWord; }

bool WidenLearnFilter() {
  try {
    std::vector<std::uint64_t> wider(words.size() * kGrowth, 0);
    words.swap(wider);
  } catch (const std::bad_alloc&) {
    return false;
  }
  keys = 0;
  return true;
}

void ClearLearnFilter() {
  words.assign(kFirstWords, 0);
  keys = 0;
}

}  // namespace tarvyle
