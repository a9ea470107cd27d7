#include "frontend/exit.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <initializer_list>
#include <set>
#include <string>

#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

class ExitTest : public FrontEndTest {
 protected:
  void SetUp() override {
    FrontEndTest::SetUp();
    learn_file_ = Path("tarvyle.lrn");
    not_open_ = "------> error: file_size() - file " + learn_file_ + " not open\n";
  }

  // Puts a number of positions into the learn table.
  static void Learn(int positions) {
    static const char* const kMoves[] = {"e2e4", "e7e5", "g1f3", "b8c6"};
    InitNewGame();
    for (int i = 0; i < positions; ++i) {
      ASSERT_TRUE(Play(kMoves[i]));
      InsertNodeLearn();
    }
  }

  // Names in the folder, with the number of a temporary learn file as N.
  std::multiset<std::string> Names() const {
    std::multiset<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Name())) {
      const std::string name = entry.path().filename();
      const bool temporary = name.starts_with("tarvyle_tmp_lrn") && name.ends_with(".lrn");
      names.insert(temporary ? "tarvyle_tmp_lrnN.lrn" : name);
    }
    return names;
  }

  std::string learn_file_;
  std::string not_open_;
};

TEST_F(ExitTest, WritesTheLearnTable) {
  Learn(2);
  const Said said = Listen(WriteLearnFile);
  const auto size = std::filesystem::file_size(learn_file_);
  EXPECT_EQ(said.out, "write learn file " + learn_file_ + " " + std::to_string(size) + " bytes \n");
  EXPECT_EQ(said.err, not_open_) << "the old file is missing and counts as empty";
  EXPECT_GT(size, 2u * 25u);
  EXPECT_EQ(Names(), std::multiset<std::string>{"tarvyle.lrn"});
}

TEST_F(ExitTest, ReplacesAnOldFileOfTheSameSize) {
  Learn(1);
  Listen(WriteLearnFile);
  const std::string first = ReadFile(learn_file_);
  LearnReset();
  Learn(1);
  SaveSearchResult(1234, 7);
  const Said said = Listen(WriteLearnFile);
  EXPECT_EQ(said.err, "");
  EXPECT_EQ(ReadFile(learn_file_).size(), first.size());
  EXPECT_NE(ReadFile(learn_file_), first);
}

TEST_F(ExitTest, KeepsALargerOldFileAndTheTemporaryOne) {
  const std::string old(100000, 'x');
  WriteFile(learn_file_, old);
  Learn(2);
  const Said said = Listen(WriteLearnFile);
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, "---->  error write learn file(1), size new file less old file \n");
  EXPECT_EQ(ReadFile(learn_file_), old);
  EXPECT_EQ(Names(), (std::multiset<std::string>{"tarvyle.lrn", "tarvyle_tmp_lrnN.lrn"}));
}

TEST_F(ExitTest, ComparesSizesToTheByte) {
  Learn(2);
  Listen(WriteLearnFile);
  const auto size = std::filesystem::file_size(learn_file_);
  WriteFile(learn_file_, std::string(size + 1, 'x'));
  EXPECT_EQ(Listen(WriteLearnFile).out, "");
  WriteFile(learn_file_, std::string(size, 'x'));
  EXPECT_NE(Listen(WriteLearnFile).out, "");
}

TEST_F(ExitTest, ReportsAFailedRename) {
  std::filesystem::create_directory(learn_file_);
  WriteFile(learn_file_ + "/inside", "");
  Learn(1);
  const Said said = Listen(WriteLearnFile);
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, not_open_ + "----> error write learn file(2), ?rename() \n");
  EXPECT_EQ(Names(), std::multiset<std::string>{"tarvyle.lrn"}) << "the temporary file is deleted";
  EXPECT_TRUE(std::filesystem::is_directory(learn_file_));
}

