#include "base/append.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/files.h"

namespace tarvyle {
namespace {

using support::TemporaryFolder;

class Appending : public testing::Test {
 protected:
  Appending() { alarm(300); }  // opening a pipe must not wait for its other end for ever
  ~Appending() override { alarm(0); }

  std::string Path(const std::string& name) const { return folder_.Path(name); }
  std::string Content(const std::string& name) const { return support::ReadFile(Path(name)); }

  TemporaryFolder folder_;
};

// Closes the descriptor at the end of a test.
struct Opened {
  explicit Opened(const std::string& path) : number(OpenToAppend(path)) {}
  ~Opened() {
    if (number >= 0) close(number);
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  const int number;
};

TEST_F(Appending, MakesTheFileAndAddsToItsEnd) {
  const Opened first(Path("file"));
  const Opened second(Path("file"));
  EXPECT_TRUE(AppendAtOnce(first.number, "one "));
  EXPECT_TRUE(AppendAtOnce(second.number, "two "));
  EXPECT_TRUE(AppendOnDisk(first.number, 8, "three"));
  EXPECT_EQ(Content("file"), "one two three");
}

TEST_F(Appending, KeepsWhatIsThere) {
  folder_.Write("file", "old ");
  EXPECT_TRUE(AppendToFile(Path("file"), std::string("n\0w", 3)));
  EXPECT_EQ(Content("file"), std::string("old n\0w", 7));
}

TEST_F(Appending, GoesThroughALinkAndLeavesItOne) {
  std::filesystem::create_symlink("file", Path("link"));
  EXPECT_TRUE(AppendToFile(Path("link"), "text"));
  EXPECT_EQ(Content("file"), "text");
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link")));
}

TEST_F(Appending, FailsWithoutWaitingWhereNoFileCanBe) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(OpenToAppend(Path("pipe")), -1);
  EXPECT_EQ(errno, ENXIO) << "nobody reads it";
  EXPECT_EQ(OpenToAppend(folder_.Name()), -1);
  EXPECT_EQ(errno, EISDIR);
  EXPECT_EQ(OpenToAppend(Path("no/folder")), -1);
  EXPECT_EQ(errno, ENOENT);
  EXPECT_FALSE(AppendToFile(Path("no/folder"), "text"));
}

TEST_F(Appending, WritesIntoPlainFilesOnly) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const int reader = open(Path("pipe").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(reader, 0);
  EXPECT_FALSE(AppendToFile(Path("pipe"), "text"));
  char letter = 0;
  EXPECT_EQ(read(reader, &letter, 1), 0) << "nothing came through";
  close(reader);
  errno = EIO;
  EXPECT_FALSE(AppendToFile("/dev/null", "text"));
  EXPECT_EQ(errno, 0);
}

TEST_F(Appending, ClosesTheFile) {
  const int before = dup(STDERR_FILENO);
  close(before);
  EXPECT_TRUE(AppendToFile(Path("file"), "text"));
  EXPECT_FALSE(AppendToFile("/dev/null", "text"));
  const int after = dup(STDERR_FILENO);
  close(after);
  EXPECT_EQ(before, after);
}

TEST_F(Appending, APartThatIsTakenIsAFailure) {
  folder_.Write("file", "12345678");
  support::WithFileSizeLimit(10, [&] {
    const Opened file(Path("file"));
    EXPECT_FALSE(AppendAtOnce(file.number, "abc"));
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(Content("file"), "12345678ab");
    EXPECT_FALSE(AppendAtOnce(file.number, "abc"));
    EXPECT_EQ(errno, EFBIG);
  });
}

TEST_F(Appending, APartThatIsTakenIsTakenBackOnTheDisk) {
  folder_.Write("file", "12345678");
  support::WithFileSizeLimit(10, [&] {
    const Opened file(Path("file"));
    EXPECT_FALSE(AppendOnDisk(file.number, 8, "abc"));
    EXPECT_EQ(errno, ENOSPC);
    EXPECT_EQ(Content("file"), "12345678");
    EXPECT_TRUE(AppendOnDisk(file.number, 8, "ab"));
  });
  EXPECT_EQ(Content("file"), "12345678ab");
}

// A device takes everything, and has no disk that it could be on.
TEST_F(Appending, WhatCannotBeBroughtToTheDiskIsAFailure) {
  const Opened device("/dev/null");
  EXPECT_TRUE(AppendAtOnce(device.number, "text"));
  EXPECT_FALSE(AppendOnDisk(device.number, 0, "text"));
  EXPECT_EQ(errno, EINVAL);
}

TEST_F(Appending, ALockedFileIsForOneOnly) {
  const Opened second(Path("file"));
  {
    const Opened first(Path("file"));
    EXPECT_TRUE(LockFile(first.number));
    EXPECT_FALSE(LockFile(second.number));
    EXPECT_EQ(errno, EWOULDBLOCK);
  }
  EXPECT_TRUE(LockFile(second.number)) << "the first was closed";
}

TEST_F(Appending, AFileIsMissedWhereAnotherTookItsPlace) {
  folder_.Write("other", "");
  std::filesystem::create_symlink("file", Path("link"));
  const Opened file(Path("file"));
  EXPECT_TRUE(IsStillAt(file.number, Path("file")));
  EXPECT_TRUE(IsStillAt(file.number, Path("link")));
  std::filesystem::rename(Path("other"), Path("file"));
  EXPECT_FALSE(IsStillAt(file.number, Path("file")));
  std::filesystem::remove(Path("file"));
  EXPECT_FALSE(IsStillAt(file.number, Path("file")));
}

TEST_F(Appending, AFileIsHeldToAddToItOrToReplaceIt) {
  EXPECT_EQ(HoldFile(Path("file")), -1);
  EXPECT_EQ(errno, 0) << "nothing is there";
  EXPECT_EQ(HoldFile(folder_.Name()), -1);
  EXPECT_EQ(errno, 0) << "no plain file";
  const int file = OpenAloneToAppend(Path("file"));
  ASSERT_GE(file, 0);
  EXPECT_EQ(HoldFile(Path("file")), -1);
  EXPECT_EQ(errno, EWOULDBLOCK);
  EXPECT_EQ(OpenAloneToAppend(Path("file")), -1);
  EXPECT_EQ(errno, EWOULDBLOCK);
  close(file);
  const int held = HoldFile(Path("file"));
  ASSERT_GE(held, 0);
  EXPECT_EQ(OpenAloneToAppend(Path("file")), -1);
  close(held);
  EXPECT_EQ(OpenAloneToAppend(Path("no/file")), -1);
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(Appending, AddsNothingToAFileThatAnotherHolds) {
  folder_.Write("file", "old ");
  const int held = HoldFile(Path("file"));
  EXPECT_FALSE(AppendToFile(Path("file"), "new"));
  EXPECT_EQ(errno, EWOULDBLOCK);
  EXPECT_EQ(Content("file"), "old ");
  close(held);
  EXPECT_TRUE(AppendToFile(Path("file"), "new"));
  EXPECT_EQ(Content("file"), "old new");
}

// Several that add and one that replaces the file again and again: each addition is there at the
// end.
TEST_F(Appending, LosesNothingToWhoReplacesTheFile) {
  constexpr int kAdditions = 5000;
  constexpr int kAdding = 3;
  folder_.Write("file", "");
  std::atomic<int> left = kAdding;
  std::vector<std::thread> adding;
  for (int i = 0; i < kAdding; ++i) {
    adding.emplace_back([&] {
      for (int n = 0; n < kAdditions;) n += AppendToFile(Path("file"), "x") ? 1 : 0;
      --left;
    });
  }
  while (left > 0) {
    const int held = HoldFile(Path("file"));
    if (held < 0) continue;
    std::filesystem::copy_file(Path("file"), Path("copy"));
    std::filesystem::rename(Path("copy"), Path("file"));
    close(held);
  }
  for (std::thread& thread : adding) thread.join();
  EXPECT_EQ(Content("file").size(), static_cast<std::size_t>(kAdding) * kAdditions);
}

}  // namespace
}  // namespace tarvyle
