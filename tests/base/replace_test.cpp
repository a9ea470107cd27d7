#include "base/replace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <initializer_list>
#include <string>

#include "tests/support/files.h"

namespace tarvyle {
namespace {

using support::TemporaryFolder;

class Replacing : public testing::Test {
 protected:
  Replacing() { alarm(300); }  // opening a pipe must not wait for its other end for ever
  ~Replacing() override { alarm(0); }

  std::string Path(const std::string& name) const { return folder_.Path(name); }
  bool IsThere(const std::string& name) const {
    return std::filesystem::exists(std::filesystem::symlink_status(Path(name)));
  }
  void Link(const std::string& target, const std::string& name) const {
    std::filesystem::create_symlink(target, Path(name));
  }

  TemporaryFolder folder_;
};

// The stream of a pipe, which no disk holds: what is written can be flushed, but not synced.
class Pipe {
 public:
  Pipe() {
    EXPECT_EQ(pipe(ends_), 0);
    stream = fdopen(ends_[1], "wb");
    EXPECT_NE(stream, nullptr);
  }
  ~Pipe() { close(ends_[0]); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  std::FILE* stream;

 private:
  int ends_[2];
};

bool IsOpen(int file) { return fcntl(file, F_GETFD) >= 0; }

// --- links and folders ---------------------------------------------------------------------------

TEST_F(Replacing, LinksAreFollowedToTheirEnd) {
  folder_.Write("file", "");
  std::filesystem::create_directory(Path("folder"));
  folder_.Write("folder/inner", "");
  Link("file", "link");
  Link("link", "chain");
  Link("folder", "way");
  const std::string real = std::filesystem::canonical(folder_.Name()).string() + "/";
  EXPECT_EQ(BehindLinks(Path("file")), real + "file");
  EXPECT_EQ(BehindLinks(Path("link")), real + "file");
  EXPECT_EQ(BehindLinks(Path("chain")), real + "file");
  EXPECT_EQ(BehindLinks(Path("way/inner")), real + "folder/inner");
}

TEST_F(Replacing, WhereNothingIsTheFolderIsLookedFor) {
  std::filesystem::create_directory(Path("folder"));
  Link("folder", "way");
  Link("nowhere", "broken");
  Link("b", "a");
  Link("a", "b");
  const std::string real = std::filesystem::canonical(folder_.Name()).string() + "/";
  for (const char* name : {"nothing", "broken", "a", "folder/new"}) {
    EXPECT_EQ(BehindLinks(Path(name)), real + name);
  }
  EXPECT_EQ(BehindLinks(Path("way/new")), real + "folder/new");
  EXPECT_EQ(BehindLinks(Path("way/../new")), real + "new");
  EXPECT_EQ(BehindLinks("nothing here"), std::filesystem::current_path() / "nothing here");
}

TEST_F(Replacing, APathWithoutItsFolderIsTakenAsItIs) {
  folder_.Write("file", "");
  for (const char* name : {"no/file", "no/../file", "no/../new", "file/../new", "file/"}) {
    EXPECT_EQ(BehindLinks(Path(name)), Path(name));
  }
  EXPECT_EQ(BehindLinks("no/../new"), "no/../new");
  EXPECT_EQ(BehindLinks(""), "");
}

TEST_F(Replacing, TheFolderOfAPathEndsInItsSlash) {
  EXPECT_EQ(FolderOf("name"), "");
  EXPECT_EQ(FolderOf(""), "");
  EXPECT_EQ(FolderOf("/name"), "/");
  EXPECT_EQ(FolderOf("a/b/name"), "a/b/");
  EXPECT_EQ(FolderOf("a/b/"), "a/b/");
}

// --- what may be renamed over --------------------------------------------------------------------

struct PlaceRow {
  const char* name;
  bool own;
  bool named;
  bool output;
};

TEST_F(Replacing, EachKindOfFileHasARuleOfItsOwn) {
  folder_.Write("file", "");
  std::filesystem::create_directory(Path("folder"));
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  Link("file", "link to a file");
  Link("nowhere", "link to nowhere");
  Link("folder", "link to a folder");
  Link("/dev/null", "link to a device");
  const PlaceRow rows[] = {
      {"nothing", true, true, true},
      {"file", true, true, true},
      {"folder", true, false, false},
      {"pipe", false, false, false},
      {"link to a file", true, false, true},
      {"link to nowhere", false, false, true},
      {"link to a folder", false, false, false},
      {"link to a device", false, false, false},
  };
  for (const PlaceRow& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(TakesOwnFile(Path(row.name)), row.own);
    EXPECT_EQ(TakesNamedFile(Path(row.name)), row.named);
    EXPECT_EQ(TakesOutput(Path(row.name)), row.output);
    EXPECT_TRUE(row.output || errno == 0) << "it is no plain file";
  }
  EXPECT_FALSE(TakesOwnFile("/dev/null"));
  EXPECT_FALSE(TakesNamedFile("/dev/null"));
  EXPECT_FALSE(TakesOutput("/dev/null"));
}

// In a process of its own, since the superuser may write everything.
TEST_F(Replacing, OnlyTheOwnFileIsReplacedThoughWriteProtected) {
  constexpr uid_t kNobody = 65534;
  const std::string path = folder_.Write("file", "");
  chmod(path.c_str(), 0444);
  chmod(folder_.Name().c_str(), 0777);
  const auto look = [&] {
    if (geteuid() == 0 && setuid(kNobody) != 0) _exit(2);
    if (!TakesOwnFile(path) || TakesNamedFile(path)) _exit(1);
    _exit(!TakesOutput(path) && errno == EACCES ? 0 : 1);
  };
  EXPECT_EXIT(look(), testing::ExitedWithCode(0), "");
}

// --- writing -------------------------------------------------------------------------------------

TEST_F(Replacing, ANewFileIsMadeOnlyWhereNothingIs) {
  std::FILE* file = CreateNewFile(Path("new"));
  ASSERT_NE(file, nullptr);
  EXPECT_NE(fcntl(fileno(file), F_GETFD) & FD_CLOEXEC, 0) << "no program started later has it";
  std::fclose(file);
  folder_.Write("old", "kept");
  Link("nowhere", "link");
  for (const char* name : {"old", "link"}) {
    EXPECT_EQ(CreateNewFile(Path(name)), nullptr) << name;
    EXPECT_EQ(errno, EEXIST) << name;
  }
  EXPECT_EQ(support::ReadFile(Path("old")), "kept");
  EXPECT_FALSE(IsThere("nowhere"));
  EXPECT_EQ(CreateNewFile(Path("no/folder")), nullptr);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(Replacing, AFinishedFileHoldsAllAndIsClosed) {
  std::FILE* file = CreateNewFile(Path("new"));
  ASSERT_NE(file, nullptr);
  const int number = fileno(file);
  EXPECT_TRUE(FinishFile(file, std::fputs("text", file) >= 0));
  EXPECT_FALSE(IsOpen(number));
  EXPECT_EQ(support::ReadFile(Path("new")), "text");
}

TEST_F(Replacing, WhatCannotBeBroughtToTheDiskIsNotFinished) {
  const Pipe pipe;
  const int number = fileno(pipe.stream);
  EXPECT_FALSE(FinishFile(pipe.stream, std::fputs("text", pipe.stream) >= 0));
  EXPECT_EQ(errno, EINVAL);
  EXPECT_FALSE(IsOpen(number));
}

TEST_F(Replacing, WhatCannotBeFlushedIsNotFinished) {
  std::FILE* file = std::fopen("/dev/full", "wb");
  ASSERT_NE(file, nullptr);
  EXPECT_FALSE(FinishFile(file, std::fputs("text", file) >= 0));
  EXPECT_EQ(errno, ENOSPC);
}

TEST_F(Replacing, AFileNotWrittenInFullIsClosedAndNotFinished) {
  std::FILE* file = CreateNewFile(Path("new"));
  ASSERT_NE(file, nullptr);
  const int number = fileno(file);
  errno = EIO;  // why it was not written
  EXPECT_FALSE(FinishFile(file, false));
  EXPECT_EQ(errno, EIO);
  EXPECT_FALSE(IsOpen(number));
}

TEST_F(Replacing, ATemporaryFileIsFinishedOrRemoved) {
  std::FILE* file = CreateNewFile(Path("new"));
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(FinishOrRemove(file, std::fputs("text", file) >= 0, Path("new")));
  EXPECT_EQ(support::ReadFile(Path("new")), "text");
  const Pipe pipe;  // stands for a disk that fails
  EXPECT_FALSE(FinishOrRemove(pipe.stream, true, Path("new")));
  EXPECT_EQ(errno, EINVAL);
  EXPECT_FALSE(IsThere("new"));
}

TEST_F(Replacing, ATemporaryFileNotWrittenInFullIsRemoved) {
  support::WithFileSizeLimit(10, [&] {
    std::FILE* file = CreateNewFile(Path("new"));
    ASSERT_NE(file, nullptr);
    const bool written = std::fputs("more than ten letters", file) >= 0;
    EXPECT_FALSE(FinishOrRemove(file, written, Path("new")));
    EXPECT_EQ(errno, EFBIG);
  });
  EXPECT_FALSE(IsThere("new"));
}

// --- taking the place ----------------------------------------------------------------------------

TEST_F(Replacing, AFileMovesOverTheOldOne) {
  folder_.Write("old", "old");
  EXPECT_TRUE(MoveIntoPlace(folder_.Write("new", "new"), Path("old")));
  EXPECT_EQ(support::ReadFile(Path("old")), "new");
  EXPECT_FALSE(IsThere("new"));
}

TEST_F(Replacing, AFileThatCannotHaveItsPlaceIsRemoved) {
  std::filesystem::create_directory(Path("folder"));
  EXPECT_FALSE(MoveIntoPlace(folder_.Write("new", "new"), Path("folder")));
  EXPECT_EQ(errno, EISDIR);
  EXPECT_FALSE(IsThere("new"));
  folder_.Write("folder/inner", "");
  EXPECT_FALSE(MoveIntoPlace(Path("folder"), folder_.Write("file", "")));
  EXPECT_EQ(errno, ENOTDIR) << "the reason is not that of the removing, which fails as well";
}

TEST_F(Replacing, SyncingAFolderLeavesNothingOpen) {
  const int before = dup(STDERR_FILENO);
  close(before);
  SyncFolderOf(Path("file"));
  SyncFolderOf("file in the current folder");
  SyncFolderOf(Path("no/folder"));
  const int after = dup(STDERR_FILENO);
  close(after);
  EXPECT_EQ(before, after);
}

}  // namespace
}  // namespace tarvyle
