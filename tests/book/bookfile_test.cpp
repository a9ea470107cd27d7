#include "book/bookfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "book/epd.h"
#include "book/learn.h"
#include "tests/support/book_support.h"
#include "tests/support/captured.h"
#include "tests/support/files.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::Listen;
using support::Play;
using support::Said;
using support::StartAfresh;
using support::TableTexts;
using support::TemporaryFolder;
using Lines = std::vector<std::string>;

std::string TextAfter(const std::string& moves) {
  InitNewGame();
  Play(moves);
  char text[kEpdSize];
  MakeEpd(text);
  return text;
}

Lines Sorted(Lines lines) {
  std::sort(lines.begin(), lines.end());
  return lines;
}

class BookFile : public testing::Test {
 protected:
  void SetUp() override { StartAfresh(); }

  // Reads a book of this text; returns what was printed on standard output.
  std::string Read(const std::string& text) {
    bool read = false;
    const Said printed =
        Listen([&] { read = ReadLibFile(folder_.Write("book.bk", text).c_str()); });
    EXPECT_TRUE(read);
    EXPECT_EQ(printed.err, "");
    return printed.out;
  }

  TemporaryFolder folder_;
};

struct BookRow {
  const char* meaning;
  const char* book;
  Lines entered;  // the games that lead to the positions entered
  const char* printed;
};

TEST_F(BookFile, EntersThePositionsOfItsLines) {
  const Lines four = {"e2e4", "e2e4 e7e5", "e2e4 e7e5 g1f3", "e2e4 e7e5 g1f3 b8c6"};
  Lines five = four;
  five.emplace_back("e2e4 e7e5 g1f3 b8c6 f1b5");
  const BookRow rows[] = {
      {"an empty file", "", {}, ""},
      {"annotated moves and lists", "e2e4 e7e5 g1f3!? b8c6, f1b5;\n", five, ""},
      {"without a newline at the end", "e2e4 e7e5 g1f3 b8c6 f1b5", five, ""},
      {"lines of DOS", "e2e4 e7e5 g1f3\r\n\r\ne2e4 e7e5 g1f3 b8c6\r\n", four, ""},
      {"a comment line is skipped", "  # e2e4\n#e2e4\n", {}, ""},
      {"a later # only separates", "e2e4 # e7e5\n", {"e2e4", "e2e4 e7e5"}, ""},
      {"blank lines are skipped", "\n   \n\n  e2e4\n", {"e2e4"}, ""},
      {"shared beginnings are entered once", "e2e4 e7e5 g1f3\ne2e4 e7e5 g1f3 b8c6\ne2e4\n", four,
       ""},
      {"transpositions are entered once",
       "e2e3 e7e6 d2d3\nd2d3 e7e6 e2e3\n",
       {"e2e3", "e2e3 e7e6", "e2e3 e7e6 d2d3", "d2d3", "d2d3 e7e6"},
       ""},
      {"an illegal move drops the rest of its line",
       "e2e4 e7e5\ne2e5 e7e5\nd2d4\n",
       {"e2e4", "e2e4 e7e5", "d2d4"},
       "#error: line 2, lexem e2e5\n"},
      {"what stands before it stays",
       "e2e4 e7e5 e4e5 g1f3\n",
       {"e2e4", "e2e4 e7e5"},
       "#error: line 1, lexem e4e5\n"},
      {"unknown text", "hello\n", {}, "#error: line 1, lexem hello\n"},
      {"tabs are no separators", "e2e4\te7e5\n", {"e2e4"}, ""},
      {"only opening lines are counted",
       "# comment\n\n  \n  # comment\ne2e4\n\nx\n",
       {"e2e4"},
       "#error: line 2, lexem x\n"},
      {"a line that holds only a DOS line end is counted",
       "\r\nx\n",
       {},
       "#error: line 2, lexem x\n"},
      {"so is one of separators", " ;;; \nx\n", {}, "#error: line 2, lexem x\n"},
      {"a tab does not lead to a comment", "\t# x\n", {}, "#error: line 1, lexem \t\n"},
      {"castling both ways",
       "e2e4 e7e5 g1f3 g8f6 f1e2 f8e7 e1g1 o-o\n",
       {"e2e4", "e2e4 e7e5", "e2e4 e7e5 g1f3", "e2e4 e7e5 g1f3 g8f6", "e2e4 e7e5 g1f3 g8f6 f1e2",
        "e2e4 e7e5 g1f3 g8f6 f1e2 f8e7", "e2e4 e7e5 g1f3 g8f6 f1e2 f8e7 e1g1",
        "e2e4 e7e5 g1f3 g8f6 f1e2 f8e7 e1g1 e8g8"},
       ""},
  };
  for (const BookRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    StartAfresh();
    EXPECT_EQ(Read(row.book), row.printed);
    const Lines entered = TableTexts();
    Lines expected;
    for (const std::string& moves : row.entered) expected.push_back(TextAfter(moves));
    EXPECT_EQ(entered, Sorted(expected));
  }
}

TEST_F(BookFile, EntersPromotionsByTheirLetter) {
  Read("h2h4 g7g5 h4g5 h7h6 g5h6 g8f6 h6h7 f6g8 h7g8n\n");
  EXPECT_EQ(TableTexts().size(), 9u);
  StartAfresh();
  Play("h2h4 g7g5 h4g5 h7h6 g5h6 g8f6 h6h7 f6g8 h7g8n");
  Read("h2h4 g7g5 h4g5 h7h6 g5h6 g8f6 h6h7 f6g8 h7g8n\n");
  ASSERT_NE(FindCurrentNode(), nullptr);
  EXPECT_EQ(g.piece_cnt[White][Knight], 3);
}

