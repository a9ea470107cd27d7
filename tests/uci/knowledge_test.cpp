// Book and learn table: when they are read, and what is put down.

#include "uci/knowledge.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <vector>

#include "book/learn.h"
#include "book/learnfile.h"
#include "tests/support/book_support.h"
#include "tests/support/uci_support.h"
#include "uci/options.h"
#include "uci/place.h"

namespace tarvyle::uci {

using namespace support;

namespace {

constexpr const char* kAfterH4 = "rnbqkbnr/pppppppp/8/8/7P/8/PPPPPPP1/RNBQKBNR b QKqk";
constexpr const char* kAfterD4 = "rnbqkbnr/pppppppp/8/8/3P4/8/PPP1PPPP/RNBQKBNR b QKqk";
constexpr const char* kAtTheStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk";

class Knowledge : public UciTest {
 protected:
  Knowledge() {
    KnowledgeIsStale();
    FreshenKnowledge();
  }

  void Set(const std::string& name, const std::string& value) {
    EXPECT_EQ(Said([&] { ObeySetOption("name " + name + " value " + value); }), Lines());
  }

  // Reads the files anew; what is complained of.
  Lines Freshen() {
    KnowledgeIsStale();
    return Said([] { FreshenKnowledge(); });
  }

  // A learn file of what these lines make the table hold; the table is empty again.
  std::string LearnFileOf(const std::string& book_lines) {
    std::string path = folder_.Path("made.lrn");
    FreshProcess(folder_.Write("made.bk", book_lines));
    EXPECT_TRUE(SaveLearnTable(path.c_str()));
    FreshProcess();
    return path;
  }

  // A learn file of one search of the start position.
  std::string LearnFileOfSearch() {
    std::string path = folder_.Path("searched.lrn");
    SearchToDepth(3, 1);
    EXPECT_TRUE(SaveLearnTable(path.c_str()));
    FreshProcess();
    return path;
  }

