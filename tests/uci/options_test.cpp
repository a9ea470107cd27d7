// What the GUI may set.

#include "uci/options.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

#include "position/types.h"
#include "tests/support/uci_support.h"
#include "uci/knowledge.h"
#include "uci/optionvalues.h"

namespace tarvyle::uci {

using namespace support;

namespace {

constexpr const char* kStyles =
    "option name Style type combo default knowledge3 var knowledge1 var knowledge2 var knowledge3";

class Options : public UciTest {
 protected:
  Lines Set(const std::string& words) {
    return Said([&] { ObeySetOption(words); });
  }

  // Whether the option is refused with that complaint behind its name, and nothing changes.
  testing::AssertionResult Refused(const std::string& name, const std::string& value,
                                   const std::string& complaint) {
    const Settings before = settings;
    const int style = PLAY_STYLE;
    const int entries = Hash_Size;
    const int random = is_rnd_search;
    const Lines said = Set("name " + name + " value " + value);
    if (said != Lines{"info string setoption " + name + ": " + complaint}) {
      return testing::AssertionFailure()
             << name << " " << value << ": " << (said.empty() ? "silence" : said[0]);
    }
    const bool same = settings.own_book == before.own_book &&
                      settings.move_overhead == before.move_overhead &&
                      settings.seed == before.seed && PLAY_STYLE == style && Hash_Size == entries &&
                      is_rnd_search == random;
    return same ? testing::AssertionSuccess()
                : testing::AssertionFailure() << name << " " << value << " changed something";
  }
};

TEST_F(Options, AreDeclaredWithTheirKindsAndBounds) {
  EXPECT_EQ(Said(SayOptions), (Lines{
                                  "option name Hash type spin default 32 min 1 max 65536",
                                  "option name Clear Hash type button",
                                  "option name Threads type spin default 1 min 1 max 1",
                                  kStyles,
                                  "option name Random Search type check default false",
                                  "option name OwnBook type check default false",
                                  "option name Book File type string default <empty>",
                                  "option name Learn File type string default <empty>",
                                  "option name Learn Output type string default <empty>",
                                  "option name Move Overhead type spin default 10 min 0 max 5000",
                                  "option name Seed type spin default 0 min 0 max 2147483647",
                              }));
}

TEST_F(Options, AreBackAtTheStartAfterAReset) {
  for (const char* words :
       {"name Style value knowledge1", "name Random Search value true", "name OwnBook value true",
        "name Book File value x", "name Learn File value y", "name Learn Output value z",
        "name Move Overhead value 77", "name Seed value 5"}) {
    EXPECT_EQ(Set(words), Lines()) << words;
  }
  ResetOptions();
  EXPECT_FALSE(settings.own_book);
  EXPECT_EQ(settings.book_file, "");
  EXPECT_EQ(settings.learn_file, "");
  EXPECT_EQ(settings.learn_output, "");
  EXPECT_EQ(settings.move_overhead, 10);
  EXPECT_EQ(settings.seed, 0u);
  EXPECT_STREQ(print_play_str(), "knowledge3");
  EXPECT_EQ(is_rnd_search, 0);
  EXPECT_FALSE(settings.own_book);
}

// The largest tables that fit, but never smaller ones than there are.
TEST_F(Options, SizeTheTablesByMegabytes) {
  struct Row {
    const char* value;
    int entries;
    const char* taken;
  };
  for (const Row& row : {Row{"8", 0x20000, "8"},
                         {"1", 0x10000, "4"},
                         {"3", 0x10000, "4"},
                         {"4", 0x10000, "4"},
                         {"7", 0x10000, "4"},
                         {"15", 0x20000, "8"},
                         {"16", 0x40000, "16"}}) {
    EXPECT_EQ(Set(std::string("name Hash value ") + row.value),
              Lines{std::string("info string the tables take ") + row.taken + " MB"});
    EXPECT_EQ(Hash_Size, row.entries) << row.value;
  }
  EXPECT_EQ(Beginning(Go("depth 4"), "bestmove").size(), 1u);
}

TEST_F(Options, LeaveTablesOfTheSizeThatTheyHave) {
  Set("name Hash value 4");
  hash[White][0].depth = 7;
  Set("name Hash value 5");
  EXPECT_EQ(hash[White][0].depth, 7u);
  hash[White][0].depth = 0;
}

TEST_F(Options, RefuseSizesOutOfRange) {
  const std::string complaint = "a number from 1 to 65536 was expected";
  for (const char* value : {"0", "-1", "65537", "x", "", "4 MB", "4.0", "99999999999999999999"}) {
    EXPECT_TRUE(Refused("Hash", value, complaint));
  }
}

TEST_F(Options, ForgetAllSearchesByClearHash) {
  Go("depth 4", "startpos");
  HashInsert(300, 400, 9, search_mv);
  int score = 0;
  Move move = 0;
  EXPECT_TRUE(HashLook(-1000, 1000, 9, score, move));
  EXPECT_EQ(Set("name Clear Hash"), Lines());
  EXPECT_FALSE(HashLook(-1000, 1000, 9, score, move));
  EXPECT_EQ(search_mv, 0u);
  EXPECT_EQ(search_list[0], 0u) << "the line that the next search would begin with";
  EXPECT_EQ(Set("name Clear Hash value now"), Lines());
}

TEST_F(Options, HaveOneThread) {
  EXPECT_EQ(Set("name Threads value 1"), Lines());
  for (const char* value : {"0", "2", "x", ""}) {
    EXPECT_TRUE(Refused("Threads", value, "a number from 1 to 1 was expected"));
  }
}

TEST_F(Options, ChooseTheStyle) {
  for (const char* style : {"knowledge1", "knowledge2", "knowledge3"}) {
    EXPECT_EQ(Set(std::string("name Style value ") + style), Lines());
    EXPECT_STREQ(print_play_str(), style);
  }
  EXPECT_EQ(Set("name Style value KNOWLEDGE1"), Lines());
  EXPECT_STREQ(print_play_str(), "knowledge1");
  for (const char* value : {"knowledge4", "knowledge", "", "knowledge1 knowledge2"}) {
    EXPECT_TRUE(Refused("Style", value, "knowledge1, knowledge2 or knowledge3 was expected"));
  }
}

TEST_F(Options, SwitchTheRandomSearchAndTheBook) {
  EXPECT_EQ(Set("name Random Search value true"), Lines());
  EXPECT_EQ(is_rnd_search, 1);
  EXPECT_EQ(Set("name Random Search value FALSE"), Lines());
  EXPECT_EQ(is_rnd_search, 0);
  property_add("color", "red");
  EXPECT_EQ(Set("name OwnBook value True"), Lines());
  EXPECT_TRUE(settings.own_book);
  EXPECT_STREQ(property_get("color"), "red") << "the engine's configuration stays as it is";
  EXPECT_STREQ(property_get("book move"), "");
  EXPECT_EQ(Set("name OwnBook value false"), Lines());
  EXPECT_FALSE(settings.own_book);
  for (const char* name : {"Random Search", "OwnBook"}) {
    for (const char* value : {"", "1", "yes", "true false"}) {
      EXPECT_TRUE(Refused(name, value, "true or false was expected"));
    }
  }
}

TEST_F(Options, NameFiles) {
  EXPECT_EQ(Set("name Book File value /a b/Value of.bk"), Lines());
  EXPECT_EQ(Set("name Learn File value Learn.LRN"), Lines());
  EXPECT_EQ(Set("name Learn Output value out  put.lrn"), Lines());
  EXPECT_EQ(settings.book_file, "/a b/Value of.bk");
  EXPECT_EQ(settings.learn_file, "Learn.LRN");
  EXPECT_EQ(settings.learn_output, "out  put.lrn");
  for (const char* name : {"Book File", "Learn File", "Learn Output"}) {
    EXPECT_EQ(Set("name " + std::string(name) + " value <empty>"), Lines());
  }
  EXPECT_EQ(settings.book_file + settings.learn_file + settings.learn_output, "");
  Set("name Book File value x");
  EXPECT_EQ(Set("name Book File value"), Lines());
  EXPECT_EQ(settings.book_file, "");
}

TEST_F(Options, LetFilesBeReadAnewThatHaveAPartInThem) {
  for (const char* words : {"name Book File value <empty>", "name Learn File value <empty>",
                            "name OwnBook value false"}) {
    FreshenKnowledge();
    EXPECT_FALSE(FreshenKnowledge());
    Set(words);
    EXPECT_TRUE(FreshenKnowledge()) << words;
  }
  Set("name Learn Output value x");
  EXPECT_FALSE(FreshenKnowledge());
}

TEST_F(Options, BoundNumbers) {
  for (const int value : {0, 1, 10, 5000}) {
    EXPECT_EQ(Set("name Move Overhead value " + std::to_string(value)), Lines());
    EXPECT_EQ(settings.move_overhead, value);
  }
  for (const unsigned value : {0u, 1u, 2147483647u}) {
    EXPECT_EQ(Set("name Seed value " + std::to_string(value)), Lines());
    EXPECT_EQ(settings.seed, value);
  }
  for (const char* value : {"-1", "5001", "x", "", "1 0"}) {
    EXPECT_TRUE(Refused("Move Overhead", value, "a number from 0 to 5000 was expected"));
  }
  for (const char* value : {"-1", "2147483648", "x", ""}) {
    EXPECT_TRUE(Refused("Seed", value, "a number from 0 to 2147483647 was expected"));
  }
}

TEST_F(Options, AreNamedInAnyCaseAndSurroundedByAnyBlanks) {
  for (const char* words : {"name seed value 7", "name SEED value 7", " \t name  Seed  value  7 \r",
                            "name \tSeed\t value \t7"}) {
    settings.seed = 0;
    EXPECT_EQ(Set(words), Lines()) << words;
    EXPECT_EQ(settings.seed, 7u) << words;
  }
  EXPECT_EQ(Set("name moVE overHEAD value 8"), Lines());
  EXPECT_EQ(settings.move_overhead, 8);
}

TEST_F(Options, RefuseWhatIsNoAssignment) {
  for (const char* words :
       {"", " \t", "name", "name\tSeed value 7", "Name Seed value 7", "value 7", "Seed value 7"}) {
    EXPECT_EQ(Set(words), Lines{"info string setoption : name was expected"}) << words;
  }
  EXPECT_EQ(Set("name Move  Overhead value 8"),
            Lines{"info string setoption Move  Overhead: there is no such option"});
  EXPECT_EQ(Set("name Nonsense value 8"),
            Lines{"info string setoption Nonsense: there is no such option"});
  EXPECT_EQ(Set("name value 8"), Lines{"info string setoption value 8: there is no such option"});
  EXPECT_EQ(settings.move_overhead, 0) << "as the fixture has set it";
}

TEST_F(Options, DeclareTheFilesOfTheUsersDataFolder) {
  std::filesystem::create_directories(folder_.Path("data/tarvyle"));
  const std::string book = folder_.Write("data/tarvyle/tarvyle.bk", "e2e4\n");
  const std::string learned = folder_.Write("data/tarvyle/tarvyle.lrn", "");
  const Lines said = Said(SayOptions);
  EXPECT_EQ(Beginning(said, "option name Book File type string default " + book).size(), 1u);
  EXPECT_EQ(Beginning(said, "option name Learn File type string default " + learned).size(), 1u);
  ResetOptions();
  EXPECT_EQ(settings.book_file, book);
  EXPECT_EQ(settings.learn_file, learned);
}

}  // namespace

}  // namespace tarvyle::uci
