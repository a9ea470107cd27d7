#include "frontend/startup.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <string>

#include "frontend/exit.h"
#include "search/hash.h"
#include "search/style.h"
#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

constexpr const char* kBookInstead = "#  learn file notfound, load book-file \n";

class StartUpTest : public FrontEndTest {
 protected:
  void SetUp() override {
    FrontEndTest::SetUp();
    search_path_ = std::getenv("PATH");
    setenv("PATH", folder_.Name().c_str(), 1);
    ListProcesses("echo ' 1 ? 00:00:00 tarvyle'");
    WriteFile(Path("tarvyle.bk"), "e2e4 e7e5\n");
  }

  void TearDown() override {
    setenv("PATH", search_path_.c_str(), 1);
    FrontEndTest::TearDown();
  }

  // Makes the process lister a shell script of this text.
  void ListProcesses(const std::string& script) {
    WriteFile(Path("ps"), "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(Path("ps"), std::filesystem::perms::owner_all);
  }

  // Starts up with these lines in the configuration besides the hash size.
  Said Start(const std::string& settings =
                 "time search default seconds=\"9\"\n"
                 "play style=\"knowledge2\"\n") {
    WriteFile(Path("tarvyle.cfg"), "hash size=\"32\"\n" + settings);
    property_clear();
    return Listen(StartUp);
  }

  // The allowance that a configured number of seconds gives.
  int Allowance(const std::string& seconds) {
    Start("time search default seconds=\"" + seconds + "\"\n");
    return limit_time;
  }

  std::string search_path_;
};

TEST_F(StartUpTest, OneLineOfTheListIsThisProgram) { EXPECT_EQ(prog_is_run(), 0u); }

TEST_F(StartUpTest, TwoLinesAreAnotherInstance) {
  ListProcesses("echo ' 1 ? 00:00:00 tarvyle'; echo ' 2 ? 00:00:00 tarvyle'");
  EXPECT_EQ(prog_is_run(), 2u);
}

TEST_F(StartUpTest, ManyLinesAreAnotherInstance) {
  ListProcesses("for i in 1 2 3 4 5; do echo \"$i tarvyle\"; done");
  EXPECT_EQ(prog_is_run(), 2u);
}

TEST_F(StartUpTest, TheNameCountsAnywhereInALine) {
  ListProcesses("echo tarvyle; echo '7 pts/0 my-tarvyle.sh'");
  EXPECT_EQ(prog_is_run(), 2u);
  ListProcesses("echo 'tarvyle tarvyle tarvyle'; echo 'Tarvyle tarvyl e'");
  EXPECT_EQ(prog_is_run(), 0u) << "lines are counted, not names, and letters as they are";
}

TEST_F(StartUpTest, AnEmptyListIsNoOtherInstance) {
  ListProcesses("exit 0");
  EXPECT_EQ(prog_is_run(), 0u);
  ListProcesses("exit 1");
  EXPECT_EQ(prog_is_run(), 0u);
}

TEST_F(StartUpTest, ALongLineOfTheListIsReadInPieces) {
  // The name lies across the end of the first 1023 characters.
  ListProcesses("printf '%01020dtarvyle\\n' 0; echo tarvyle");
  EXPECT_EQ(prog_is_run(), 0u);
  ListProcesses("printf '%01023dtarvyle\\n' 0; echo tarvyle");
  EXPECT_EQ(prog_is_run(), 2u);
}

TEST_F(StartUpTest, TheListerIsAskedForAllProcesses) {
  ListProcesses("[ \"$*\" = -e ] && { echo tarvyle; echo tarvyle; }");
  EXPECT_EQ(prog_is_run(), 2u);
}

TEST_F(StartUpTest, AMissingListerIsUnknown) {
  std::filesystem::remove(Path("ps"));
  Listen([] { EXPECT_EQ(prog_is_run(), 1u); });  // the shell complains
}

TEST_F(StartUpTest, AListerThatCannotBeRunIsUnknown) {
  std::filesystem::permissions(Path("ps"), std::filesystem::perms::owner_read);
  Listen([] { EXPECT_EQ(prog_is_run(), 1u); });
}

TEST_F(StartUpTest, APipeThatCannotBeOpenedIsReported) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit limit = before;
  const Said said = Listen([&] {
    limit.rlim_cur =
        static_cast<rlim_t>(dup(STDOUT_FILENO)) + 1;  // one more file is open now, and no other
    setrlimit(RLIMIT_NOFILE, &limit);
    EXPECT_EQ(prog_is_run(), 1u);
    setrlimit(RLIMIT_NOFILE, &before);
    close(static_cast<int>(limit.rlim_cur) - 1);
  });
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, "# pre_inst_detect: Problems with pipe: Too many open files\n");
}

