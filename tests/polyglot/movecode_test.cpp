#include "polyglot/movecode.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/position_support.h"

namespace tarvyle::polyglot {
namespace {

using support::CurrentList;
using support::DataRows;
using support::LegalMove;
using support::PositionTest;
using support::SetUpPosition;

class MoveCode : public PositionTest {};

std::string MoveText(unsigned code) {
  const Move move = MoveOfCode(static_cast<std::uint16_t>(code));
  return move == 0 ? "none" : MoveToStr(move);
}

struct CodeRow {
  const char* fen;
  const char* move;
  unsigned code;  // octal digits: promotion, origin's row and file, target's row and file
};

constexpr const char* kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";
constexpr const char* kWhiteCastles = "r3k2r/8/8/8/8/8/8/R3K2R w KQkq -";
constexpr const char* kBlackCastles = "r3k2r/8/8/8/8/8/8/R3K2R b KQkq -";
constexpr const char* kPromotes = "1n5k/P7/8/8/8/8/8/K7 w - -";

TEST_F(MoveCode, HasTheBitsOfTheFormat) {
  const CodeRow rows[] = {
      {kStart, "e2e4", 001434},        {kStart, "b1c3", 000122},
      {kWhiteCastles, "e1g1", 000407}, {kWhiteCastles, "e1c1", 000400},
      {kBlackCastles, "e8g8", 007477}, {kBlackCastles, "e8c8", 007470},
      {kPromotes, "a7a8q", 046070},    {kPromotes, "a7b8r", 036071},
      {kPromotes, "a7b8b", 026071},    {kPromotes, "a7a8n", 016070},
  };
  for (const CodeRow& row : rows) {
    SetUpPosition(row.fen);
    EXPECT_EQ(CodeOfMove(LegalMove(row.move)), row.code) << row.move;
    EXPECT_EQ(MoveText(row.code), row.move);
  }
}

TEST_F(MoveCode, OfCastlingMayBeTheKingsOwnSquares) {
  SetUpPosition(kWhiteCastles);
  EXPECT_NE(MoveOfCode(000406) & kShortCastling, 0u);
  EXPECT_NE(MoveOfCode(000402) & kLongCastling, 0u);
  SetUpPosition(kBlackCastles);
  EXPECT_NE(MoveOfCode(007476) & kShortCastling, 0u);
  EXPECT_NE(MoveOfCode(007472) & kLongCastling, 0u);
}

TEST_F(MoveCode, OfCastlingIsAnOrdinaryMoveForOtherPieces) {
  SetUpPosition("k7/8/8/8/8/8/8/3KR3 w - -");
  EXPECT_EQ(MoveText(000407), "e1h1");
  EXPECT_EQ(MoveText(000406), "e1g1");
}

TEST_F(MoveCode, IsUnknownWhenTheMoveIsNotLegal) {
  const CodeRow rows[] = {
      {kStart, "three rows", 001444},
      {kStart, "nothing stands there", 003444},
      {kStart, "castling with pieces between", 000407},
      {kStart, "no move at all", 000000},
      {kStart, "promotion of a pawn that goes on", 041434},
      {kStart, "the highest bit", 0101434},
      {"4k2r/8/8/8/8/8/8/4K2R w k -", "castling without the right", 000407},
      {"4k3/8/8/8/8/8/4r3/4K2R w K -", "castling out of check", 000407},
      {kPromotes, "no promotion", 006070},
      {kPromotes, "promotion to a king", 056070},
      {"4k3/8/8/8/4r3/8/4B3/4K3 w - -", "a pinned piece", 001423},
  };
  for (const CodeRow& row : rows) {
    SetUpPosition(row.fen);
    EXPECT_EQ(MoveText(row.code), "none") << row.move;
  }
}

TEST_F(MoveCode, TellsTheLegalMovesOfAPositionApart) {
  int moves = 0;
  for (const auto& row : DataRows("movelists.tsv")) {
    if (!InitGame(row[0].c_str()) || !LegalMoveList()) continue;
    const std::vector<Move> legal = CurrentList();
    std::set<std::uint16_t> codes;
    for (const Move move : legal) {
      const std::uint16_t code = CodeOfMove(move);
      EXPECT_TRUE(codes.insert(code).second) << row[0] << ' ' << MoveToStr(move);
      EXPECT_EQ(MoveOfCode(code), move) << row[0] << ' ' << MoveToStr(move);
      ++moves;
    }
  }
  EXPECT_GT(moves, 1000);
}

}  // namespace
}  // namespace tarvyle::polyglot
