#include "base/path.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <string>

namespace tarvyle {
namespace {

using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

std::string TemporaryName(const std::string& name) {
  return testing::TempDir() + "path_test_" + std::to_string(getpid()) + "_" + name;
}

struct OwnPathRow {
  const char* own_path;
  const char* directory;
};

class ProgramDirectory : public testing::TestWithParam<OwnPathRow> {};

TEST_P(ProgramDirectory, IsCutFromTheProgramsOwnPath) {
  SetProgDir(GetParam().own_path);
  EXPECT_STREQ(prog_dir, GetParam().directory);
}

INSTANTIATE_TEST_SUITE_P(Rows, ProgramDirectory,
                         testing::Values(OwnPathRow{"/usr/games/engine", "/usr/games/"},
                                         OwnPathRow{"./engine", "./"}, OwnPathRow{"/engine", "/"},
                                         OwnPathRow{"folder/", "folder/"},
                                         OwnPathRow{"a\\b/engine", "a\\b/"},
                                         OwnPathRow{"a/b\\engine", "a/"}, OwnPathRow{"", ""},
                                         OwnPathRow{nullptr, ""}));

TEST(Path, ProgramFoundOnTheSearchPathLooksInTheCurrentDirectory) {
  SetProgDir("engine");
  EXPECT_STREQ(prog_dir, "");
  EXPECT_STREQ(ConCat("engine.cfg"), "engine.cfg");
}

TEST(Path, PathWithBackslashesOnlyIsCutBehindTheLast) {
  SetProgDir("C:\\Games\\x.exe");
  EXPECT_STREQ(prog_dir, "C:\\Games\\");
}

TEST(Path, OverlongOwnPathIsCutToTheBuffer) {
  SetProgDir((std::string(kPathSize, 'd') + "/engine").c_str());
  EXPECT_STREQ(prog_dir, "");
  SetProgDir(("folder/" + std::string(2 * kPathSize, 'e')).c_str());
  EXPECT_STREQ(prog_dir, "folder/");
}

TEST(Path, JoinsTwoTexts) {
  EXPECT_STREQ(ConCat("/usr/games/", "book"), "/usr/games/book");
  EXPECT_STREQ(ConCat("", ""), "");
}

TEST(Path, JoinsOneTextToTheProgramDirectory) {
  SetProgDir("/usr/games/engine");
  EXPECT_STREQ(ConCat("engine.cfg"), "/usr/games/engine.cfg");
}

TEST(Path, JoinedTextLastsUntilEightFurtherJoins) {
  const char* first = ConCat("first", "");
  std::set<const char*> others;
  for (int i = 0; i < 7; ++i) others.insert(ConCat("other", ""));
  EXPECT_EQ(others.size(), 7u);
  EXPECT_EQ(others.count(first), 0u);
  EXPECT_STREQ(first, "first");
  EXPECT_EQ(ConCat("ninth", ""), first);
  EXPECT_STREQ(first, "ninth");
}

TEST(Path, OverlongJoinIsCutToTheBuffer) {
  const std::string half(kPathSize - 3, 'h');
  EXPECT_EQ(ConCat(half.c_str(), "tail"), half + "ta");
}

TEST(Path, FileSizeCountsBytes) {
  const std::string path = TemporaryName("bytes");
  for (const std::size_t size : {0u, 1u, 70000u}) {
    std::ofstream(path, std::ios::binary) << std::string(size, '\r');
    CaptureStderr();
    EXPECT_EQ(file_size(path.c_str()), static_cast<long>(size));
    EXPECT_EQ(GetCapturedStderr(), "");
  }
  std::remove(path.c_str());
}

TEST(Path, FileSizeReportsAMissingFile) {
  const std::string path = TemporaryName("missing");
  CaptureStderr();
  EXPECT_EQ(file_size(path.c_str()), 0);
  EXPECT_EQ(GetCapturedStderr(), "------> error: file_size() - file " + path + " not open\n");
}

TEST(Path, FileSizeTakesAFolderForAMissingFile) {
  CaptureStderr();
  EXPECT_EQ(file_size("/"), 0);
  EXPECT_EQ(GetCapturedStderr(), "------> error: file_size() - file / not open\n");
}

TEST(Path, FileSizeDoesNotWaitForTheOtherEndOfAPipe) {
  const std::string path = TemporaryName("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  CaptureStderr();
  EXPECT_EQ(file_size(path.c_str()), 0);
  EXPECT_EQ(GetCapturedStderr(), "------> error: file_size() - file " + path + " not open\n");
  std::remove(path.c_str());
}

}  // namespace
}  // namespace tarvyle
