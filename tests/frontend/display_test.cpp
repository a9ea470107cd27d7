#include "frontend/display.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <iterator>
#include <string>

#include "tests/support/frontend_support.h"

namespace tarvyle {

using namespace support;

namespace {

class DisplayTest : public FrontEndTest {};

TEST_F(DisplayTest, TextOfThePosition) {
  EXPECT_STREQ(get_board(), kStartText);
  const char* first = get_board();
  ASSERT_TRUE(Play("e2e4"));
  EXPECT_STREQ(get_board(), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk");
  EXPECT_EQ(get_board(), first) << "the text lives in one static buffer";
}

TEST_F(DisplayTest, AnnouncesThePositionOnce) {
  const std::string line = Position(kStartText);
  EXPECT_EQ(Listen([] { EXPECT_EQ(print_board(), 0); }).out, line);
  EXPECT_EQ(Listen([] { EXPECT_EQ(print_board(), 0); }).out, "");
  EXPECT_STREQ(old_print_fen, kStartText);
}

TEST_F(DisplayTest, AnnouncesThePositionAgainAfterAChange) {
  Listen(print_board);
  ASSERT_TRUE(Play("g1f3"));
  EXPECT_EQ(Listen(print_board).out,
            "position rnbqkbnr/pppppppp/8/8/8/5N2/PPPPPPPP/RNBQKB1R b QKqk\n");
  UndoGameMove();
  EXPECT_EQ(Listen(print_board).out, Position(kStartText));
}

TEST_F(DisplayTest, TwoHalfMovesAreAFullMove) {
  EXPECT_EQ(use_moves(0), 0);
  EXPECT_EQ(use_moves(1), 1);
  EXPECT_EQ(use_moves(2), 1);
  EXPECT_EQ(use_moves(3), 2);
  EXPECT_EQ(use_moves(4), 2);
  EXPECT_EQ(use_moves(400), 200);
}

TEST_F(DisplayTest, DiagramOfTheStartPosition) {
  const Said said = Listen(show_board);
  EXPECT_EQ(said.out,
            "8  r n b q k b n r \n"
            "7  p p p p p p p p \n"
            "6  -   -   -   -   \n"
            "5    -   -   -   - \n"
            "4  -   -   -   -   \n"
            "3    -   -   -   - \n"
            "2  P P P P P P P P \n"
            "1  R N B Q K B N R \n"
            "\n"
            "   a b c d e f g h \n"
            "moves: 0\n"
            "side:  white\n");
  EXPECT_EQ(said.err, "");
}

TEST_F(DisplayTest, DiagramCountsFullMovesAndNamesTheSide) {
  const auto end_of_diagram = [] {
    const std::string out = Listen(show_board).out;
    return out.substr(out.find("moves: "));
  };
  ASSERT_TRUE(Play("e2e4"));
  EXPECT_EQ(end_of_diagram(), "moves: 1\nside:  black\n");
  ASSERT_TRUE(Play("e7e5"));
  EXPECT_EQ(end_of_diagram(), "moves: 1\nside:  white\n");
  ASSERT_TRUE(Play("g1f3"));
  EXPECT_EQ(end_of_diagram(), "moves: 2\nside:  black\n");
  UndoGameMove();
  EXPECT_EQ(end_of_diagram(), "moves: 1\nside:  white\n") << "a move kept for redo does not count";
}

TEST_F(DisplayTest, LightSquaresShowAndDarkOnesDoNot) {
  ASSERT_TRUE(InitGame("k7/8/8/8/8/8/8/7K w - -"));
  const std::string out = Listen(show_board).out;
  constexpr std::size_t kLineLength = 20;  // digit, two blanks, eight squares of two, newline
  const auto square = [&](char file, int rank) {
    return out[static_cast<std::size_t>(8 - rank) * kLineLength + 3 +
               2 * static_cast<std::size_t>(file - 'a')];
  };
  EXPECT_EQ(square('a', 8), 'k');
  EXPECT_EQ(square('h', 1), 'K');
  EXPECT_EQ(square('e', 4), '-');
  EXPECT_EQ(square('d', 4), ' ');
  EXPECT_EQ(square('a', 1), ' ');
  EXPECT_EQ(square('h', 8), ' ');
  EXPECT_EQ(square('b', 1), '-');
}

TEST_F(DisplayTest, MovesOfAnEmptyGame) {
  EXPECT_EQ(Listen([] { print_moves(nullptr, nullptr); }).out, "moves \n");
  EXPECT_EQ(Listen(PrintBareMoves).out, "\n");
}

TEST_F(DisplayTest, MovesOfTheGameWithoutThoseKeptForRedo) {
  for (const char* move : {"e2e4", "e7e5", "g1f3"}) ASSERT_TRUE(Play(move));
  EXPECT_EQ(Listen([] { print_moves(nullptr, nullptr); }).out, "moves e2e4 e7e5 g1f3 \n");
  UndoGameMove();
  EXPECT_EQ(Listen([] { print_moves(nullptr, nullptr); }).out, "moves e2e4 e7e5 \n");
  EXPECT_EQ(Listen(PrintBareMoves).out, "e2e4 e7e5 \n");
}

TEST_F(DisplayTest, MovesNamePromotionsAndCastlings) {
  ASSERT_TRUE(InitGame("4k3/P7/8/8/8/8/8/4K2R w K -"));
  ASSERT_TRUE(Play("a7a8n"));
  ASSERT_TRUE(Play("e8e7"));
  ASSERT_TRUE(Play("o-o"));
  EXPECT_EQ(Listen(PrintBareMoves).out, "a7a8n e8e7 e1g1 \n");
}

TEST_F(DisplayTest, MovesIntoAFile) {
  ASSERT_TRUE(Play("e2e4"));
  ASSERT_TRUE(Play("c7c5"));
  const std::string path = Path("game.txt");
  const Said said = Listen([&] { print_moves(path.c_str(), nullptr); });
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, "");
  EXPECT_EQ(ReadFile(path), "[Event  \"player - chess\"] \ne2e4 c7c5 \n");
}

TEST_F(DisplayTest, MovesIntoAFileReplaceItAndNameTheEvent) {
  const std::string path = Path("game.txt");
  WriteFile(path, std::string(1000, 'x'));
  Listen([&] { print_moves(path.c_str(), "Final"); });
  EXPECT_EQ(ReadFile(path), "[Event  \"Final\"] \n\n");
}

TEST_F(DisplayTest, MovesIntoAFileThatCannotBeWrittenLeaveTheOlderOne) {
  const std::string path = Path("game.txt");
  WriteFile(path, "an older game");
  ASSERT_TRUE(Play("e2e4"));
  WithFileSizeLimit(10, [&] { print_moves(path.c_str(), nullptr); });
  EXPECT_EQ(ReadFile(path), "an older game");
  EXPECT_EQ(std::distance(
                std::filesystem::directory_iterator(std::filesystem::path(path).parent_path()), {}),
            1)
      << "and nothing beside it";
}

TEST_F(DisplayTest, MovesIntoAFileThatCannotBeOpened) {
  const std::string path = Path("missing/game.txt");
  const Said said = Listen([&] { print_moves(path.c_str(), "Final"); });
  EXPECT_EQ(said.out, "");
  EXPECT_EQ(said.err, "error open file\n");
}

}  // namespace
}  // namespace tarvyle