TEST_F(StartUpTest, InitAllVarBuildsTablesByTheConfiguredSize) {
  property_add("hash size", "34");
  EXPECT_EQ(Listen(InitAllVar).out, "# hash table init: \n# get mem 13631488 byte(s) \n");
  EXPECT_EQ(Hash_Size, 1 << 17);
}

TEST_F(StartUpTest, ResetGoesBackBehindTheStart) {
  Start("random search?!=\"enable\"\nplay style=\"knowledge1\"\n");
  Obey("xboard", "force", "e2e4", "getboard", "save " + Path("a.dat"), "time 1");
  is_glintview = 1;
  prev_inst = 2;
  ResetProcess();
  EXPECT_EQ(dict, nullptr);
  EXPECT_EQ(limit_time, 750);
  EXPECT_EQ(is_rnd_search, 0);
  EXPECT_STREQ(print_play_str(), "knowledge3");
  EXPECT_EQ(prev_inst, 0u);
  EXPECT_EQ(is_xboard, 0);
  EXPECT_EQ(is_glintview, 0);
  EXPECT_EQ(stop, 0);
  EXPECT_EQ(cnt_warning, 0u);
  EXPECT_EQ(game_fname, Path("tarvyle_save_game.dat"));
  EXPECT_STREQ(old_print_fen, "");
  EXPECT_EQ(g.game_len, 0);
  ASSERT_TRUE(Play("e2e4"));
  EXPECT_EQ(FindCurrentNode(), nullptr) << "the book is forgotten";
}

TEST_F(StartUpTest, ResetForgetsNothingOfTheConsole) {
  std::memset(static_cast<void*>(&console), 0x5A, sizeof console);
  ResetProcess();
  EXPECT_EQ(game_fname, Path("tarvyle_save_game.dat"));
  std::memset(game_fname, 0, sizeof game_fname);
  EXPECT_EQ(console, Console{});
}

TEST_F(StartUpTest, SaysWhatItDoesInThisOrder) {
  const Said said = Start();
  EXPECT_EQ(said.out,
            "# Chess, build Jul 22 2013 \n"
            "# hash table init: \n"
            "# get mem 6815744 byte(s) \n"
            "# load play style: \n"
            "# knowledge2 \n"
            "# ok \n"
            "# <help> - help \n"
            "# move: ? \n");
  EXPECT_EQ(said.err, kBookInstead);
  EXPECT_EQ(prev_inst, 0u);
  EXPECT_EQ(game_fname, Path("tarvyle_save_game.dat"));
  EXPECT_EQ(Obey("getboard").out, Position(kStartText));
}

TEST_F(StartUpTest, WarnsOfAnotherInstance) {
  ListProcesses("echo tarvyle; echo tarvyle");
  EXPECT_EQ(Start().out.find("# Chess, build Jul 22 2013 \n"
                             "# warning: tarvyle(2): learn file write disable \n"
                             "# hash table init: \n"),
            0u);
  EXPECT_EQ(prev_inst, 2u);
}

