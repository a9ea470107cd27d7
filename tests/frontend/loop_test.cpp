#include "frontend/loop.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

class LoopTest : public FrontEndTest {};

TEST_F(LoopTest, EmptyLinesAreIgnored) {
  const Said said = Obey("", "   ", " ");
  EXPECT_EQ(said.out + said.err, "");
}

TEST_F(LoopTest, OnlyQuitEndsTheLoop) {
  EXPECT_FALSE(ObeyLine("quit\n"));
  EXPECT_FALSE(ObeyLine("quit"));
  EXPECT_FALSE(ObeyLine("  quit now\n"));
  Listen([] {
    EXPECT_TRUE(ObeyLine("quit\r\n"));
    EXPECT_TRUE(ObeyLine("quitx\n"));
    EXPECT_TRUE(ObeyLine("\tquit\n"));
    EXPECT_TRUE(ObeyLine("\n"));
  });
}

TEST_F(LoopTest, QuitComesBeforeHelp) { EXPECT_FALSE(ObeyLine("quit help\n")); }

TEST_F(LoopTest, GlintviewAnnouncesTheFirstPosition) {
  const Said said = Obey("glintview");
  EXPECT_EQ(said.out, Position(kStartText));
  EXPECT_EQ(said.err, "");
  EXPECT_EQ(is_glintview, 1);
}

TEST_F(LoopTest, GlintviewIsRecognisedByTheStartOfTheLine) {
  EXPECT_EQ(Obey(" glintview").err, "# unknow: glintview\n");
  EXPECT_EQ(is_glintview, 0);
  Obey("glintview2 help");
  EXPECT_EQ(is_glintview, 1);
}

TEST_F(LoopTest, GlintviewSaysNothingWithoutAChange) {
  Obey("glintview");
  EXPECT_EQ(Obey("force").out, "");
  EXPECT_EQ(Obey("style").out, "# knowledge3 \n");
  EXPECT_EQ(Obey("undo", "glintview", "e2e5").out, "");
}

TEST_F(LoopTest, GlintviewAnnouncesEveryChange) {
  Obey("glintview", "force");
  EXPECT_EQ(Obey("e2e4").out, Position(kAfterE4));
  EXPECT_EQ(Obey("undo").out, Position(kStartText));
  EXPECT_EQ(Obey("redo").out, Position(kAfterE4));
  EXPECT_EQ(Obey("new").out, Position(kStartText));
  EXPECT_EQ(Obey("deb 11").out, Position("3k4/8/2K1Q3/8/8/8/8/8 w"));
  EXPECT_EQ(Obey("setboard 4k3/8/8/8/8/8/8/4K3 w - -").out, Position("4k3/8/8/8/8/8/8/4K3 w"));
}

TEST_F(LoopTest, GlintviewAnnouncesBeforeTheCommandWhatIsNotYetTold) {
  Obey("glintview");
  ASSERT_TRUE(Play("e2e4"));
  EXPECT_EQ(Obey("style").out, Position(kAfterE4) + "# knowledge3 \n");
  ASSERT_TRUE(Play("e7e5"));
  const Said said = Listen([] { EXPECT_FALSE(ObeyLine("quit\n")); });
  EXPECT_EQ(said.out, Position("rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w QKqk"));
}

TEST_F(LoopTest, GetboardAnnouncesOnceInGlintviewToo) {
  Obey("glintview");
  EXPECT_EQ(Obey("getboard").out, Position(kStartText));
}

TEST_F(LoopTest, GlintviewAnnouncesTheUsersMoveBeforeTheAnswer) {
  Obey("glintview", "setboard 6k1/5ppp/8/8/8/8/5PPP/R5K1 b - -");
  EXPECT_EQ(Obey("g8h8").out, Position("7k/5ppp/8/8/8/8/5PPP/R5K1 w") +
                                  Position("R6k/5ppp/8/8/8/8/5PPP/6K1 b") + "move a1a8\nthe end\n");
}

TEST_F(LoopTest, ALineEndsAtItsFirstZero) {
  const Said said = Listen([] {
    ObeyLine(std::string("force\0garbage\n", 14).c_str());
    ObeyLine(std::string("\0quit\n", 6).c_str());
  });
  EXPECT_EQ(said.out + said.err, "");
  EXPECT_EQ(stop, 1);
}

// The whole program in this process, reading a file as its input.
class PlayTest : public FrontEndTest {
 protected:
  Said Run(const std::string& input) {
    WriteFile(Path("tarvyle.cfg"), "hash size=\"32\"\n");
    WriteFile(Path("tarvyle.bk"), "e2e4 e7e5\n");
    WriteFile(Path("input"), input);
    WriteFile(Path("ps"), "#!/bin/sh\necho '1 ? 00:00:00 tarvyle'\n");
    std::filesystem::permissions(Path("ps"), std::filesystem::perms::owner_all);
    const std::string search_path = std::getenv("PATH");
    setenv("PATH", folder_.Name().c_str(), 1);
    EXPECT_NE(std::freopen(Path("input").c_str(), "r", stdin), nullptr);
    Said said = Listen(PlayWinBoard);
    setenv("PATH", search_path.c_str(), 1);
    return said;
  }

  std::string Start() const {
    return "# Chess, build Jul 22 2013 \n"
           "# hash table init: \n"
           "# get mem 6815744 byte(s) \n"
           "#warning: limit time error in cfg file \n"
           "# load play style: \n"
           "# error \n"
           "# <help> - help \n"
           "# move: ? \n";
  }

  std::string Written() const {
    return "write learn file " + Path("tarvyle.lrn") + " " +
           std::to_string(std::filesystem::file_size(Path("tarvyle.lrn"))) + " bytes \n";
  }
};

TEST_F(PlayTest, StartsObeysAndWritesTheLearnFile) {
  const Said said = Run("getboard\nquit\ngetboard\n");
  EXPECT_EQ(said.out, Start() + Position(kStartText) + Written());
  EXPECT_EQ(said.err,
            "#  learn file notfound, load book-file \n------> error: file_size() - file " +
                Path("tarvyle.lrn") + " not open\n");
}

TEST_F(PlayTest, TheEndOfInputIsLikeQuit) {
  const Said said = Run("getboard\n");
  EXPECT_EQ(said.out, Start() + Position(kStartText) + Written());
}

TEST_F(PlayTest, HalfALineAtTheEndIsObeyed) {
  const Said said = Run("getboard");
  EXPECT_EQ(said.out, Start() + Position(kStartText) + Written());
}

TEST_F(PlayTest, ALongLineIsReadInPieces) {
  const std::string piece(1023, 'x');
  const Said said = Run(piece + piece + "getboard\n" + piece + "\ngetboard\n");
  EXPECT_EQ(said.out, Start() + Position(kStartText) + Position(kStartText) + Written());
  EXPECT_NE(
      said.err.find("# unknow: " + piece + "\n# unknow: " + piece + "\n# unknow: " + piece + "\n"),
      std::string::npos);
}

}  // namespace
}  // namespace tarvyle