  std::string Pipe() {
    std::string path = folder_.Path("pipe");
    EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
    return path;
  }
};

// Puts an environment variable back.
class KeptVariable {
 public:
  explicit KeptVariable(const char* name) : name_(name) {
    const char* value = std::getenv(name);
    was_there_ = value != nullptr;
    value_ = was_there_ ? value : "";
  }
  ~KeptVariable() {
    if (was_there_) {
      setenv(name_, value_.c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }
  KeptVariable(const KeptVariable&) = delete;
  KeptVariable& operator=(const KeptVariable&) = delete;

 private:
  const char* name_;
  bool was_there_;
  std::string value_;
};

// --- where the files are -------------------------------------------------------------------------

TEST_F(Knowledge, IsLookedForInTheUsersFolders) {
  const KeptVariable data("XDG_DATA_HOME");
  const KeptVariable home("HOME");
  for (const char* path : {"data/tarvyle", "home/.local/share/tarvyle"}) {
    std::filesystem::create_directories(folder_.Path(path));
  }
  const std::string in_data = folder_.Write("data/tarvyle/x.bk", "");
  const std::string in_home = folder_.Write("home/.local/share/tarvyle/x.bk", "");
  const std::string home_folder = folder_.Path("home");
  setenv("HOME", home_folder.c_str(), 1);
  EXPECT_EQ(DefaultFile("x.bk"), in_data);
  EXPECT_EQ(DefaultFile("y.bk"), "");
  unsetenv("XDG_DATA_HOME");
  EXPECT_EQ(DefaultFile("x.bk"), in_home);
  setenv("XDG_DATA_HOME", "", 1);
  EXPECT_EQ(DefaultFile("x.bk"), in_home);
  const std::string relative_data = std::filesystem::relative(folder_.Path("data")).string();
  setenv("XDG_DATA_HOME", relative_data.c_str(), 1);
  EXPECT_EQ(DefaultFile("x.bk"), in_home) << "a relative folder does not count";
  const std::string relative_home = std::filesystem::relative(home_folder).string();
  setenv("HOME", relative_home.c_str(), 1);
  EXPECT_EQ(DefaultFile("x.bk"), "");
  unsetenv("HOME");
  EXPECT_EQ(DefaultFile("x.bk"), "");
}

TEST_F(Knowledge, IsARegularFile) {
  std::filesystem::create_directories(folder_.Path("data/tarvyle/x.bk"));
  EXPECT_EQ(DefaultFile("x.bk"), "");
}

// --- what is read --------------------------------------------------------------------------------

TEST_F(Knowledge, IsReadOnceUntilItIsStale) {
  EXPECT_FALSE(FreshenKnowledge());
  KnowledgeIsStale();
  EXPECT_TRUE(FreshenKnowledge());
  EXPECT_FALSE(FreshenKnowledge());
}

TEST_F(Knowledge, IsNothingWithoutFiles) {
  SearchToDepth(3, 1);
  EXPECT_EQ(TableTexts().size(), 1u);
  EXPECT_EQ(Freshen(), Lines());
  EXPECT_EQ(TableTexts(), Lines()) << "what was learned is forgotten";
}

TEST_F(Knowledge, IsTheLearnFile) {
  Set("Learn File", LearnFileOfSearch());
  EXPECT_EQ(Freshen(), Lines());
  EXPECT_EQ(TableTexts(), Lines{kAtTheStart});
  EXPECT_EQ(Freshen(), Lines());
  EXPECT_EQ(TableTexts(), Lines{kAtTheStart}) << "not twice";
}

TEST_F(Knowledge, IsTheBookWhenItIsToBeUsed) {
  Set("Book File", folder_.Write("my.bk", "h2h4\n"));
  EXPECT_EQ(Freshen(), Lines());
  EXPECT_EQ(TableTexts(), Lines());
  Set("OwnBook", "true");
  EXPECT_EQ(Freshen(), Lines());
  EXPECT_EQ(TableTexts(), Lines{kAfterH4});
}

TEST_F(Knowledge, IsTheBookBesideALearnFileOfSearches) {
  Set("Learn File", LearnFileOfSearch());
  Set("Book File", folder_.Write("my.bk", "h2h4\n"));
  Set("OwnBook", "true");
  EXPECT_EQ(Freshen(), Lines());
  EXPECT_EQ(TableTexts().size(), 2u);
}

TEST_F(Knowledge, IsNoSecondBookBesideALearnFileThatHoldsOne) {
  Set("Learn File", LearnFileOf("d2d4\n"));
  Set("Book File", folder_.Write("my.bk", "h2h4\n"));
  Set("OwnBook", "true");
  EXPECT_EQ(Freshen(), Lines());
  EXPECT_EQ(TableTexts(), Lines{kAfterD4});
  // Then it does not matter what the book file is.
  Set("Book File", "<empty>");
  EXPECT_EQ(Freshen(), Lines());
}

TEST_F(Knowledge, ReportsWrongMovesOfTheBook) {
  Set("Book File", folder_.Write("bad.bk", "h2h4 e2e4\n"));
  Set("OwnBook", "true");
  EXPECT_EQ(Freshen(), Lines{"info string #error: line 1, lexem e2e4"});
  EXPECT_EQ(TableTexts(), Lines{kAfterH4});
}

TEST_F(Knowledge, ReportsABookThatIsNoTextByOneLine) {
  Set("OwnBook", "true");
  std::string bytes;
  for (int i = 0; i < 50000; ++i) bytes += static_cast<char>(i * 7 + i / 251);
  const std::string path = folder_.Write("picture.bk", bytes);
  Set("Book File", path);
  EXPECT_EQ(Freshen(), Lines{"info string the book file " + path + " is no text"});
  EXPECT_EQ(TableTexts(), Lines());
  Set("Book File", folder_.Write("german.bk",
                                 "# Er\xC3\xB6"
                                 "ffnung\r\n\f\te2e4\r\n"));
  EXPECT_EQ(Beginning(Freshen(), "info string the book file"), Lines()) << "letters are text";
}

TEST_F(Knowledge, ReportsTheFirstOfManyWrongLines) {
  Set("OwnBook", "true");
  std::string lines = "h2h4\n";
  for (int i = 0; i < 1000; ++i) lines += "nonsense\n";
  Set("Book File", folder_.Write("novel.bk", lines));
  const Lines said = Freshen();
  ASSERT_EQ(said.size(), 6u);
  EXPECT_EQ(said[0], "info string #error: line 2, lexem nonsense");
  EXPECT_EQ(said[4], "info string #error: line 6, lexem nonsense");
  EXPECT_EQ(said[5], "info string and 995 more wrong lines");
  EXPECT_EQ(TableTexts(), Lines{kAfterH4});
}

TEST_F(Knowledge, ReportsThatThereIsNoBook) {
  Set("OwnBook", "true");
  EXPECT_EQ(Freshen(), Lines{"info string there is no book file"});
}

TEST_F(Knowledge, ReportsFilesThatCannotBeRead) {
  const std::string missing = folder_.Path("missing");
  const std::string damaged = folder_.Write("damaged", "no learn file at all, is it");
  const std::string pipe = Pipe();
  Set("OwnBook", "true");
  const std::string book = folder_.Write("my.bk", "h2h4\n");
  for (const std::string& path : {missing, folder_.Name(), pipe}) {
    Set("Book File", path);
    EXPECT_EQ(Freshen(), Lines{"info string cannot read the book file " + path});
    EXPECT_EQ(TableTexts(), Lines());
  }
  Set("Book File", book);
  for (const std::string& path : {missing, folder_.Name(), pipe, damaged}) {
    Set("Learn File", path);
    EXPECT_EQ(Freshen(), Lines{"info string cannot read the learn file " + path});
    EXPECT_EQ(TableTexts(), Lines{kAfterH4}) << "the book all the same";
  }
}

// --- what is put down ----------------------------------------------------------------------------

// A record of each result: a file that grows, and is a learn file.
TEST_F(Knowledge, PutsDownEachResult) {
  const std::string output = folder_.Path("out.lrn");
  SearchToDepth(3, 1);
  EXPECT_EQ(Said(PutDownResult), Lines());
  EXPECT_FALSE(std::filesystem::exists(output)) << "nobody has asked for it";
  Set("Learn Output", output);
  EXPECT_EQ(Said(PutDownResult), Lines());
  const std::string first = RecordOf(*FindCurrentNode());
  EXPECT_EQ(ReadFile(output), first);
  ObeyPosition("startpos moves d2d4");
  EXPECT_EQ(Said(PutDownResult), Lines());
  EXPECT_EQ(ReadFile(output), first) << "of this position nothing is known";
  SearchToDepth(4, 1);
  EXPECT_EQ(Said(PutDownResult), Lines());
  EXPECT_EQ(ReadFile(output), first + RecordOf(*FindCurrentNode()));
  Set("Learn File", output);
  EXPECT_EQ(Freshen(), Lines());
  Lines texts{kAtTheStart, kAfterD4};
  std::sort(texts.begin(), texts.end());
  EXPECT_EQ(TableTexts(), texts);
}

TEST_F(Knowledge, ReportsAnOutputThatCannotBeWritten) {
  SearchToDepth(3, 1);
  const std::string pipe = Pipe();
  for (const std::string& path : {folder_.Name(), folder_.Path("missing/out.lrn"), pipe,
                                  std::string("/dev/null"), std::string("/dev/full")}) {
    Set("Learn Output", path);
    EXPECT_EQ(Said(PutDownResult), Lines{"info string cannot write to the learn output " + path});
  }
  // Nor a pipe that is read.
  const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  Set("Learn Output", pipe);
  EXPECT_EQ(Said(PutDownResult), Lines{"info string cannot write to the learn output " + pipe});
  char byte = 0;
  EXPECT_EQ(read(reader, &byte, 1), 0);
  close(reader);
}

TEST_F(Knowledge, ReportsARecordThatWasCutShort) {
  SearchToDepth(3, 1);
  const std::string output = folder_.Path("out.lrn");
  Set("Learn Output", output);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  rlimit limit = before;
  limit.rlim_cur = 100;
  setrlimit(RLIMIT_FSIZE, &limit);
  Lines first;
  Lines second;
  {
    // Of 75 bytes each.
    first = Said(PutDownResult);
    second = Said(PutDownResult);
  }
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(first, Lines());
  EXPECT_EQ(second, Lines{"info string cannot write to the learn output " + output});
}

}  // namespace

}  // namespace tarvyle::uci
