#include "frontend/savedgame.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <string>
#include <vector>

#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

class SavedGameTest : public FrontEndTest {
 protected:
  void SetUp() override {
    FrontEndTest::SetUp();
    for (const char* move : {"e2e4", "e7e5", "g1f3"}) ASSERT_TRUE(Play(move, 1000001));
    path_ = Path("game.dat");
  }

  // The record's bytes, as the file should hold them.
  static std::string Image() {
    GameRecord image = g;
    image.tag = kSavedTag;
    return {reinterpret_cast<const char*>(&image), sizeof image};
  }

  // A refused file leaves the whole record as it was.
  void ExpectRefused(const std::string& content) {
    WriteFile(path_, content);
    const GameRecord before = g;
    EXPECT_FALSE(LoadGame(path_.c_str()));
    EXPECT_EQ(std::memcmp(&g, &before, sizeof g), 0);
    EXPECT_EQ(ply, 0);
  }

  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.Name())) {
      names.push_back(entry.path().filename());
    }
    return names;
  }

  std::string path_;
};

TEST_F(SavedGameTest, WritesTheTaggedRecord) {
  ASSERT_TRUE(SaveGame(path_.c_str()));
  const std::string content = ReadFile(path_);
  EXPECT_EQ(content.size(), 19192u);
  EXPECT_EQ(content.substr(0, 4), std::string("\x0b\0\0\0", 4));
  EXPECT_EQ(content, Image());
  EXPECT_EQ(g.tag, kSavedTag) << "the tag stays in the live record";
}

TEST_F(SavedGameTest, LoadsWhatWasSaved) {
  ASSERT_TRUE(SaveGame(path_.c_str()));
  const GameRecord saved = g;
  InitNewGame();
  const std::vector<std::uint32_t> counters(std::begin(repetition_set), std::end(repetition_set));
  ASSERT_TRUE(LoadGame(path_.c_str()));
  EXPECT_EQ(std::memcmp(&g, &saved, sizeof g), 0);
  EXPECT_EQ(g.game_score[2], 1000001);
  EXPECT_TRUE(std::equal(counters.begin(), counters.end(), std::begin(repetition_set)))
      << "the record is taken as it stands, nothing else changes";
}

TEST_F(SavedGameTest, LoadsTheMovesKeptForRedo) {
  UndoGameMove();
  UndoGameMove();
  ASSERT_TRUE(SaveGame(path_.c_str()));
  InitNewGame();
  ASSERT_TRUE(LoadGame(path_.c_str()));
  EXPECT_EQ(Obey("getmoves", "end", "getmoves").out, "moves e2e4 \nmoves e2e4 e7e5 g1f3 \n");
}

TEST_F(SavedGameTest, SavesIntoTheCurrentFolder) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.Name());
  EXPECT_TRUE(SaveGame("plain.dat"));
  std::filesystem::current_path(before);
  EXPECT_EQ(ReadFile(Path("plain.dat")), Image());
}

TEST_F(SavedGameTest, ReplacesAnOlderFileAndLeavesNothingElse) {
  WriteFile(path_, std::string(30000, 'x'));
  ASSERT_TRUE(SaveGame(path_.c_str()));
  EXPECT_EQ(ReadFile(path_), Image());
  EXPECT_EQ(Names(), std::vector<std::string>{"game.dat"});
}

// A program of the same process id was killed while it saved. Writing through to the older file in
// its place would give up what the temporary one is for; its hard link would show that.
TEST_F(SavedGameTest, ATemporaryFileLeftBehindChangesNothing) {
  ASSERT_TRUE(SaveGame(path_.c_str()));
  const std::string older = ReadFile(path_);
  std::filesystem::create_hard_link(path_, Path("older.dat"));
  WriteFile(Path("tarvyle_save_tmp" + std::to_string(getpid()) + ".dat"), "half a game");
  ASSERT_TRUE(Play("b8c6"));
  ASSERT_TRUE(SaveGame(path_.c_str()));
  EXPECT_EQ(ReadFile(path_), Image());
  EXPECT_EQ(ReadFile(Path("older.dat")), older);
  EXPECT_EQ(Names().size(), 2u) << "the temporary file is gone";
}

