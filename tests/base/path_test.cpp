#include "base/path.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstddef>
#include <initializer_list>
#include <set>
#include <string>

#include "tests/support/captured.h"
#include "tests/support/files.h"

namespace tarvyle {
namespace {

using support::Listen;
using support::TemporaryFolder;

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

// What file_size() says of a file, and the answer itself.
std::string SizeOrComplaint(const std::string& path) {
  long size = 0;
  const support::Said said = Listen([&] { size = file_size(path.c_str()); });
  return said.out + said.err + std::to_string(size);
}

std::string NotOpen(const std::string& path) {
  return "------> error: file_size() - file " + path + " not open\n0";
}

TEST(Path, FileSizeCountsBytes) {
  const TemporaryFolder folder;
  for (const std::size_t size : {0u, 1u, 70000u}) {
    const std::string path = folder.Write("bytes", std::string(size, '\r'));
    EXPECT_EQ(SizeOrComplaint(path), std::to_string(size));
  }
}

TEST(Path, FileSizeReportsAMissingFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(SizeOrComplaint(folder.Path("missing")), NotOpen(folder.Path("missing")));
}

TEST(Path, FileSizeTakesAFolderForAMissingFile) { EXPECT_EQ(SizeOrComplaint("/"), NotOpen("/")); }

TEST(Path, FileSizeDoesNotWaitForTheOtherEndOfAPipe) {
  const TemporaryFolder folder;
  const std::string path = folder.Path("pipe");
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
  EXPECT_EQ(SizeOrComplaint(path), NotOpen(path));
}

}  // namespace
}  // namespace tarvyle
