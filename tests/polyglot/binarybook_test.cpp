#include "polyglot/binarybook.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "polyglot/entry.h"
#include "polyglot/key.h"
#include "tests/support/files.h"
#include "tests/support/position_support.h"

namespace tarvyle::polyglot {
namespace {

using support::PositionTest;
using support::TemporaryFolder;

constexpr std::uint64_t kStartKey = 0x463b96181691fc9c;

Entry AtStart(unsigned move, unsigned weight) {
  return {kStartKey, static_cast<std::uint16_t>(move), static_cast<std::uint16_t>(weight)};
}

constexpr unsigned kE2E4 = 001434;
constexpr unsigned kD2D4 = 001333;
constexpr unsigned kG1F3 = 000625;

class BinaryBookTest : public PositionTest {
 protected:
  // "e2e4:3 d2d4:1"
  static std::string MovesText(const BinaryBook& book) {
    std::string text;
    for (const WeightedMove& move : MovesHere(book)) {
      if (!text.empty()) text += ' ';
      text += std::string(MoveToStr(move.move)) + ':' + std::to_string(move.weight);
    }
    return text;
  }

  std::string ReasonOf(const std::string& path) {
    BinaryBook book = BookOf(BytesOf({AtStart(kE2E4, 1)}));
    const std::string reason = ReadBook(path, book);
    EXPECT_EQ(book.Size(), 0u);
    EXPECT_EQ(book.left_over, 0u);
    return reason;
  }