TEST_F(StartUpTest, WarnsWithoutAList) {
  std::filesystem::remove(Path("ps"));
  EXPECT_EQ(Start().out.find("# Chess, build Jul 22 2013 \n"
                             "# warning: learn file write disable \n"
                             "# hash table init: \n"),
            0u);
  EXPECT_EQ(prev_inst, 1u);
}

TEST_F(StartUpTest, ClampsTheConfiguredTime) {
  EXPECT_EQ(Allowance("3"), 700);
  EXPECT_EQ(Allowance("200"), 10000);
  EXPECT_EQ(Allowance("12"), 1200);
  EXPECT_EQ(Allowance("7"), 700);
  EXPECT_EQ(Allowance("8"), 800);
  EXPECT_EQ(Allowance("100"), 10000);
  EXPECT_EQ(Allowance("-5"), 700);
  EXPECT_EQ(Allowance("15 minutes"), 1500);
}

TEST_F(StartUpTest, AConfiguredTimeTooLargeWraps) {
  EXPECT_EQ(Allowance("42950000"), 10000) << "wraps to 32704";
  EXPECT_EQ(Allowance("42949673"), 700) << "wraps to 4";
  EXPECT_EQ(Allowance("42949693"), 2004) << "wraps to 2004";
  EXPECT_EQ(Allowance("21474837"), 700) << "wraps below zero";
}

TEST_F(StartUpTest, WarnsOfAMissingOrZeroTime) {
  const std::string warning = "#warning: limit time error in cfg file \n# load play style: \n";
  for (const char* settings :
       {"", "time search default seconds=\"0\"\n", "time search default seconds=\"abc\"\n"}) {
    EXPECT_NE(Start(settings).out.find(warning), std::string::npos) << settings;
    EXPECT_EQ(limit_time, 700);
  }
  EXPECT_EQ(Start("time search default seconds=\"3\"\n").out.find("#warning"), std::string::npos);
}

TEST_F(StartUpTest, RandomSearchNeedsTheWholeWord) {
  Start("random search?!=\"enable\"\n");
  EXPECT_EQ(is_rnd_search, 1);
  for (const char* settings : {"random search?!=enable\n", "random search?!=\"enabled\"\n",
                               "random search?!=\"Enable\"\n", ""}) {
    is_rnd_search = 1;
    Start(settings);
    EXPECT_EQ(is_rnd_search, 0) << settings;
  }
}

TEST_F(StartUpTest, AnUnknownStyleLeavesTheDefault) {
  PLAY_STYLE = kKnowledge3;
  const std::string out = Start("play style=\"knowledge4\"\n").out;
  EXPECT_NE(out.find("# load play style: \n# error \n# <help> - help \n"), std::string::npos);
  EXPECT_STREQ(print_play_str(), "knowledge3");
  EXPECT_NE(Start("play style=knowledge1\n").out.find("# error \n"), std::string::npos)
      << "without quotes the value keeps its line end";
}

TEST_F(StartUpTest, ReadsTheLearnFileInPlaceOfTheBook) {
  Start();
  ASSERT_TRUE(Play("d2d4"));
  SaveSearchResult(1234, 7);
  Listen(WriteLearnFile);
  LearnReset();
  WriteFile(Path("tarvyle.bk"), "c2c4\n");
  EXPECT_EQ(Start().err, "");

  ASSERT_TRUE(Play("d2d4"));
  const LearnNode* learned = FindCurrentNode();
  ASSERT_NE(learned, nullptr);
  EXPECT_EQ(learned->score, 1234);
  EXPECT_EQ(learned->depth, 7);
  EXPECT_EQ(learned->book, 0);
  InitNewGame();
  ASSERT_TRUE(Play("e2e4"));
  const LearnNode* of_first_book = FindCurrentNode();
  ASSERT_NE(of_first_book, nullptr);
  EXPECT_EQ(of_first_book->book, 1);
  InitNewGame();
  ASSERT_TRUE(Play("c2c4"));
  EXPECT_EQ(FindCurrentNode(), nullptr) << "the book in the folder is not read";
}

