#include "frontend/commands.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <vector>

#include "eval/scoretable.h"
#include "search/style.h"
#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

class CommandsTest : public FrontEndTest {};

TEST(ReadCommandTest, CutsAtBlanksAndNewlinesOnly) {
  Command command = ReadCommand("  save  my\tgame.dat \n");
  EXPECT_EQ(command.token, "save");
  EXPECT_EQ(command.NextArgument(), "my\tgame.dat");
  EXPECT_EQ(command.NextArgument(), "");
  EXPECT_EQ(command.NextArgument(), "");
}

TEST(ReadCommandTest, FindsNoTokenInABlankLine) {
  for (const char* line : {"", "\n", "   \n", " "}) EXPECT_EQ(ReadCommand(line).token, "");
}

TEST(ReadCommandTest, KeepsTabsAndCarriageReturnsInTheToken) {
  EXPECT_EQ(ReadCommand("quit\r\n").token, "quit\r");
  EXPECT_EQ(ReadCommand("\tgo now\n").token, "\tgo");
}

TEST_F(CommandsTest, GetmovesListsTheGame) {
  EXPECT_EQ(Obey("force", "e2e4", "e7e5", "getmoves").out, "moves e2e4 e7e5 \n");
}

TEST_F(CommandsTest, GetmovesIsRecognisedByTheStartOfTheLine) {
  Obey("force", "e2e4");
  EXPECT_EQ(Obey("getmovesx").out, "moves e2e4 \n");
  EXPECT_EQ(Obey(" getmoves").out, "e2e4 \n") << "blanks before it: the bare list";
  EXPECT_EQ(Obey(" getmovesx").err, "# unknow: getmovesx\n");
  EXPECT_EQ(Obey(" getmoves file event").out, "e2e4 \n");
}

TEST_F(CommandsTest, GetmovesWritesAFileWithAnEvent) {
  Obey("force", "e2e4");
  EXPECT_EQ(Obey("getmoves " + Path("a.txt")).out, "");
  EXPECT_EQ(ReadFile(Path("a.txt")), "[Event  \"player - chess\"] \ne2e4 \n");
  Obey("getmoves   " + Path("b.txt") + "   Final 2024");
  EXPECT_EQ(ReadFile(Path("b.txt")), "[Event  \"Final\"] \ne2e4 \n");
  EXPECT_EQ(Obey("getmoves " + Path("no/where")).err, "error open file\n");
}

TEST_F(CommandsTest, GetmovesComesBeforeHelp) {
  const std::string path = Path("help");
  EXPECT_EQ(Obey("getmoves " + path).out, "");
  EXPECT_TRUE(std::filesystem::exists(path));
}

TEST_F(CommandsTest, HelpIsFoundAnywhereInTheLine) {
  const std::string help = Obey("help").out;
  EXPECT_EQ(help.find("#  move                                     \n"), 0u);
  for (const char* line : {"helpme", "xhelp", "e2e4 help", "quit? helpless", " help"}) {
    EXPECT_EQ(Obey(line).out, help) << line;
  }
  EXPECT_EQ(g.game_len, 0) << "the help comes before the move";
  EXPECT_EQ(Obey("hel p").err, "# unknow: hel\n");
}

TEST_F(CommandsTest, XboardAnswersWithItsFeatures) {
  const Said said = Obey("xboard");
  EXPECT_EQ(said.out, "feature setboard=1\nfeature done=1\nfeature sigint=0\nfeature sigterm=0\n");
  EXPECT_EQ(said.err, "");
  Obey("new", "xboard");
  EXPECT_EQ(is_xboard, 1) << "for good";
}

TEST_F(CommandsTest, ProtoverAnswersWhateverItsNumber) {
  EXPECT_EQ(Obey("protover 2").out, "feature done=1\n");
  EXPECT_EQ(Obey("protover").out, "feature done=1\n");
}

TEST_F(CommandsTest, StTakesSeconds) {
  EXPECT_EQ(Obey("st 30").err, "");
  EXPECT_EQ(limit_time, 3000);
  EXPECT_EQ(Obey("st 2.5").err, "# warning:  time = 4 sec \n");
  EXPECT_EQ(limit_time, 400);
  for (const char* line : {"st", "st 0", "st abc"}) {
    EXPECT_EQ(Obey(line).err, "----> error: expected <st second's>\n") << line;
  }
  EXPECT_EQ(limit_time, 400);
}