TEST_F(SavedGameTest, ReportsAFileThatCannotBeWritten) {
  EXPECT_FALSE(SaveGame(Path("missing/game.dat").c_str()));
  EXPECT_FALSE(SaveGame(folder_.Name().c_str()));
  EXPECT_TRUE(Names().empty());
}

TEST_F(SavedGameTest, FullDiskLeavesNoHalfFile) {
  WithFileSizeLimit(10000, [&] { EXPECT_FALSE(SaveGame(path_.c_str())); });
  EXPECT_TRUE(Names().empty());
}

TEST_F(SavedGameTest, FullDiskLeavesTheOlderGameWhole) {
  ASSERT_TRUE(SaveGame(path_.c_str()));
  const std::string older = ReadFile(path_);
  ASSERT_TRUE(Play("b8c6"));
  WithFileSizeLimit(10000, [&] { EXPECT_FALSE(SaveGame(path_.c_str())); });
  EXPECT_EQ(ReadFile(path_), older);
  EXPECT_EQ(Names(), std::vector<std::string>{"game.dat"});
  EXPECT_TRUE(LoadGame(path_.c_str()));
}

TEST_F(SavedGameTest, WritesThroughALink) {
  WriteFile(Path("target.dat"), "");
  std::filesystem::create_symlink("target.dat", path_);
  ASSERT_TRUE(SaveGame(path_.c_str()));
  EXPECT_TRUE(std::filesystem::is_symlink(path_));
  EXPECT_EQ(ReadFile(Path("target.dat")), Image());
}

TEST_F(SavedGameTest, FullDiskLeavesTheOlderGameBehindALinkWhole) {
  std::filesystem::create_directory(Path("elsewhere"));
  std::filesystem::create_symlink("elsewhere/game.dat", path_);
  ASSERT_TRUE(SaveGame(path_.c_str()));
  const std::string older = ReadFile(Path("elsewhere/game.dat"));
  ASSERT_EQ(older, Image());
  ASSERT_TRUE(Play("b8c6"));
  WithFileSizeLimit(10000, [&] { EXPECT_FALSE(SaveGame(path_.c_str())); });
  EXPECT_EQ(ReadFile(Path("elsewhere/game.dat")), older);
  ASSERT_TRUE(SaveGame(path_.c_str()));
  EXPECT_EQ(ReadFile(Path("elsewhere/game.dat")), Image());
  EXPECT_TRUE(std::filesystem::is_symlink(path_));
}

TEST_F(SavedGameTest, WritesIntoAPipeAndLeavesItOne) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  const int reader = open(path_.c_str(), O_RDONLY | O_NONBLOCK);  // or else writing would wait
  EXPECT_TRUE(SaveGame(path_.c_str()));
  std::string content(sizeof g + 1, '\0');
  EXPECT_EQ(read(reader, content.data(), content.size()), static_cast<ssize_t>(sizeof g));
  close(reader);
  content.pop_back();
  EXPECT_EQ(content, Image());
  EXPECT_TRUE(std::filesystem::is_fifo(path_));
}

// Named by a link: a program that replaced what it was given would then replace only that.
TEST_F(SavedGameTest, ReportsAFullDevice) {
  std::filesystem::create_symlink("/dev/full", path_);
  EXPECT_FALSE(SaveGame(path_.c_str()));
  EXPECT_TRUE(std::filesystem::is_symlink(path_));
}

