#include "base/file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <string>

#include "tests/support/build_kind.h"
#include "tests/support/files.h"

namespace tarvyle {
namespace {

using support::TemporaryFolder;

class WholeFile : public testing::Test {
 protected:
  WholeFile() { alarm(300); }  // a reading that waits for something must not wait for ever
  ~WholeFile() override { alarm(0); }

  FileState Read(const std::string& path) {
    content_ = "from before";
    return ReadFile(path.c_str(), content_);
  }

  TemporaryFolder folder_;
  std::string content_;
};

TEST_F(WholeFile, IsReadByteByByte) {
  const std::string bytes("a\0b\r\n\xFF", 6);
  EXPECT_EQ(Read(folder_.Write("file", bytes)), FileState::kRead);
  EXPECT_EQ(content_, bytes);
  EXPECT_EQ(Read(folder_.Write("empty", "")), FileState::kRead);
  EXPECT_EQ(content_, "");
}

TEST_F(WholeFile, IsReadBehindALink) {
  folder_.Write("file", "text");
  std::filesystem::create_symlink("file", folder_.Path("link"));
  EXPECT_EQ(Read(folder_.Path("link")), FileState::kRead);
  EXPECT_EQ(content_, "text");
}

TEST_F(WholeFile, IsMissingWhereThereIsNoRegularFile) {
  EXPECT_EQ(Read(folder_.Path("nothing")), FileState::kMissing);
  EXPECT_EQ(content_, "");
  EXPECT_EQ(Read(folder_.Name()), FileState::kMissing);
  EXPECT_EQ(Read(folder_.Write("file", "") + "/below"), FileState::kMissing);
  std::filesystem::create_symlink("nowhere", folder_.Path("link"));
  EXPECT_EQ(Read(folder_.Path("link")), FileState::kMissing);
  ASSERT_EQ(mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(Read(folder_.Path("pipe")), FileState::kMissing);
  EXPECT_EQ(Read("/dev/null"), FileState::kMissing);
}

TEST_F(WholeFile, ThatCannotBeOpenedIsNotMissing) {
  const std::string path = folder_.Write("file", "text");
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  const rlimit none{0, before.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  std::string content = "from before";
  const FileState state = ReadFile(path.c_str(), content);
  const int reason = errno;
  setrlimit(RLIMIT_NOFILE, &before);
  EXPECT_EQ(state, FileState::kUnreadable);
  EXPECT_EQ(reason, EMFILE);
  EXPECT_EQ(content, "");
}

TEST_F(WholeFile, BehindACircleOfLinksIsNotMissing) {
  std::filesystem::create_symlink("b", folder_.Path("a"));
  std::filesystem::create_symlink("a", folder_.Path("b"));
  EXPECT_EQ(Read(folder_.Path("a")), FileState::kUnreadable);
  EXPECT_EQ(errno, ELOOP);
}

TEST_F(WholeFile, BeyondTheMemoryIsNotMissing) {
  if (support::kAddressSanitizer) GTEST_SKIP() << "it ends a process that asks for too much";
  const std::string path = folder_.Write("file", "text");
  if (truncate(path.c_str(), off_t{1} << 43) != 0) GTEST_SKIP() << "no such file can be made here";
  EXPECT_EQ(Read(path), FileState::kUnreadable);
  EXPECT_EQ(errno, ENOMEM);
  EXPECT_EQ(content_, "");
}

}  // namespace
}  // namespace tarvyle