TEST_F(CommandsTest, TimeTakesHundredths) {
  EXPECT_EQ(Obey("time 40000").err, "");
  EXPECT_EQ(limit_time, 1000);
  EXPECT_EQ(Obey("time").err, "");
  EXPECT_EQ(limit_time, 700);
}

TEST_F(CommandsTest, ForceKeepsTheMachineFromAnswering) {
  const Said said = Obey("force", "e2e4");
  EXPECT_EQ(said.out + said.err, "");
  EXPECT_EQ(stop, 1);
  EXPECT_EQ(g.game_len, 1);
}

TEST_F(CommandsTest, RndSwitchesTheRandomisedSearch) {
  EXPECT_EQ(Obey("rnd on").err, "");
  EXPECT_EQ(is_rnd_search, 1);
  EXPECT_EQ(Obey("rnd off").err, "");
  EXPECT_EQ(is_rnd_search, 0);
  is_rnd_search = 1;
  for (const char* line : {"rnd", "rnd maybe", "rnd On", "rnd on2"}) {
    EXPECT_EQ(Obey(line).err, "error: expected arg, [on] or [off]\n") << line;
  }
  EXPECT_EQ(is_rnd_search, 1);
}

TEST_F(CommandsTest, UndoAndRedo) {
  Obey("force", "e2e4", "e7e5");
  const GameRecord before = g;
  EXPECT_EQ(Obey("undo").out, "");
  EXPECT_EQ(g.game_len, 1);
  EXPECT_EQ(g.game_max, 2);
  EXPECT_EQ(ply, 0);
  EXPECT_EQ(Obey("redo").out, "");
  EXPECT_EQ(std::memcmp(&g, &before, sizeof g), 0);
  EXPECT_EQ(ply, 0);
}

TEST_F(CommandsTest, UndoAndRedoWithNothingToDo) {
  const GameRecord before = g;
  const Said said = Obey("undo", "redo", "up", "end");
  EXPECT_EQ(said.out + said.err, "");
  EXPECT_EQ(std::memcmp(&g, &before, sizeof g), 0);
}

TEST_F(CommandsTest, UpAndEndGoAllTheWay) {
  Obey("force", "e2e4", "e7e5", "g1f3", "b8c6");
  const GameRecord before = g;
  Obey("up");
  EXPECT_EQ(g.game_len, 0);
  EXPECT_EQ(g.game_max, 4);
  EXPECT_EQ(g.key, g.start_key);
  EXPECT_EQ(Obey("getboard").out, Position(kStartText));
  Obey("redo", "end");
  EXPECT_EQ(std::memcmp(&g, &before, sizeof g), 0);
}

TEST_F(CommandsTest, RefusedTextAfterUndoLeavesRedoWorking) {
  Obey("force", "e2e4", "e7e5", "undo");
  EXPECT_EQ(Obey("e7e4").err, "# unknow: e7e4\n");
  EXPECT_EQ(Obey("o-o").err, "# unknow: o-o\n");
  EXPECT_EQ(Obey("redo", "getmoves").out, "moves e2e4 e7e5 \n");
}

using CommandsDeathTest = CommandsTest;

TEST_F(CommandsDeathTest, ANewMoveAfterUndoAborts) {
  Obey("force", "e2e4", "undo");
  EXPECT_EXIT(ObeyLine("d2d4\n"), testing::KilledBySignal(SIGABRT),
              "^---> InsertMoveInGame: error control summ \\?! \n$");
  EXPECT_EXIT(ObeyLine("e2e4\n"), testing::KilledBySignal(SIGABRT), "error control summ");
  EXPECT_EXIT(ObeyLine("go\n"), testing::KilledBySignal(SIGABRT), "error control summ");
}

TEST_F(CommandsTest, NothingIsKeptForRedoAfterNewOrSetboard) {
  Obey("force", "e2e4", "undo", "new");
  EXPECT_EQ(Obey("redo", "force", "d2d4", "getmoves").out, "moves d2d4 \n");
  Obey("undo", "setboard 4k3/8/8/8/8/8/8/4K3 w - -");
  EXPECT_EQ(Obey("redo", "e1e2", "getmoves").out, "moves e1e2 \n");
}

TEST_F(CommandsTest, NewSetsUpTheStartAndLeavesForce) {
  Obey("force", "e2e4");
  const Said said = Obey("new");
  EXPECT_EQ(said.out + said.err, "");
  EXPECT_EQ(stop, 0);
  EXPECT_EQ(g.game_len, 0);
  EXPECT_EQ(Obey("getboard").out, Position(kStartText));
}

