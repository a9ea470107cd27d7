#include "book/learnmemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "book/learn.h"

namespace tarvyle {
namespace {

class LearnMemory : public testing::Test {
 protected:
  void SetUp() override { LearnReset(); }
  void TearDown() override { LearnReset(); }
};

TEST_F(LearnMemory, IsZeroedAlignedAndApart) {
  std::vector<std::pair<char*, std::size_t>> blocks;
  for (const std::size_t bytes : {1, 40, 41, 97, 65535, 65536, 65537, 200000, 33, 50}) {
    auto* block = static_cast<char*>(LearnAllocate(bytes));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(LearnNode), 0u) << bytes;
    EXPECT_TRUE(std::all_of(block, block + bytes, [](char byte) { return byte == 0; })) << bytes;
    std::memset(block, static_cast<int>(blocks.size()) + 1, bytes);
    blocks.emplace_back(block, bytes);
  }
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const auto [block, bytes] = blocks[i];
    const char mark = static_cast<char>(i + 1);
    EXPECT_TRUE(std::all_of(block, block + bytes, [=](char byte) { return byte == mark; })) << i;
  }
}

TEST_F(LearnMemory, OfNoBytesIsNotAShortage) {
  EXPECT_NE(LearnAllocate(0), nullptr);
  EXPECT_NE(LearnAllocate(8), nullptr);
  EXPECT_NE(LearnAllocate(0), nullptr);
}

TEST_F(LearnMemory, IsThereAgainAfterItsRelease) {
  ASSERT_NE(LearnAllocate(100), nullptr);
  LearnRelease();
  auto* block = static_cast<char*>(LearnAllocate(100));
  ASSERT_NE(block, nullptr);
  EXPECT_EQ(block[99], 0);
  LearnRelease();
  LearnRelease();
}

}  // namespace
}  // namespace tarvyle
