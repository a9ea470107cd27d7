#include "book/learnfile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "book/bookfile.h"
#include "book/learn.h"
#include "tests/support/book_support.h"
#include "tests/support/captured.h"
#include "tests/support/eval_support.h"
#include "tests/support/files.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using namespace std::string_literals;
using support::AsLinked;
using support::Listen;
using support::Play;
using support::RecordBytes;
using support::RecordFields;
using support::Said;
using support::SetUpRoot;
using support::SplitRecords;
using support::StartAfresh;
using support::TableRecords;
using support::TemporaryFolder;
using Records = std::vector<std::string>;

std::string Joined(const Records& records) {
  std::string bytes;
  for (const std::string& record : records) bytes += record;
  return bytes;
}

class LearnFile : public testing::Test {
 protected:
  void SetUp() override {
    StartAfresh();
    alarm(300);  // a load that waits for something must not wait for ever
  }
  void TearDown() override { alarm(0); }

  // Loads a file of these bytes into an empty table.
  bool Load(std::string_view bytes) {
    LearnReset();
    return LoadLearnTable(folder_.Write("file.lrn", bytes).c_str());
  }

  // Adds a file to the table, without a word printed.
  static bool LoadPath(const std::string& path) {
    bool loaded = false;
    const Said printed = Listen([&] { loaded = LoadLearnTable(path.c_str()); });
    EXPECT_EQ(printed.out + printed.err, "");
    return loaded;
  }

  std::string Save() {
    EXPECT_TRUE(SaveLearnTable(folder_.Path("saved.lrn").c_str()));
    return support::ReadFile(folder_.Path("saved.lrn"));
  }

  // What becomes of a file that is added to a table with a position.
  static LearnFileState StateOf(const std::string& path) {
    InsertNodeLearn();
    const LearnFileState state = ReadLearnFile(path.c_str());
    EXPECT_EQ(TableRecords().empty(), state != LearnFileState::kLoaded);
    return state;
  }

  // The table must be empty after a refusal, and what the records say otherwise.
  void ExpectLoadedAsTheBytesSay(std::string_view bytes) {
    const auto records = SplitRecords(bytes);
    ASSERT_EQ(Load(bytes), records.has_value());
    ASSERT_EQ(TableRecords(), records ? AsLinked(*records) : Records{});
  }

  TemporaryFolder folder_;
};

// Records of several kinds; the second and third share a bucket with the first.
Records SomeRecords() {
  RecordFields a;
  a.key_lo = 0x12345678;
  a.key_hi = 0x9ABCDEF0;
  a.link = 0xDEADBEEF;
  a.score = -999123;
  a.text = "k7/8/8/8/8/8/8/7K w\0"s;
  RecordFields b = a;
  b.key_lo = 0xFFFF5678;
  b.kind = 0;
  b.side = 1;
  b.depth = 17;
  b.book = 0;
  b.score = 55;
  b.text = "8/8\0"s;
  RecordFields c = a;
  c.text = "k7/8/8/8/8/8/8/7K w KQ\0"s;
  RecordFields d = a;
  d.key_lo = 1;
  d.text = "\xFF\xFE\0and more\0junk"s;
  RecordFields e = a;
  e.key_lo = 0xFFFFFFFF;
  e.text = "\0\0"s;
  return {RecordBytes(a), RecordBytes(b), RecordBytes(c), RecordBytes(d), RecordBytes(e)};
}

TEST_F(LearnFile, OfNoBytesIsAnEmptyTable) {
  EXPECT_TRUE(Load(""));
  EXPECT_TRUE(TableRecords().empty());
  EXPECT_EQ(Save(), "");
}

TEST_F(LearnFile, ThatIsMissingIsRefused) {
  InsertNodeLearn();
  EXPECT_FALSE(LoadPath(folder_.Path("none.lrn")));
  EXPECT_TRUE(TableRecords().empty());
}