TEST_F(SavedGameTest, KeepsTheModeOfAnOlderFileAndCutsAHardLink) {
  WriteFile(path_, "old");
  chmod(path_.c_str(), 0640);
  std::filesystem::create_hard_link(path_, Path("other.dat"));
  ASSERT_TRUE(SaveGame(path_.c_str()));
  EXPECT_EQ(ReadFile(path_), Image());
  EXPECT_EQ(std::filesystem::status(path_).permissions(), std::filesystem::perms{0640});
  EXPECT_EQ(ReadFile(Path("other.dat")), "old");
}

using SavedGameDeathTest = SavedGameTest;

// In a process of its own, since the superuser may write everything.
TEST_F(SavedGameDeathTest, LeavesAWriteProtectedFileAlone) {
  constexpr uid_t kNobody = 65534;
  WriteFile(path_, "kept");
  chmod(path_.c_str(), 0444);
  chmod(folder_.Name().c_str(), 0777);
  const auto save = [&] {
    if (geteuid() == 0 && setuid(kNobody) != 0) _exit(2);
    _exit(SaveGame(path_.c_str()) ? 1 : 0);
  };
  EXPECT_EXIT(save(), testing::ExitedWithCode(0), "");
  EXPECT_EQ(ReadFile(path_), "kept");
  EXPECT_EQ(Names(), std::vector<std::string>{"game.dat"});
}

TEST_F(SavedGameTest, RefusesWhatIsNoWholeBlock) {
  const std::string image = Image();
  ExpectRefused("");
  ExpectRefused(image.substr(0, 4));
  ExpectRefused(image.substr(0, image.size() - 1));
  EXPECT_FALSE(LoadGame(Path("missing.dat").c_str()));
  EXPECT_FALSE(LoadGame(folder_.Name().c_str()));
}

TEST_F(SavedGameTest, RefusesAWrongTag) {
  for (const char tag : {'\0', '\x0a', '\x0c'}) {
    std::string image = Image();
    image[0] = tag;
    ExpectRefused(image);
  }
  std::string image = Image();
  image[3] = '\x01';
  ExpectRefused(image);
}

TEST_F(SavedGameTest, RefusesARecordThatCouldDoHarm) {
  const auto changed = [](const std::function<void(GameRecord&)>& change) {
    GameRecord image = g;
    image.tag = kSavedTag;
    change(image);
    return std::string(reinterpret_cast<const char*>(&image), sizeof image);
  };
  ExpectRefused(changed([](GameRecord& r) { r.board[40] = 9; }));
  ExpectRefused(changed([](GameRecord& r) { r.list_sq[3] = 64; }));
  ExpectRefused(changed([](GameRecord& r) { r.king_sq[0] = -1; }));
  ExpectRefused(changed([](GameRecord& r) { r.game_len = 4; }));
  ExpectRefused(changed([](GameRecord& r) { r.game_len = -1; }));
  ExpectRefused(changed([](GameRecord& r) { r.game_max = 401; }));
  ExpectRefused(changed([](GameRecord& r) { r.side = 2; }));
  ExpectRefused(changed([](GameRecord& r) { r.game_moves[2] = 1; }));
  ExpectRefused(changed([](GameRecord& r) { r.key ^= 1; }));
}

TEST_F(SavedGameTest, AcceptsALongerFile) {
  const std::string image = Image();
  WriteFile(path_, image + "tail");
  InitNewGame();
  EXPECT_TRUE(LoadGame(path_.c_str()));
  EXPECT_EQ(Image(), image);
}

TEST_F(SavedGameTest, TakesRightsScoresAndCountersAsTheyStand) {
  GameRecord image = g;
  image.tag = kSavedTag;
  image.castle = 5;
  image.fifty = 77;
  image.game_score[1] = -123456;
  WriteFile(path_, {reinterpret_cast<const char*>(&image), sizeof image});
  ASSERT_TRUE(LoadGame(path_.c_str()));
  EXPECT_EQ(std::memcmp(&g, &image, sizeof g), 0);
}

}  // namespace
}  // namespace tarvyle