TEST_F(StartUpTest, AnEmptyLearnFileIsALearnFile) {
  WriteFile(Path("tarvyle.lrn"), "");
  EXPECT_EQ(Start().err, "");
  ASSERT_TRUE(Play("e2e4"));
  EXPECT_EQ(FindCurrentNode(), nullptr) << "the book is not read";
  std::filesystem::remove(Path("tarvyle.bk"));
  EXPECT_EQ(Start().err, "") << "nor missed";
}

TEST_F(StartUpTest, DeletesADamagedLearnFileAndReadsTheBook) {
  WriteFile(Path("tarvyle.lrn"), "damaged");
  LearnReset();
  EXPECT_EQ(Start().err, kBookInstead);
  EXPECT_FALSE(std::filesystem::exists(Path("tarvyle.lrn")));
  ASSERT_TRUE(Play("e2e4"));
  EXPECT_NE(FindCurrentNode(), nullptr) << "the book was read";
}

TEST_F(StartUpTest, LeavesALearnFileAloneThatCannotBeRead) {
  std::filesystem::create_symlink("tarvyle.lrn", Path("tarvyle.lrn"));  // leads to itself
  EXPECT_EQ(Start().err,
            "# warning: learn file " + Path("tarvyle.lrn") +
                " cannot be read (Too many levels of symbolic links), it stays as it is \n" +
                kBookInstead);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("tarvyle.lrn")));
  EXPECT_EQ(learn_file_stays, 1) << "nothing is written at the exit";
  ASSERT_TRUE(Play("e2e4"));
  EXPECT_NE(FindCurrentNode(), nullptr) << "the book was read";
}

TEST_F(StartUpTest, LeavesAFolderInTheLearnFilesPlaceAlone) {
  std::filesystem::create_directory(Path("tarvyle.lrn"));
  EXPECT_EQ(Start().err, kBookInstead);
  EXPECT_TRUE(std::filesystem::is_directory(Path("tarvyle.lrn")));
}

TEST_F(StartUpTest, LeavesALinkToNowhereAlone) {
  std::filesystem::create_symlink("nowhere", Path("tarvyle.lrn"));
  EXPECT_EQ(Start().err, kBookInstead);
  EXPECT_TRUE(std::filesystem::is_symlink(Path("tarvyle.lrn")));
}

using StartUpDeathTest = StartUpTest;

TEST_F(StartUpDeathTest, EndsWithoutAConfiguration) {
  EXPECT_EXIT(StartUp(), testing::ExitedWithCode(1), "^conf.file not found\n$");
}

TEST_F(StartUpDeathTest, EndsWithoutLearnFileAndBook) {
  WriteFile(Path("tarvyle.cfg"), "hash size=\"32\"\n");
  std::filesystem::remove(Path("tarvyle.bk"));
  EXPECT_EXIT(StartUp(), testing::ExitedWithCode(1),
              "^#  learn file notfound, load book-file \nbook file notfound  \n$");
}

TEST_F(StartUpDeathTest, EndsWithAFolderInTheBooksPlace) {
  WriteFile(Path("tarvyle.cfg"), "hash size=\"32\"\n");
  std::filesystem::remove(Path("tarvyle.bk"));
  std::filesystem::create_directory(Path("tarvyle.bk"));
  EXPECT_EXIT(StartUp(), testing::ExitedWithCode(1), "book file notfound  \n$");
}

TEST_F(StartUpDeathTest, EndsWithTooSmallTables) {
  WriteFile(Path("tarvyle.cfg"), "# only a comment\n");
  EXPECT_EXIT(StartUp(), testing::ExitedWithCode(1), "^# error: \"hash size\"=   \n$");
}

}  // namespace
}  // namespace tarvyle