TEST_F(LearnFile, ThatIsNoRegularFileIsRefusedAtOnce) {
  std::filesystem::create_directory(folder_.Path("folder"));
  ASSERT_EQ(mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", folder_.Path("broken-link"));
  for (const std::string& name : {"folder"s, "pipe"s, "broken-link"s}) {
    InsertNodeLearn();
    EXPECT_FALSE(LoadPath(folder_.Path(name))) << name;
    EXPECT_TRUE(TableRecords().empty()) << name;
  }
  EXPECT_FALSE(LoadPath("/dev/zero"));
}

TEST_F(LearnFile, TellsWhyItIsNotLoaded) {
  EXPECT_EQ(StateOf(folder_.Write("sound", Joined(SomeRecords()))), LearnFileState::kLoaded);
  EXPECT_EQ(StateOf(folder_.Path("nothing")), LearnFileState::kMissing);
  EXPECT_EQ(StateOf(folder_.Name()), LearnFileState::kMissing);
  EXPECT_EQ(StateOf(folder_.Write("damaged", "damaged")), LearnFileState::kDamaged);
  std::filesystem::create_symlink("itself", folder_.Path("itself"));
  EXPECT_EQ(StateOf(folder_.Path("itself")), LearnFileState::kUnreadable);
}

TEST_F(LearnFile, IsReadThroughALink) {
  folder_.Write("real.lrn", Joined(SomeRecords()));
  std::filesystem::create_symlink("real.lrn", folder_.Path("link.lrn"));
  EXPECT_TRUE(LoadPath(folder_.Path("link.lrn")));
  EXPECT_EQ(TableRecords().size(), 5u);
}

TEST_F(LearnFile, GivesItsRecordsToTheTableLastFirst) {
  ExpectLoadedAsTheBytesSay(Joined(SomeRecords()));
  const LearnNode* first = learn[0x5678];
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first->text, "k7/8/8/8/8/8/8/7K w KQ");
  EXPECT_STREQ(first->next->text, "8/8");
  EXPECT_EQ(first->next->depth, 17);
  EXPECT_EQ(first->next->side, 1);
  EXPECT_EQ(first->next->score, 55);
  EXPECT_EQ(first->next->book, 0);
  EXPECT_STREQ(first->next->next->text, "k7/8/8/8/8/8/8/7K w");
  EXPECT_EQ(first->next->next->score, -999123);
  EXPECT_EQ(first->next->next->next, nullptr);
}

TEST_F(LearnFile, IsAddedToWhatTheTableHolds) {
  InsertNodeLearn();
  EXPECT_TRUE(LoadPath(folder_.Write("file.lrn", Joined(SomeRecords()))));
  EXPECT_EQ(TableRecords().size(), 6u);
  EXPECT_NE(FindCurrentNode(), nullptr);
}

TEST_F(LearnFile, CutAnywhereIsRefusedAsAWhole) {
  const Records records = SomeRecords();
  const std::string bytes = Joined(records);
  std::vector<std::size_t> ends = {0};
  for (const std::string& record : records) ends.push_back(ends.back() + record.size());
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    const bool at_an_end = std::find(ends.begin(), ends.end(), size) != ends.end();
    ASSERT_EQ(Load(bytes.substr(0, size)), at_an_end) << size << " bytes";
    ASSERT_EQ(TableRecords().empty(), size == 0 || !at_an_end) << size << " bytes";
  }
}

TEST_F(LearnFile, WithAnyByteChangedIsRefusedOrReadAsItStands) {
  const std::string bytes = Joined(SomeRecords());
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    for (const int mask : {1, 2, 4, 8, 16, 32, 64, 128, 255}) {
      std::string changed = bytes;
      changed[at] = static_cast<char>(changed[at] ^ mask);
      SCOPED_TRACE("byte " + std::to_string(at) + " mask " + std::to_string(mask));
      ExpectLoadedAsTheBytesSay(changed);
      if (HasFailure()) return;
    }
  }
}

