// The number in the name of the temporary learn file: drawn, and mixed with the process id, for two
// programs that draw alike and end together write into one folder.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "frontend/exit.h"
#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

class TemporaryNameTest : public FrontEndTest {
 protected:
  void SetUp() override {
    FrontEndTest::SetUp();
    // A larger old file stays, and so does the new one under its temporary name.
    WriteFile(Path("tarvyle.lrn"), std::string(1000, 'x'));
  }

  // Writes the learn table with this seed; removes the file that is left and returns its number.
  int NumberDrawn(unsigned seed) const {
    std::srand(seed);
    Listen(WriteLearnFile);
    const std::vector<int> left = TakeNumbers();
    return left.size() == 1 ? left[0] : -1;
  }

  // The numbers of the temporary files, which are removed.
  std::vector<int> TakeNumbers() const {
    std::vector<int> numbers;
    for (const std::filesystem::path& path : Temporaries()) {
      const std::string name = path.filename();
      const int number = std::atoi(name.c_str() + kPrefix.size());
      EXPECT_EQ(name, kPrefix + std::to_string(number) + ".lrn");
      EXPECT_LT(number, 1000);
      numbers.push_back(number);
      std::filesystem::remove(path);
    }
    return numbers;
  }

  std::set<std::filesystem::path> Temporaries() const {
    std::set<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Name())) {
      if (entry.path().filename().string().starts_with(kPrefix)) found.insert(entry.path());
    }
    return found;
  }

  const std::string kPrefix = "tarvyle_tmp_lrn";
};

TEST_F(TemporaryNameTest, EachDrawGivesItsNumber) {
  std::set<int> draws;
  std::set<int> numbers;
  for (unsigned seed = 1; seed <= 30; ++seed) {
    std::srand(seed);
    draws.insert(std::rand() % 1000);
    numbers.insert(NumberDrawn(seed));
  }
  EXPECT_GT(draws.size(), 20u);
  EXPECT_EQ(numbers.size(), draws.size());
  EXPECT_EQ(numbers.count(-1), 0u) << "one file is left each time";
  EXPECT_EQ(NumberDrawn(1), NumberDrawn(1)) << "nothing but the draw has changed";
}

TEST_F(TemporaryNameTest, EachProcessGivesItsNumberToOneDraw) {
  std::set<int> endings = {getpid() % 1000};
  std::set<int> numbers = {NumberDrawn(1)};
  for (int i = 0; i < 4; ++i) {
    const pid_t child = fork();
    if (child == 0) {
      std::srand(1);
      Listen(WriteLearnFile);
      _exit(0);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
    endings.insert(child % 1000);
    for (const int number : TakeNumbers()) numbers.insert(number);
  }
  EXPECT_EQ(numbers.size(), endings.size());
}

}  // namespace
}  // namespace tarvyle
