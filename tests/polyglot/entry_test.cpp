#include "polyglot/entry.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace tarvyle::polyglot {
namespace {

TEST(PolyglotEntry, IsFourNumbersWithTheHighestByteFirst) {
  const std::string bytes("\x46\x3b\x96\x18\x16\x91\xfc\x9c\x03\x1c\x80\xff\x00\x00\x01\xfe", 16);
  const Entry entry{0x463b96181691fc9c, 0x031c, 0x80ff, 0x1fe};
  EXPECT_EQ(EntryOf(bytes), entry);
  EXPECT_EQ(BytesOf({entry}), bytes);
}

TEST(PolyglotEntry, StandsByKeyThenWeight) {
  const std::string bytes =
      BytesOf({{0x8000000000000000, 1, 9}, {1, 5, 2}, {2, 7, 1}, {1, 6, 3}, {1, 4, 2}});
  std::vector<Entry> entries;
  for (std::size_t i = 0; i < bytes.size(); i += kEntrySize) {
    entries.push_back(EntryOf(std::string_view(bytes).substr(i)));
  }
  const std::vector<Entry> expected = {
      {1, 6, 3}, {1, 4, 2}, {1, 5, 2}, {2, 7, 1}, {0x8000000000000000, 1, 9}};
  EXPECT_EQ(entries, expected);
}

}  // namespace
}  // namespace tarvyle::polyglot