TEST_F(LearnFile, OfAnyBytesIsRefusedOrReadAsItStands) {
  support::Random random(53);
  const Records some = SomeRecords();
  for (int i = 0; i < 1500; ++i) {
    std::string bytes;
    for (int parts = support::Below(random, 4); parts > 0; --parts) {
      bytes += some[static_cast<std::size_t>(support::Below(random, 5))];
      for (int junk = support::Below(random, 3) * support::Below(random, 30); junk > 0; --junk) {
        bytes += static_cast<char>(support::Below(random, 256));
      }
    }
    ExpectLoadedAsTheBytesSay(bytes);
    if (HasFailure()) return;
  }
}

struct DamageRow {
  const char* meaning;
  RecordFields fields;
  bool sound;
};

TEST_F(LearnFile, IsRefusedForOneBadRecordAndReadForAnOddOne) {
  const auto with = [](std::string text, std::optional<std::int16_t> length = {},
                       std::optional<std::uint8_t> check = {}) {
    RecordFields fields;
    fields.text = std::move(text);
    fields.length = length;
    fields.check = check;
    return fields;
  };
  const DamageRow rows[] = {
      {"as it should be", with("8/8 w\0"s), true},
      {"length 0", with("8/8 w\0"s, std::int16_t{0}), false},
      {"length -1", with("8/8 w\0"s, std::int16_t{-1}), false},
      {"the least length", with("8/8 w\0"s, std::int16_t{INT16_MIN}), false},
      {"length 24", with("8/8 w\0"s, std::int16_t{24}), false},
      {"an empty text of length 25", with("\0"s), false},
      {"an empty text of length 26", with("\0\0"s), true},
      {"the length of a text of one letter", with("8\0"s), true},
      {"the greatest length, and too few bytes", with("8/8 w\0"s, std::int16_t{INT16_MAX}), false},
      {"the greatest length, and all bytes", with("8/8 w" + std::string(INT16_MAX - 24 - 5, '\0')),
       true},
      {"one byte too few", with("8/8 w\0"s, std::int16_t{31}), false},
      {"a text without its end", with("8/8 wKQ"s), false},
      {"a text whose end lies in the next record", with("8/8 w"s), false},
      {"a wrong check byte", with("8/8 w\0"s, {}, std::uint8_t{1}), false},
      {"bytes after the end take no part in the check", with("8/8 w\0zzz"s), true},
  };
  for (const DamageRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    const std::string good = SomeRecords()[0];
    EXPECT_EQ(Load(RecordBytes(row.fields)), row.sound);
    EXPECT_EQ(TableRecords().size(), row.sound ? 1u : 0u);
    EXPECT_EQ(Load(good + RecordBytes(row.fields)), row.sound) << "after a good one";
    EXPECT_EQ(TableRecords().size(), row.sound ? 2u : 0u);
    if (row.fields.text.back() != '\0') continue;
    ExpectLoadedAsTheBytesSay(RecordBytes(row.fields) + good);
  }
}

TEST_F(LearnFile, RefusedEmptiesATableThatHeldSomething) {
  InsertNodeLearn();
  EXPECT_FALSE(LoadPath(folder_.Write("file.lrn", "too short")));
  EXPECT_TRUE(TableRecords().empty());
}

TEST_F(LearnFile, WithOneTextByteChangedIsRefused) {
  std::string bytes = SomeRecords()[0];
  bytes[24] = 'K';
  EXPECT_FALSE(Load(bytes));
  bytes[23] = static_cast<char>(bytes[23] + ('K' - 'k'));
  EXPECT_TRUE(Load(bytes)) << "with the check byte set right it is read";
}

