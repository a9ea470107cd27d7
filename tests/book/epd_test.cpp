#include "book/epd.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>
#include <vector>

#include "position/makemove.h"
#include "tests/support/book_support.h"
#include "tests/support/eval_support.h"
#include "tests/support/position_support.h"

namespace tarvyle {
namespace {

using support::Epd;
using support::Play;
using support::SetUpRoot;
using support::StartAfresh;

TEST(PositionText, EqualsTheReferenceTexts) {
  const auto rows = support::DataRows("positions.tsv");
  ASSERT_GT(rows.size(), 1000u);
  for (const auto& row : rows) {
    SetUpRoot(row[0]);
    EXPECT_EQ(Epd(), row[6]) << row[0];
  }
}

struct PlayedRow {
  const char* meaning;
  const char* moves;
  const char* text;
};

TEST(PositionText, FollowsTheMovesOfTheGame) {
  const PlayedRow rows[] = {
      {"start position", "", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk"},
      {"a double step with nobody beside it", "e2e4",
       "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b QKqk"},
      {"a black double step beside a white pawn", "e2e4 a7a6 e4e5 d7d5",
       "rnbqkbnr/1pp1pppp/p7/3pP3/8/8/PPPP1PPP/RNBQKBNR w QKqk d6"},
      {"a white double step beside a black pawn", "a2a3 d7d5 a3a4 d5d4 c2c4",
       "rnbqkbnr/ppp1pppp/8/8/P1Pp4/8/1P1PPPPP/RNBQKBNR b QKqk c3"},
      {"single steps to the same squares", "e2e4 d7d6 e4e5 d6d5",
       "rnbqkbnr/ppp1pppp/8/3pP3/8/8/PPPP1PPP/RNBQKBNR w QKqk"},
      {"a move later the square is gone", "e2e4 a7a6 e4e5 d7d5 h2h3",
       "rnbqkbnr/1pp1pppp/p7/3pP3/8/7P/PPPP1PP1/RNBQKBNR b QKqk"},
      {"a king that went away and back has lost his rights", "e2e4 e7e5 e1e2 e8e7 e2e1 e7e8",
       "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w"},
      {"one rook that did", "a2a4 h7h5 a1a3 h8h6 a3a1 h6h8",
       "rnbqkbnr/ppppppp1/8/7p/P7/8/1PPPPPPP/RNBQKBNR w Kq"},
  };
  for (const PlayedRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    StartAfresh();
    Play(row.moves);
    EXPECT_EQ(Epd(), row.text);
  }
}

struct SetUpRow {
  const char* meaning;
  const char* fen;
  const char* text;
};

TEST(PositionText, OfASetUpPosition) {
  const SetUpRow rows[] = {
      {"no rights: it ends with the side", "k7/8/8/8/8/8/8/7K w - -", "k7/8/8/8/8/8/8/7K w"},
      {"Black to move", "k7/8/8/8/8/8/8/7K b - -", "k7/8/8/8/8/8/8/7K b"},
      {"a set-up en-passant square does not show", "k7/8/8/3pP3/8/8/8/7K w - d6",
       "k7/8/8/3pP3/8/8/8/7K w"},
      {"all letters", "r3k2r/8/8/8/8/8/8/R3K2R b KQkq -", "r3k2r/8/8/8/8/8/8/R3K2R b QKqk"},
      {"white letters", "r3k2r/8/8/8/8/8/8/R3K2R w KQ -", "r3k2r/8/8/8/8/8/8/R3K2R w QK"},
      {"black letters", "r3k2r/8/8/8/8/8/8/R3K2R w kq -", "r3k2r/8/8/8/8/8/8/R3K2R w qk"},
      {"K and q", "r3k2r/8/8/8/8/8/8/R3K2R w Kq -", "r3k2r/8/8/8/8/8/8/R3K2R w Kq"},
      {"no rook on a1", "r3k2r/8/8/8/8/8/8/4K2R w KQkq -", "r3k2r/8/8/8/8/8/8/4K2R w Kqk"},
      {"no rook on h1", "r3k2r/8/8/8/8/8/8/R3K3 w KQkq -", "r3k2r/8/8/8/8/8/8/R3K3 w Qqk"},
      {"no rook on a8", "4k2r/8/8/8/8/8/8/R3K2R w KQkq -", "4k2r/8/8/8/8/8/8/R3K2R w QKk"},
      {"no rook on h8", "r3k3/8/8/8/8/8/8/R3K2R w KQkq -", "r3k3/8/8/8/8/8/8/R3K2R w QKq"},
      {"enemy rooks in the corners", "R3k2R/8/8/8/8/8/8/r3K2r w KQkq -",
       "R3k2R/8/8/8/8/8/8/r3K2r w"},
      {"other pieces in the corners", "b3k2n/8/8/8/8/8/8/Q3K2B w KQkq -",
       "b3k2n/8/8/8/8/8/8/Q3K2B w"},
      {"kings beside their home", "r2k3r/8/8/8/8/8/8/R4K1R w KQkq -", "r2k3r/8/8/8/8/8/8/R4K1R w"},
      {"enemy kings on the home squares", "r3K2r/8/8/8/8/8/8/R3k2R w KQkq -",
       "r3K2r/8/8/8/8/8/8/R3k2R w"},
      {"ranks are counted off again", "k7/K7", "k7/K7/8/8/8/8/8/8 w"},
      {"runs of one to eight", "1k6/2p5/3p4/4p3/5p2/6p1/7p/K7 b - -",
       "1k6/2p5/3p4/4p3/5p2/6p1/7p/K7 b"},
  };
  for (const SetUpRow& row : rows) {
    SCOPED_TRACE(row.meaning);
    SetUpRoot(row.fen);
    EXPECT_EQ(Epd(), row.text);
  }
}

TEST(PositionText, KeepsTheDashOfCastlingBeforeAnEnPassantSquare) {
  SetUpRoot("4k3/3p4/8/4P3/8/8/8/4K3 b - -");
  Play("d7d5");
  EXPECT_EQ(Epd(), "4k3/8/8/3pP3/8/8/8/4K3 w - d6");
}

TEST(PositionText, LosesALetterWhenTheRookIsCapturedThoughTheBitIsSet) {
  SetUpRoot("rn2k2r/8/8/8/8/8/1B6/RN2K2R w KQkq -");
  Play("b2h8");
  EXPECT_EQ(Epd(), "rn2k2B/8/8/8/8/8/8/RN2K2R b QKq");
  SetUpRoot("rn2k3/8/8/8/8/8/1B6/RN2K2R w KQkq -");
  EXPECT_NE(g.castle & ShortRight(Black), 0u);
  EXPECT_EQ(Epd(), "rn2k3/8/8/8/8/8/1B6/RN2K2R w QKq");
}

TEST(PositionText, SeesTheMovesOfASearchToo) {
  SetUpRoot("4k3/3p4/8/4P3/8/8/8/4K3 b - -");
  Move move = 0;
  ASSERT_TRUE(StrToMove("d7d5", move));
  MakeMove(move);
  EXPECT_EQ(Epd(), "4k3/8/8/3pP3/8/8/8/4K3 w - d6");
  MakeMove(0);
  EXPECT_EQ(Epd(), "4k3/8/8/3pP3/8/8/8/4K3 b") << "a null move leaves no such square";
  UnMakeMove(0);
  UnMakeMove(move);
  EXPECT_EQ(Epd(), "4k3/3p4/8/4P3/8/8/8/4K3 b");
}

TEST(PositionText, FitsItsBufferInTheFullestPosition) {
  SetUpRoot("r1n1b1q1/1k1b1n1r/p1p1p1p1/1p1p1p1p/P1P1P1P1/1P1P1P1P/R1N1B1Q1/1K1B1N1R w KQkq -");
  EXPECT_LT(Epd().size(), 100u);
}

// The placement field read back, row by row.
std::string Placement(const std::string& text) {
  std::string squares;
  for (const char letter : text.substr(0, text.find(' '))) {
    if (std::isdigit(static_cast<unsigned char>(letter)) != 0) {
      squares += std::string(static_cast<std::size_t>(letter - '0'), '.');
    } else if (letter != '/') {
      squares += letter;
    }
  }
  return squares;
}

TEST(PositionText, ReadsBackAsTheBoardAndNamesEachPossibleEnPassantCapture) {
  int en_passants = 0;
  const auto visit = [&] {
    const std::string text = Epd();
    const std::string squares = Placement(text);
    ASSERT_EQ(squares.size(), 64u);
    for (Square square = 0; square < kSquares; ++square) {
      const char letter =
          g.color[square] == NoColour ? '.' : kPieceLetters[g.color[square]][g.board[square]];
      ASSERT_EQ(squares[square], letter) << chb[square];
    }
    if (!Generate()) return;
    std::string target;
    for (int i = 0; i < treeCnt[1]; ++i) {
      if ((tree[i] & kEnPassant) != 0) target = chb[TargetOf(tree[i])];
    }
    en_passants += target.empty() ? 0 : 1;
    const bool named = text.ends_with("3") || text.ends_with("6");
    EXPECT_EQ(named ? text.substr(text.size() - 2) : "", target) << text;
  };
  support::VisitRandomPositions(51, 1000, visit);
  support::Random random(52);
  for (int games = 0; games < 100; ++games) support::PlayRandomGame(random, 50, visit);
  EXPECT_GT(en_passants, 5);
}

}  // namespace
}  // namespace tarvyle
