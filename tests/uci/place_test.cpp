// The position that the GUI has told.

#include "uci/place.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <numeric>
#include <string>
#include <vector>

#include "position/record.h"
#include "search/draw.h"
#include "tests/support/uci_support.h"

namespace tarvyle::uci {

using namespace support;

namespace {

constexpr const char* kStartBoard = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk";

// So many half-moves of four that lead back to where they began.
std::string Shuffled(const std::vector<std::string>& cycle, int count) {
  std::string moves;
  for (int i = 0; i < count; ++i) moves += " " + cycle[static_cast<std::size_t>(i % 4)];
  return moves;
}

const std::vector<std::string> kKnights = {"g1f3", "g8f6", "f3g1", "f6g8"};
const std::vector<std::string> kKings = {"g1h1", "g8h8", "h1g1", "h8g8"};

class Places : public UciTest {
 protected:
  Lines Place(const std::string& words) {
    return Said([&] { ObeyPosition(words); });
  }

  // The score of a move that is searched alone.
  std::string ScoreOf(const std::string& move) {
    return TextBetween(Beginning(Go("depth 2 searchmoves " + move), "info depth").back(), "score",
                       "nodes");
  }
};

TEST_F(Places, AreTheStartPositionOrAFenAndMoves) {
  struct Row {
    const char* words;
    const char* board;
    int moves;
  };
  for (const Row& row : {
           Row{"startpos", kStartBoard, 0},
           {" startpos  moves \r", kStartBoard, 0},
           {"startpos moves e2e4 e7e5 g1f3",
            "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b QKqk", 3},
           {"fen 4k3/8/8/8/8/8/4P3/4K3 w - - 12 34", "4k3/8/8/8/8/8/4P3/4K3 w", 0},
           {"fen 4k3/8/8/8/8/8/4P3/4K3 b", "4k3/8/8/8/8/8/4P3/4K3 b", 0},
           {"fen 4k3/8/8/8/8/8/4P3/4K3 w - - 0 1 moves e2e4 e8e7", "8/4k3/8/8/4P3/8/8/4K3 w", 2},
           {"fen 8/P6k/8/8/8/8/8/K7 w moves a7a8n", "N7/7k/8/8/8/8/8/K7 b", 1},
           {"fen 8/P6k/8/8/8/8/8/K7 w moves a7a8", "Q7/7k/8/8/8/8/8/K7 b", 1},
           {"fen 4k3/8/8/8/3pP3/8/8/4K3 b - e3 0 1 moves d4e3", "4k3/8/8/8/8/4p3/8/4K3 w", 1},
       }) {
    EXPECT_EQ(Place(row.words), Lines()) << row.words;
    EXPECT_EQ(Board(), row.board) << row.words;
    EXPECT_EQ(g.game_len, row.moves) << row.words;
  }
}

// --- the half-move clock of a FEN ----------------------------------------------------------------

constexpr const char* kRookUp = "fen 7k/8/8/8/8/8/P7/R6K w - - ";

TEST_F(Places, TakeTheHalfMoveClockOfAFen) {
  struct Row {
    const char* words;  // what follows the square of en passant
    int fifty;
  };
  for (const Row& row : {
           Row{"99 60", 99},
           {"7", 7},
           {"99 60 moves a1b1", 100},
           {"98 60 moves a1b1 h8g8", 100},
           {"99 60 moves a2a3", 0},
           {"99 60 moves a2a3 h8g8", 1},
           {"", 0},
           {"0 1", 0},
           {"-5 1", 0},
           {"250 126", kFiftyMoves},
           {"99999999999 1", 0},
           {"x 1", 0},
           {"bm a2a4; 50", 0},
       }) {
    EXPECT_EQ(Place(kRookUp + std::string(row.words)), Lines()) << row.words;
    EXPECT_EQ(g.fifty, row.fifty) << row.words;
  }
  EXPECT_EQ(Place("fen 7k/8/8/8/8/8/P7/R6K w"), Lines());
  EXPECT_EQ(g.fifty, 0);
  EXPECT_EQ(Place("startpos moves g1f3"), Lines());
  EXPECT_EQ(g.fifty, 1) << "that of the position before is forgotten";
}

TEST_F(Places, AreDrawnOneMoveLaterAtAHalfMoveClockOf99) {
  Place(kRookUp + std::string("99 60"));
  EXPECT_EQ(ScoreOf("a1b1"), "cp 0");
  EXPECT_NE(ScoreOf("a2a3"), "cp 0") << "a pawn's move begins to count anew";
  Place(kRookUp + std::string("97 60"));
  EXPECT_NE(ScoreOf("a1b1"), "cp 0");
  Place("fen 7k/R7/6K1/8/8/8/8/8 w - - 99 60");
  EXPECT_EQ(ScoreOf("a7a8"), "mate 1") << "mate comes first";
}

TEST_F(Places, KeepTheHalfMoveClockOfAShortenedGame) {
  Place(kRookUp + std::string("30 60 moves") + Shuffled({"a1b1", "h8g8", "b1a1", "g8h8"}, 401));
  EXPECT_EQ(g.game_len, 201);
  EXPECT_EQ(g.fifty, 431);
}

TEST_F(Places, StayWhenTheNextOneIsBad) {
  const std::string after = " (the position before stays)";
  struct Row {
    const char* words;
    const char* complaint;
  };
  ASSERT_EQ(Place("startpos moves d2d4 g8f6"), Lines());
  const std::string before = Board();
  for (const Row& row : {
           Row{"", "startpos or fen expected"},
           {"Startpos", "startpos or fen expected"},
           {"moves e2e4", "startpos or fen expected"},
           {"startpos e2e4", "moves expected, not e2e4"},
           {"startpos moves e2e4 e2e4", "illegal move: e2e4"},
           {"startpos moves e7e5", "illegal move: e7e5"},
           {"startpos moves e2e4q", "illegal move: e2e4q"},
           {"startpos moves e2e4x", "illegal move: e2e4x"},
           {"startpos moves E2E4", "illegal move: E2E4"},
           {"startpos moves o-o", "illegal move: o-o"},
           {"fen", "a FEN was expected"},
           {"fen moves e2e4", "a FEN was expected"},
           {"fen nonsense", "illegal position: nonsense "},
           {"fen 8/8/8/8/8/8/8/8 w", "illegal position: 8/8/8/8/8/8/8/8 w "},
           {"fen P3k3/8/8/8/8/8/8/4K3 w", "illegal position: P3k3/8/8/8/8/8/8/4K3 w "},
           {"fen 4k2p/8/8/8/8/8/8/4K3 w", "illegal position: 4k2p/8/8/8/8/8/8/4K3 w "},
           {"fen 4k3/8/8/8/8/8/8/P3K3 w", "illegal position: 4k3/8/8/8/8/8/8/P3K3 w "},
           {"fen 4k3/8/8/8/8/8/8/p3K3 w", "illegal position: 4k3/8/8/8/8/8/8/p3K3 w "},
           {"fen 4k2R/8/8/8/8/8/8/4K3 w", "illegal position: 4k2R/8/8/8/8/8/8/4K3 w "},
           {"fen 8/P6k/8/8/8/8/8/K7 w moves a7a8k", "illegal move: a7a8k"},
       }) {
    EXPECT_EQ(Place(row.words), Lines{"info string " + (row.complaint + after)}) << row.words;
    EXPECT_EQ(Board(), before) << row.words;
    EXPECT_EQ(g.game_len, 2) << row.words;
  }
}

TEST_F(Places, AreSetUpAnewWithTheirWholeGame) {
  Place("startpos moves e2e4 e7e5");
  const std::string board = Board();
  Place("fen 4k3/8/8/8/8/8/4P3/4K3 x");
  FreshProcess();
  EXPECT_EQ(Board(), kStartBoard);
  PlaceAgain();
  EXPECT_EQ(Board(), board);
  EXPECT_EQ(g.game_len, 2);
  PlaceNewGame();
  EXPECT_EQ(Board(), kStartBoard);
  PlaceAgain();
  EXPECT_EQ(Board(), kStartBoard) << "a new game forgets the old one";
}

TEST_F(Places, ForgetTheRepetitionsOfOtherGames) {
  const std::string queen_up = "fen 6k1/5ppp/8/8/8/8/5PPP/3Q2K1 w - - 0 1";
  Place(queen_up + " moves" + Shuffled(kKings, 6));
  EXPECT_NE(ScoreOf("h1g1"), "cp 0") << "for the second time, above the root";
  Place(queen_up + " moves" + Shuffled(kKings, 10));
  EXPECT_EQ(ScoreOf("h1g1"), "cp 0") << "for the third time";
  Place(queen_up + " moves" + Shuffled(kKings, 6));
  EXPECT_NE(ScoreOf("h1g1"), "cp 0");
  EXPECT_EQ(std::accumulate(std::begin(repetition_set), std::end(repetition_set), 0u), 7u)
      << "the counters are those of this game";
}

// The record takes 400 moves.
TEST_F(Places, MayFollowAGameThatFillsTheRecord) {
  const std::string board = "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w QKqk";
  for (const int moves : {396, 400, 404, 800}) {
    EXPECT_EQ(Place("startpos moves e2e4 e7e5" + Shuffled(kKnights, moves)), Lines());
    EXPECT_EQ(Board(), board) << moves;
    EXPECT_EQ(g.game_len, moves == 396 ? 398 : g.game_len);
    EXPECT_LE(g.game_len, kMaxGameMoves);
    EXPECT_EQ(Beginning(Go("depth 2"), "bestmove").size(), 1u);
  }
  EXPECT_EQ(Place("startpos moves e2e4 e7e5" + Shuffled(kKnights, 398)), Lines());
  EXPECT_EQ(g.game_len, kMaxGameMoves) << "nothing is left out before it must be";
  EXPECT_EQ(Place("startpos moves e2e4 e7e5" + Shuffled(kKnights, 404)), Lines());
  // Fifty moves without an end in sight are a draw whatever comes: so much is kept at least.
  EXPECT_GE(g.game_len, 100);
  EXPECT_EQ(Place("startpos moves" + Shuffled(kKnights, 401)), Lines());
  EXPECT_EQ(g.game_len, 201) << "two hundred are enough";
}

// A repetition counts that began long before the record had to be shortened.
TEST_F(Places, KeepTheRepetitionsOfALongGame) {
  const std::string queen_up = "fen 6k1/5ppp/8/8/8/8/5PPP/3Q2K1 w - - 0 1 moves";
  const std::string last = " h2h3 h7h6" + Shuffled(kKings, 41);
  EXPECT_EQ(Place(queen_up + Shuffled(kKings, 360) + last), Lines());
  EXPECT_EQ(g.game_len, 41) << "what came before the last pawn move is left out";
  EXPECT_EQ(Board(), "6k1/5pp1/7p/8/8/7P/5PP1/3Q3K b");
  EXPECT_EQ(ScoreOf("g8h8"), "cp 0");
  Place(queen_up + " h2h3 h7h6 g1h1");
  EXPECT_NE(ScoreOf("g8h8"), "cp 0") << "without its past";
}

TEST_F(Places, ForgetWhatCannotComeBack) {
  struct Row {
    const char* what;
    const char* fen;
    const char* final_moves;
  };
  const std::vector<std::string> rooks = {"h1g1", "h8g8", "g1h1", "g8h8"};
  for (const Row& row : {
           Row{"castling", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "e1c1 e8e7"},
           {"a capture", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1", "a1a8 e8e7"},
           {"a promotion", "4k2r/P7/8/8/8/8/8/4K2R w Kk - 0 1", "a7a8n e8e7"},
           {"a pawn's move", "4k2r/8/8/8/8/8/P7/4K2R w Kk - 0 1", "a2a3 e8e7"},
       }) {
    EXPECT_EQ(Place("fen " + std::string(row.fen) + " moves" + Shuffled(rooks, 380) + " " +
                    row.final_moves + Shuffled(rooks, 20)),
              Lines())
        << row.what;
    EXPECT_EQ(g.game_len, 21) << row.what;
  }
}

TEST_F(Places, ForgetTheWholeGameAfterALastMoveThatCannotBeUndone) {
  const std::vector<std::string> rooks = {"h1g1", "h8g8", "g1h1", "g8h8"};
  const std::string full = "fen 4k2r/p7/8/8/8/8/8/4K2R w Kk - 0 1 moves" + Shuffled(rooks, 399);
  Place(full + " a7a6");
  EXPECT_EQ(g.game_len, kMaxGameMoves);
  EXPECT_EQ(Place(full + " a7a6 h1g1"), Lines());
  EXPECT_EQ(g.game_len, 1);
  EXPECT_EQ(Board(), "4k1r1/8/p7/8/8/8/8/4K1R1 b");
}

}  // namespace

}  // namespace tarvyle::uci