  TemporaryFolder folder_;
};

TEST_F(BinaryBookTest, KnowsTheMovesOfAPosition) {
  const std::string path = folder_.Write(
      "book.bin", BytesOf({{1, 1, 1}, AtStart(kD2D4, 5), AtStart(kE2E4, 9), {~0ull, 1, 1}}));
  BinaryBook book;
  EXPECT_EQ(ReadBook(path, book), "");
  EXPECT_EQ(book.Size(), 4u);
  EXPECT_EQ(book.left_over, 0u);
  EXPECT_TRUE(book.was_sorted);
  EXPECT_EQ(MovesText(book), "e2e4:9 d2d4:5");
  support::Play("e2e4");
  EXPECT_EQ(MovesText(book), "");
}

TEST_F(BinaryBookTest, LeavesOutMovesThatAreNotLegal) {
  const BinaryBook book =
      BookOf(BytesOf({AtStart(001444, 50), AtStart(kE2E4, 3), AtStart(0, 7), AtStart(041434, 8)}));
  EXPECT_EQ(MovesText(book), "e2e4:3");
}

TEST_F(BinaryBookTest, AddsUpTheWeightsOfOneMove) {
  support::SetUpPosition("4k3/8/8/8/8/8/8/4K2R w K -");
  const std::uint64_t key = PositionKey();
  const BinaryBook book = BookOf(BytesOf({{key, 000407, 3}, {key, 000406, 4}, {key, 000403, 5}}));
  EXPECT_EQ(MovesText(book), "e1g1:7 e1d1:5");
}

TEST_F(BinaryBookTest, FindsEveryKeyOfABookOfAnySize) {
  for (std::size_t size = 0; size < 20; ++size) {
    std::vector<Entry> entries;
    for (std::size_t i = 0; i < size; ++i) {
      entries.push_back({10 * (i / 2) + 10, static_cast<std::uint16_t>(i), 1});
    }
    const BinaryBook book = BookOf(BytesOf(entries));
    for (std::uint64_t key = 0; key < 10 * size + 20; key += 5) {
      std::vector<Entry> expected;
      std::copy_if(entries.begin(), entries.end(), std::back_inserter(expected),
                   [key](const Entry& entry) { return entry.key == key; });
      EXPECT_EQ(EntriesOf(book, key), expected) << size << ' ' << key;
    }
  }
}

TEST_F(BinaryBookTest, LooksAtSoManyEntriesOfAPositionOnly) {
  const BinaryBook book = BookOf(BytesOf(std::vector<Entry>(5000, AtStart(kE2E4, 65535))));
  EXPECT_EQ(MovesText(book), "e2e4:65535000");
}

TEST_F(BinaryBookTest, SortsABookThatIsOutOfOrder) {
  const std::string low = BytesOf({{1, 1, 1}});
  const std::string start = BytesOf({AtStart(kE2E4, 2), AtStart(kD2D4, 2)});
  const std::string high = BytesOf({{0xF000000000000000, 1, 1}});
  const BinaryBook book = BookOf(high + start.substr(0, 16) + low + start.substr(16));
  EXPECT_FALSE(book.was_sorted);
  EXPECT_EQ(EntriesOf(book, kStartKey).size(), 2u);
  EXPECT_EQ(EntriesOf(book, 1).size(), 1u);
  EXPECT_EQ(EntriesOf(book, 0xF000000000000000).size(), 1u);
}

TEST_F(BinaryBookTest, TakesWeightsInAnyOrderAsSorted) {
  const std::string light = BytesOf({AtStart(kE2E4, 1)});
  const std::string heavy = BytesOf({AtStart(kD2D4, 9)});
  const BinaryBook book = BookOf(light + heavy);
  EXPECT_TRUE(book.was_sorted);
  EXPECT_EQ(MovesText(book), "d2d4:9 e2e4:1");
}

TEST_F(BinaryBookTest, LeavesOutTheBytesBehindTheLastWholeEntry) {
  const std::string bytes = BytesOf({AtStart(kE2E4, 2), AtStart(kD2D4, 1)});
  for (std::size_t cut = 0; cut <= bytes.size(); ++cut) {
    const BinaryBook book = BookOf(bytes.substr(0, cut));
    EXPECT_EQ(book.Size(), cut / 16);
    EXPECT_EQ(book.left_over, cut % 16);
    EXPECT_EQ(book.bytes.size(), cut - cut % 16);
    EXPECT_EQ(MovesText(book), cut < 16 ? "" : cut < 32 ? "e2e4:2" : "e2e4:2 d2d4:1");
  }
}

TEST_F(BinaryBookTest, SaysWhyItCannotBeRead) {
  EXPECT_EQ(ReasonOf(folder_.Path("none.bin")), "No such file or directory");
  EXPECT_EQ(ReasonOf(folder_.Write("empty.bin", "")), "it is empty");
  EXPECT_EQ(ReasonOf(folder_.Write("short.bin", std::string(15, 'x'))),
            "it is shorter than an entry of a Polyglot book");
  EXPECT_EQ(ReasonOf(folder_.Name()), "it is no plain file");
  const std::string pipe = folder_.Path("pipe.bin");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(ReasonOf(pipe), "it is no plain file");
  EXPECT_EQ(ReasonOf(folder_.Path("short.bin") + "/book.bin"), "Not a directory");
}

// A file with a hole takes no place on the disk.
TEST_F(BinaryBookTest, RefusesAHugeFileUnread) {
  const std::string path = folder_.Write("huge.bin", BytesOf({AtStart(kE2E4, 1)}));
  std::filesystem::resize_file(path, std::uintmax_t{1} << 40);
  EXPECT_EQ(ReasonOf(path), "it is larger than 1 GiB");
}

TEST_F(BinaryBookTest, OfAnyBytesAnswersWithLegalMovesOnly) {
  std::mt19937 random(7);
  int known = 0;
  for (int i = 0; i < 300; ++i) {
    std::string bytes(random() % 4000, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    for (std::size_t at = 0; at + 16 <= bytes.size(); at += 48) {
      bytes.replace(at, 8, BytesOf({AtStart(0, 0)}).substr(0, 8));
      bytes[at + 8] = static_cast<char>(random() % 4);
    }
    const BinaryBook book = BookOf(bytes);
    EXPECT_EQ(book.Size(), bytes.size() / 16);
    for (const WeightedMove& move : MovesHere(book)) {
      Move legal = 0;
      EXPECT_TRUE(StrToMove(MoveToStr(move.move), legal));
      EXPECT_EQ(legal, move.move);
      ++known;
    }
  }
  EXPECT_GT(known, 100);
}

TEST_F(BinaryBookTest, LooksUnlikeAText) {
  EXPECT_TRUE(LooksLikeBook(BytesOf({AtStart(kE2E4, 2)})));
  EXPECT_FALSE(LooksLikeBook("# A00\ne2e4 e7e5\n"));
  EXPECT_FALSE(LooksLikeBook(std::string(5000, '\xE9')));
  EXPECT_FALSE(LooksLikeBook(""));
  EXPECT_FALSE(LooksLikeBook(std::string(16, '\xE9') + BytesOf({AtStart(kE2E4, 2)})))
      << "not sorted";
}

TEST_F(BinaryBookTest, DrawsAsOftenAsTheWeightsSay) {
  const std::vector<WeightedMove> moves =
      MovesHere(BookOf(BytesOf({AtStart(kE2E4, 5), AtStart(kD2D4, 3), AtStart(kG1F3, 0)})));
  ASSERT_EQ(moves.size(), 3u);
  std::map<std::string, int> drawn;
  for (unsigned random = 0; random < 80; ++random) ++drawn[MoveToStr(DrawMove(moves, random))];
  const std::map<std::string, int> expected = {{"e2e4", 50}, {"d2d4", 30}};
  EXPECT_EQ(drawn, expected);
}

TEST_F(BinaryBookTest, DrawsAmongMovesWithoutWeightWhenNoneHasAny) {
  const std::vector<WeightedMove> moves =
      MovesHere(BookOf(BytesOf({AtStart(kE2E4, 0), AtStart(kD2D4, 0)})));
  EXPECT_NE(DrawMove(moves, 0), DrawMove(moves, 1));
  EXPECT_EQ(DrawMove(moves, 0), DrawMove(moves, 2));
  EXPECT_EQ(DrawMove({}, 5), 0u);
}

}  // namespace
}  // namespace tarvyle::polyglot