TEST_F(CommandsTest, StyleShowsAndSelects) {
  EXPECT_EQ(Obey("style").out, "# knowledge3 \n");
  EXPECT_EQ(Obey("style knowledge1").out, "");
  EXPECT_EQ(Obey("style").out, "# knowledge1 \n");
  for (const char* line : {"style knowledge4", "style Knowledge2", "style knowledge"}) {
    EXPECT_EQ(Obey(line).err, "# unknow style\n") << line;
  }
  EXPECT_STREQ(print_play_str(), "knowledge1");
}

TEST_F(CommandsTest, DebSetsUpATestPosition) {
  const Said said = Obey("deb 11", "getboard");
  EXPECT_EQ(said.out, Position("3k4/8/2K1Q3/8/8/8/8/8 w"));
  EXPECT_EQ(said.err, "");
}

TEST_F(CommandsTest, DebRefusesOtherNumbers) {
  for (const char* line : {"deb", "deb 0", "deb 12", "deb -1", "deb x", "deb 4294967297",
                           "deb 18446744073709551617", "deb 99999999999"}) {
    EXPECT_EQ(Obey(line).err, "#error\n") << line;
  }
  EXPECT_EQ(Obey("getboard").out, Position(kStartText));
}

TEST_F(CommandsTest, SetboardTakesTheRestOfTheLine) {
  const Said said = Obey("setboard   4k3/8/8/8/8/8/8/4K2R   w  K -  12 34", "getboard");
  EXPECT_EQ(said.out, Position("4k3/8/8/8/8/8/8/4K2R w K"));
  EXPECT_EQ(said.err, "");
}

TEST_F(CommandsTest, SetboardRefusedEndsAsAnUnknownWord) {
  Obey("force", "e2e4");
  for (const char* line :
       {"setboard", "setboard ", "setboard foo", "setboard 8/8/8/8/8/8/8/8 w - -",
        "setboard 4k3/8/8/8/8/8/8/4K3 x - -"}) {
    EXPECT_EQ(Obey(line).err, "# unknow: setboard\n") << line;
  }
  EXPECT_EQ(Obey("getboard").out, Position(kAfterE4));
  EXPECT_EQ(Obey("getmoves").out, "moves e2e4 \n");
}

TEST_F(CommandsTest, GetboardAlwaysAnnounces) {
  EXPECT_EQ(Obey("  getboard now").out, Position(kStartText));
  EXPECT_EQ(Obey("getboard", "getboard").out, Position(kStartText) + Position(kStartText));
  EXPECT_EQ(Obey("getboardx").err, "# unknow: getboardx\n");
}

TEST_F(CommandsTest, AMoveIsPlayedWithTheUsersScore) {
  Obey("force", "e2e4");
  ASSERT_EQ(g.game_len, 1);
  EXPECT_EQ(g.game_score[0], 1000001);
}

TEST_F(CommandsTest, IllegalMovesAreUnknown) {
  for (const char* text : {"e2e5", "e7e5", "e2", "a1a1", "e1g1", "o-o", "h9h8"}) {
    EXPECT_EQ(Obey("force", text).err, std::string("# unknow: ") + text + "\n");
  }
  EXPECT_EQ(g.game_len, 0);
}

TEST_F(CommandsTest, AMoveIsAnsweredUnlessForced) {
  Obey("xboard", "setboard 6k1/5ppp/8/8/8/8/5PPP/R5K1 b - -");
  EXPECT_EQ(Obey("g8h8").out, "move a1a8\nthe end\n");
}

TEST_F(CommandsTest, TheFourHundredAndFirstMoveIsRefused) {
  Obey("force");
  for (int i = 0; i < kMaxGameMoves; ++i) ASSERT_EQ(Obey(kKnightMoves[i % 4]).err, "");
  EXPECT_EQ(Obey("b1c3").err, "# unknow: b1c3\n");
  EXPECT_EQ(Obey("go").out, "the end\n");
  EXPECT_EQ(g.game_len, kMaxGameMoves);
  Obey("undo", "redo");
  EXPECT_EQ(g.game_len, kMaxGameMoves);
}

TEST_F(CommandsTest, GoMakesTheMachineMoveAndLeavesForce) {
  Obey("xboard", "force", "setboard 6k1/5ppp/8/8/8/8/8/R3K3 w Q -");
  EXPECT_EQ(Obey("go").out, "move a1a8\nthe end\n");
  EXPECT_EQ(stop, 0);
}

