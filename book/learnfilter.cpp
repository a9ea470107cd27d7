#include "book/learnfilter.h"

#include <cstddef>
#include <new>
#include <vector>

#include "book/learn.h"

namespace tarvyle {

namespace {

constexpr std::size_t kFirstBits = std::size_t{1} << 16;
constexpr std::size_t kBitsPerKey = 16;  // with fewer, too many unknown keys would pass
constexpr std::size_t kGrowth = 8;

std::vector<std::uint64_t> bits(kFirstBits / 64);
std::size_t keys = 0;

std::size_t BitOf(std::uint32_t key_lo, std::uint32_t key_hi) {
  // The bucket is chosen by the low bits of key_lo; these are others.
  return (static_cast<std::uint64_t>(key_hi) << 16 | key_lo >> 16) & (bits.size() * 64 - 1);
}

void SetBit(std::uint32_t key_lo, std::uint32_t key_hi) {
  const std::size_t bit = BitOf(key_lo, key_hi);
  bits[bit / 64] |= std::uint64_t{1} << (bit % 64);
}

// Without memory the field stays as it is: then it says "may be" more often.
void Grow() {
  std::vector<std::uint64_t> wider;
  try {
    wider.assign(bits.size() * kGrowth, 0);
  } catch (const std::bad_alloc&) {
    return;
  }
  bits.swap(wider);
  for (const LearnNode* head : learn) {
    for (const LearnNode* node = head; node != nullptr; node = node->next) {
      SetBit(node->key_lo, node->key_hi);
    }
  }
}

}  // namespace

bool MayBeLearned(std::uint32_t key_lo, std::uint32_t key_hi) {
  const std::size_t bit = BitOf(key_lo, key_hi);
  return (bits[bit / 64] >> (bit % 64) & 1) != 0;
}

void NoteLearned(std::uint32_t key_lo, std::uint32_t key_hi) {
  if (++keys * kBitsPerKey > bits.size() * 64) Grow();
  SetBit(key_lo, key_hi);
}

void ClearLearnFilter() {
  bits.assign(kFirstBits / 64, 0);
  keys = 0;
}

}  // namespace tarvyle