TEST_F(ExitTest, ReportsAFolderThatTakesNoFile) {
  SetProgDir(Path("missing/tarvyle").c_str());
  Learn(1);
  const Said said = Listen(WriteLearnFile);
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, "error write learn file\n");
}

TEST_F(ExitTest, ReportsAWriteThatFailsAndDeletesTheHalfFile) {
  WriteFile(learn_file_, "");
  Learn(4);
  const Said said = Listen([] { WithFileSizeLimit(100, WriteLearnFile); });
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, "error write learn file\n");
  EXPECT_EQ(Names(), std::multiset<std::string>{"tarvyle.lrn"});
}

TEST_F(ExitTest, WritesNothingBesideAnotherInstanceOrWithoutAList) {
  Learn(1);
  for (const unsigned instances : {1u, 2u}) {
    prev_inst = instances;
    const Said said = Listen(WriteLearnFile);
    EXPECT_EQ(said.out + said.err, "");
    EXPECT_TRUE(Names().empty());
  }
}

TEST_F(ExitTest, WritesNothingWhenDisabled) {
  Learn(1);
  property_add("learn file write", "disable");
  const Said said = Listen(WriteLearnFile);
  EXPECT_EQ(said.out + said.err, "");
  EXPECT_TRUE(Names().empty());
}

TEST_F(ExitTest, OnlyTheWholeWordDisables) {
  Learn(1);
  for (const char* value : {"disable\n", "disabled", "Disable", "enable", " disable"}) {
    property_add("learn file write", value);
    EXPECT_NE(Listen(WriteLearnFile).out, "") << value;
  }
}

TEST_F(ExitTest, LeavesTemporaryFilesOfOthersAlone) {
  for (int number = 0; number < 1000; ++number) {
    if (number != 617) WriteFile(Path("tarvyle_tmp_lrn" + std::to_string(number) + ".lrn"), "x");
  }
  Learn(1);
  EXPECT_NE(Listen(WriteLearnFile).out, "");
  EXPECT_EQ(Names().count("tarvyle_tmp_lrnN.lrn"), 999u);
  EXPECT_EQ(Names().count("tarvyle.lrn"), 1u);
}

TEST_F(ExitTest, WritesNothingWhenEveryTemporaryNameIsTaken) {
  const auto name = [&](int number) {
    return Path("tarvyle_tmp_lrn" + std::to_string(number) + ".lrn");
  };
  for (int number = 0; number < 1000; ++number) WriteFile(name(number), "left behind");
  WriteFile(learn_file_, "");
  Learn(1);
  const Said said = Listen(WriteLearnFile);
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, "error write learn file\n");
  for (int number = 0; number < 1000; ++number) EXPECT_EQ(ReadFile(name(number)), "left behind");
  EXPECT_EQ(ReadFile(learn_file_), "");
}

TEST_F(ExitTest, LeavesALearnFileAloneThatCouldNotBeRead) {
  WriteFile(learn_file_, "");
  Learn(1);
  learn_file_stays = 1;
  const Said said = Listen(WriteLearnFile);
  EXPECT_EQ(said.out + said.err, "");
  EXPECT_EQ(Names(), std::multiset<std::string>{"tarvyle.lrn"});
}

TEST_F(ExitTest, WritesNothingOverALinkToNowhereOrAPipe) {
  Learn(1);
  std::filesystem::create_symlink("nowhere", learn_file_);
  EXPECT_EQ(Listen(WriteLearnFile).err, "error write learn file\n");
  EXPECT_TRUE(std::filesystem::is_symlink(learn_file_));
  std::filesystem::remove(learn_file_);
  ASSERT_EQ(mkfifo(learn_file_.c_str(), 0600), 0);
  EXPECT_EQ(Listen(WriteLearnFile).err, "error write learn file\n");
  EXPECT_TRUE(std::filesystem::is_fifo(learn_file_));
  EXPECT_EQ(Names(), std::multiset<std::string>{"tarvyle.lrn"});
}

}  // namespace
}  // namespace tarvyle