TEST_F(CommandsTest, PosShowsTheBoard) {
  const std::string out = Obey("pos").out;
  EXPECT_EQ(out.find("8  r n b q k b n r \n"), 0u);
  EXPECT_TRUE(out.ends_with("moves: 0\nside:  white\n"));
}

TEST_F(CommandsTest, SaveAndLoadTheirOwnFile) {
  Obey("force", "d2d4");
  const Said said = Obey("save", "new", "load", "getmoves");
  EXPECT_EQ(said.out, "moves d2d4 \n");
  EXPECT_EQ(said.err, "");
  EXPECT_TRUE(std::filesystem::exists(Path("tarvyle_save_game.dat")));
}

TEST_F(CommandsTest, SaveAndLoadRememberTheLastFile) {
  Obey("force", "d2d4", "save " + Path("a.dat"));
  EXPECT_EQ(game_fname, Path("a.dat"));
  Obey("e7e5", "save " + Path("b.dat"), "load " + Path("a.dat"));
  EXPECT_EQ(game_fname, Path("a.dat"));
  EXPECT_EQ(Obey("new", "load", "getmoves").out, "moves d2d4 \n");
}

TEST_F(CommandsTest, FailedSavesAndLoadsAreReportedAndNotRemembered) {
  const std::string bad = Path("missing/game.dat");
  Obey("force", "d2d4", "save " + Path("a.dat"));
  EXPECT_EQ(Obey("save " + bad).err, "# error write file " + bad + " \n");
  EXPECT_EQ(Obey("load " + bad).err, "# error open file " + bad + " \n");
  EXPECT_EQ(game_fname, Path("a.dat"));
  EXPECT_EQ(Obey("getmoves").out, "moves d2d4 \n");
}

TEST_F(CommandsTest, ScorePrintsNothing) {
  const Said said = Obey("score", "deb 3", "score");
  EXPECT_EQ(said.out + said.err, "");
}

TEST_F(CommandsTest, ScorePreparesTheTablesForThisPosition) {
  const auto tables = [] {
    const int* first = &score_table[0][0][0];
    return std::vector<int>(first, first + sizeof score_table / sizeof *first);
  };
  InitEvaluate();
  const std::vector<int> opening = tables();
  ASSERT_TRUE(InitGame("8/8/4k3/8/8/4K3/4P3/8 w - -"));
  Obey("score");
  const std::vector<int> ending = tables();
  EXPECT_NE(ending, opening);
  InitEvaluate();
  EXPECT_EQ(ending, tables());
}

TEST_F(CommandsTest, TestTellsARepetition) {
  Obey("force");
  EXPECT_EQ(Obey("test").out, "Repetition - 0 \n");
  for (int i = 0; i < 2; ++i) Obey("g1f3", "g8f6", "f3g1", "f6g8");
  Obey("g1f3");
  EXPECT_EQ(Obey("test").out, "Repetition - 1 \n");
  Obey("e7e5");
  EXPECT_EQ(Obey("test").out, "Repetition - 0 \n");
}

TEST_F(CommandsTest, TestTellsTheFiftyMoveRule) {
  ASSERT_TRUE(InitGame("4k3/8/8/8/8/8/8/R3K3 w - -"));
  g.fifty = 99;
  EXPECT_EQ(Obey("test").out, "Repetition - 0 \n");
  g.fifty = 100;
  EXPECT_EQ(Obey("test").out, "Repetition - 1 \n");
}

TEST_F(CommandsTest, NoCommandIsUnknown) {
  for (const char* line : {"getmoves",
                           "help",
                           "xboard",
                           "st 9",
                           "time 40000",
                           "force",
                           "rnd off",
                           "undo",
                           "up",
                           "redo",
                           "end",
                           "new",
                           "protover 2",
                           "style",
                           "style knowledge3",
                           "deb 1",
                           "setboard k7/7K w - -",
                           "getboard",
                           "pos",
                           "save",
                           "load",
                           "score",
                           " getmoves",
                           "test",
                           "go"}) {
    EXPECT_EQ(Obey(line).err, "") << line;
  }
}

TEST_F(CommandsTest, AnythingElseIsUnknown) {
  for (const char* word : {"foo", "New", "quitx", "xboard2", "post", "?", "-", "up2", "stx"}) {
    const Said said = Obey(std::string(word) + " more words");
    EXPECT_EQ(said.err, std::string("# unknow: ") + word + "\n");
    EXPECT_EQ(said.out, "");
  }
}

}  // namespace
}  // namespace tarvyle