TEST_F(BookFile, WritesPlainBookNodes) {
  Read("e2e4\n");
  Play("e2e4");
  const LearnNode* node = FindCurrentNode();
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->key_lo, g.key.low);
  EXPECT_EQ(node->key_hi, g.key.high);
  EXPECT_EQ(node->score, 0);
  EXPECT_EQ(node->kind, 16);
  EXPECT_EQ(node->side, Black);
  EXPECT_EQ(node->depth, 0);
  EXPECT_EQ(node->book, 1);
  EXPECT_EQ(node->length, static_cast<int>(std::strlen(node->text)) + 25);
}

TEST_F(BookFile, NeverEntersTheStartPosition) {
  Read("g1f3 g8f6 h2h3 h7h6\n");
  EXPECT_EQ(FindCurrentNode(), nullptr);
  // Knights that come back lead to the start position, which then is a position like any other.
  Read("g1f3 g8f6 f3g1 f6g8\n");
  EXPECT_NE(FindCurrentNode(), nullptr);
}

TEST_F(BookFile, LooksOnlyAtTheNewestNodeOfAKeyBeforeEnteringAnother) {
  // Kings that went away and back: the same key and side, another text.
  Read("e2e4 e7e5\ne2e4 e7e5 e1e2 e8e7 e2e1 e7e8\ne2e4 e7e5\n");
  const std::string text = TextAfter("e2e4 e7e5");
  const Lines texts = TableTexts();
  EXPECT_EQ(std::count(texts.begin(), texts.end(), text), 2)
      << "the second time another text stood first, so the position was entered again";
  EXPECT_EQ(texts.size(), 2u + 4u + 1u);
}

TEST_F(BookFile, RefusesTheFourHundredAndFirstMove) {
  std::string line;
  for (int i = 0; i < 100; ++i) line += "g1f3 g8f6 f3g1 f6g8 ";
  EXPECT_EQ(Read(line + "\n"), "");
  EXPECT_EQ(TableTexts().size(), 4u);
  EXPECT_EQ(Read(line + "e2e4 e7e5\n"), "#error: line 1, lexem e2e4\n");
}

TEST_F(BookFile, TakesALineLongerThanItsBufferAsTwo) {
  const std::string gap(65533 - 7, ' ');
  EXPECT_EQ(Read("e2e4" + gap + "e7e5\n"), "#error: line 1, lexem e7e\n#error: line 2, lexem 5\n")
      << "of a line 65533 characters are read at once";
  EXPECT_EQ(TableTexts(), Lines{TextAfter("e2e4")});
}

TEST_F(BookFile, TakesALineThatFillsItsBufferAsOne) {
  const std::string gap(65533 - 8, ' ');
  EXPECT_EQ(Read("e2e4" + gap + "e7e5g8f6\n"), "#error: line 2, lexem g8f6\n");
  EXPECT_EQ(TableTexts().size(), 2u);
}

TEST_F(BookFile, CountsAnEndBehindAFullLineAsNoLine) {
  EXPECT_EQ(Read("e2e4" + std::string(65533 - 4, ' ') + "\ne2e5\n"),
            "#error: line 2, lexem e2e5\n");
}

TEST_F(BookFile, EndsALineAtItsFirstZeroByte) {
  EXPECT_EQ(Read(std::string("e2e4 \0junk\nd2d4\n", 16)), "");
  EXPECT_EQ(TableTexts().size(), 2u);
}

TEST_F(BookFile, LeavesTheGameAsItWas) {
  Play("d2d4 d7d5 c2c4");
  UndoGameMove();
  g.fifty = 17;
  const GameRecord before = g;
  Read("e2e4 e7e5\nbroken\n");
  EXPECT_EQ(std::memcmp(&before, &g, sizeof g), 0);
  EXPECT_EQ(ply, 0);
  RedoGameMove();
  EXPECT_EQ(g.game_len, 3);
}

TEST_F(BookFile, ThatIsMissingIsRefusedWithoutAWord) {
  const GameRecord before = g;
  bool read = true;
  const Said printed = Listen([&] { read = ReadLibFile(folder_.Path("none.bk").c_str()); });
  EXPECT_FALSE(read);
  EXPECT_EQ(printed.out + printed.err, "");
  EXPECT_EQ(std::memcmp(&before, &g, sizeof g), 0);
}

TEST_F(BookFile, IsMissingWhereThereIsNoRegularFile) {
  EXPECT_FALSE(ReadLibFile(folder_.Name().c_str()));
  EXPECT_FALSE(ReadLibFile("/dev/null"));
  EXPECT_TRUE(TableTexts().empty());
}

TEST_F(BookFile, OfTheReferenceSearchesIsReadWithoutAnError) {
  Said printed;
  bool read = false;
  printed = Listen([&] { read = ReadLibFile(TESTS_DATA_DIR "/book.bk"); });
  EXPECT_TRUE(read);
  EXPECT_EQ(printed.out, "");
  EXPECT_GT(TableTexts().size(), 30u);
}

}  // namespace
}  // namespace tarvyle