TEST_F(LearnFile, HoldsTheRecordsOfTheTableByBucketNewestFirst) {
  Play("e2e4");
  SaveSearchResult(-42, 9);
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R w KQkq -");
  InsertNodeLearn();
  SetUpRoot("r3k2r/8/8/8/8/8/8/R3K2R w Kq -");
  SaveSearchResult(31, 4);
  const auto saved = SplitRecords(Save());
  ASSERT_TRUE(saved.has_value());
  EXPECT_EQ(*saved, TableRecords());
  ASSERT_EQ(saved->size(), 3u);
  RecordFields fields;
  fields.key_lo = g.key.low;
  fields.key_hi = g.key.high;
  fields.score = 31;
  fields.kind = 0;
  fields.depth = 4;
  fields.book = 0;
  fields.text = "r3k2r/8/8/8/8/8/8/R3K2R w Kq\0"s;
  const auto at = std::find(saved->begin(), saved->end(), RecordBytes(fields));
  ASSERT_NE(at, saved->end()) << "the record of the position searched last";
  fields.score = 0;
  fields.kind = 16;
  fields.depth = 0;
  fields.book = 1;
  fields.text = "r3k2r/8/8/8/8/8/8/R3K2R w QKqk\0"s;
  ASSERT_NE(at + 1, saved->end());
  EXPECT_EQ(*(at + 1), RecordBytes(fields)) << "and behind it the older one of its bucket";
}

TEST_F(LearnFile, IsWrittenWithAZeroLinkAndAFreshCheckByte) {
  ASSERT_TRUE(Load(Joined(SomeRecords())));
  for (LearnNode* head : learn) {
    for (LearnNode* node = head; node != nullptr; node = node->next) node->check ^= 0x55;
  }
  const auto saved = SplitRecords(Save());
  ASSERT_TRUE(saved.has_value()) << "every check byte is right again";
  EXPECT_EQ(*saved, AsLinked(SomeRecords())) << "whose links are zero";
}

TEST_F(LearnFile, KeepsTheBytesBehindTheEndOfAText) {
  ASSERT_TRUE(Load(Joined(SomeRecords())));
  EXPECT_NE(Save().find("and more\0junk"s), std::string::npos);
}

TEST_F(LearnFile, TurnsEachBucketRoundWithEverySaveAndLoad) {
  ASSERT_TRUE(Load(Joined(SomeRecords())));
  const std::string first = Save();
  ASSERT_TRUE(Load(first));
  const std::string second = Save();
  EXPECT_NE(second, first);
  EXPECT_EQ(second.size(), first.size());
  EXPECT_EQ(*SplitRecords(second), AsLinked(*SplitRecords(first)));
  ASSERT_TRUE(Load(second));
  EXPECT_EQ(Save(), first);
}

TEST_F(LearnFile, CarriesTheBookFromOneRunToTheNext) {
  ASSERT_TRUE(ReadLibFile(TESTS_DATA_DIR "/book.bk"));
  const std::string bytes = Save();
  const std::size_t positions = TableRecords().size();
  ASSERT_TRUE(Load(bytes));
  EXPECT_EQ(TableRecords().size(), positions);
  Play("e2e4 e7e5");
  ASSERT_NE(FindCurrentNode(), nullptr);
  EXPECT_EQ(FindCurrentNode()->book, 1);
}

TEST_F(LearnFile, ReplacesWhatStoodInItsPlace) {
  folder_.Write("saved.lrn", std::string(100000, 'x'));
  InsertNodeLearn();
  EXPECT_EQ(Save(), TableRecords()[0]);
}

TEST_F(LearnFile, ThatCannotBeWrittenIsAFailure) {
  InsertNodeLearn();
  EXPECT_FALSE(SaveLearnTable(folder_.Path("no/such/folder").c_str()));
  EXPECT_FALSE(SaveLearnTable(folder_.Path(".").c_str()));
  EXPECT_FALSE(SaveLearnTable("/dev/full"));
  EXPECT_EQ(TableRecords().size(), 1u) << "the table stays";
}

}  // namespace
}  // namespace tarvyle
