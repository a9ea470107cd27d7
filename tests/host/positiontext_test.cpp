// Positions as other programs write them, and as the engine does.

#include "host/positiontext.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "position/record.h"
#include "position/text.h"
#include "position/types.h"
#include "tests/support/host_support.h"

namespace tarvyle {

using namespace support;

namespace {

struct PositionRow {
  const char* text;
  const char* current;  // the engine's own
};

constexpr PositionRow kPositionRows[] = {
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
     "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w QKqk"},
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w",
     "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w"},
    {"r3k2r/8/8/8/8/8/8/R3K2R b Kq -", "r3k2r/8/8/8/8/8/8/R3K2R b Kq"},
    // Tabs, blanks, and what follows the position.
    {" 4k3/8/8/8/8/8/8/4K2Q \t w  - - bm h1h8; id \"x\";", "4k3/8/8/8/8/8/8/4K2Q w"},
    {"4k3/8/8/8/8/8/8/4K2Q w bm h1h8;", "4k3/8/8/8/8/8/8/4K2Q w"},
    // The double step before an en-passant capture, from both sides.
    {"4k3/8/8/8/3pP3/8/8/4K3 b - e3", "4k3/8/8/8/3pP3/8/8/4K3 b - e3"},
    {"4k3/8/8/8/4Pp2/8/8/4K3 b - e3", "4k3/8/8/8/4Pp2/8/8/4K3 b - e3"},
    {"4k3/8/8/Pp6/8/8/8/4K3 w - b6", "4k3/8/8/Pp6/8/8/8/4K3 w - b6"},
    {"4k3/8/8/pP6/8/8/8/4K3 w - a6", "4k3/8/8/pP6/8/8/8/4K3 w - a6"},
    {"4k3/8/8/6Pp/8/8/8/4K3 w - h6", "4k3/8/8/6Pp/8/8/8/4K3 w - h6"},
    {"4k3/8/8/8/6pP/8/8/4K3 b - h3", "4k3/8/8/8/6pP/8/8/4K3 b - h3"},
    {"r3k3/8/8/8/3pP3/8/8/4K2R b Kq e3", "r3k3/8/8/8/3pP3/8/8/4K2R b Kq e3"},
    // No pawn that could capture: beside it, behind it, across the edge, of the wrong colour.
    {"4k3/8/8/8/4P3/8/8/4K3 b - e3", "4k3/8/8/8/4P3/8/8/4K3 b"},
    {"4k3/8/8/8/4P3/3p4/8/4K3 b - e3", "4k3/8/8/8/4P3/3p4/8/4K3 b"},
    {"4k3/8/8/7p/P7/8/8/4K3 b - a3", "4k3/8/8/7p/P7/8/8/4K3 b"},
    {"4k3/8/8/8/7P/p7/8/4K3 b - h3", "4k3/8/8/8/7P/p7/8/4K3 b"},
    {"4k3/8/8/8/3PP3/8/8/4K3 b - e3", "4k3/8/8/8/3PP3/8/8/4K3 b"},
    {"4k3/8/8/8/3rP3/8/8/4K3 b - e3", "4k3/8/8/8/3rP3/8/8/4K3 b"},
    // No pawn that could be captured, and squares of the wrong side.
    {"4k3/8/8/8/3p4/8/8/4K3 b - e3", "4k3/8/8/8/3p4/8/8/4K3 b"},
    {"4k3/8/8/8/3pN3/8/8/4K3 b - e3", "4k3/8/8/8/3pN3/8/8/4K3 b"},
    {"4k3/8/8/8/3pP3/8/8/4K3 w - e3", "4k3/8/8/8/3pP3/8/8/4K3 w"},
    {"4k3/8/8/8/3pP3/8/8/4K3 b - e6", "4k3/8/8/8/3pP3/8/8/4K3 b"},
    {"4k3/3pP3/8/8/8/8/8/4K3 b - e6", "4k3/3pP3/8/8/8/8/8/4K3 b"},
    {"4k3/8/8/8/8/8/3Pp3/4K3 w - e3", "4k3/8/8/8/8/8/3Pp3/4K3 w"},
    {"4k3/8/8/8/3pP3/8/8/4K3 b - 33", "4k3/8/8/8/3pP3/8/8/4K3 b"},
};

using PositionText = HostTest;

TEST_F(PositionText, IsSetUpAndWrittenAgain) {
  for (const PositionRow& row : kPositionRows) {
    EXPECT_EQ(SetUpText(row.text), "") << row.text;
    EXPECT_EQ(CurrentText(), row.current) << row.text;
    const char last = CurrentText().back();
    EXPECT_EQ(g.game_len, last == '3' || last == '6' ? 1 : 0) << row.text;
    EXPECT_EQ(SetUpText(row.current), "") << row.current;
    EXPECT_EQ(CurrentText(), row.current) << "its own text";
  }
}

TEST_F(PositionText, PlaysTheDoubleStepBeforeAnEnPassantCapture) {
  ASSERT_EQ(SetUpText("4k3/8/8/8/3pP3/8/8/4K3 b - e3"), "");
  ASSERT_EQ(g.game_len, 1);
  EXPECT_STREQ(MoveToStr(g.game_moves[0]), "e2e4");
  ASSERT_EQ(SetUpText("4k3/8/8/8/3pP3/8/8/4K3 b - -"), "");
  EXPECT_EQ(g.game_len, 0);
}

TEST_F(PositionText, SaysWhyItIsRefused) {
  struct Row {
    const char* text;
    const char* reason;
  };
  for (const Row& row : {
           Row{"", "no side to move"},
           {"4k3/8/8/8/8/8/8/4K3", "no side to move"},
           {"4k3/8/8/8/8/8/8/4K3 x", "no side to move"},
           {"4k3/8/8/8/8/8/8/4K3 white", "no side to move"},
           {"8/8/8/8/8/8/8/8 w", "no chess position"},
           {"nonsense w", "no chess position"},
           {"4k3/8/8/8/8/8/8/4K2 w", "no chess position"},
           {"4k3/8/8/8/8/8/8/4K3/8 w", "no chess position"},
           {"4k3/8/8/8/8/8/44/4K3 w", "no chess position"},
           {"4k3/9/8/8/8/8/8/4K3 w", "no chess position"},
           {"4k2R/8/8/8/8/8/8/4K3 w", "the side not to move is in check"},
           {"4k3/8/8/8/8/8/4r3/4K3 b", "the side not to move is in check"},
           {"4k3/8/8/8/3pP3/4N3/8/4K3 b - e3", "no pawn can have passed over e3"},
           {"4k3/8/8/8/3pP3/8/4N3/4K3 b - e3", "no pawn can have passed over e3"},
       }) {
    EXPECT_EQ(SetUpText(row.text), row.reason) << row.text;
  }
}

TEST_F(PositionText, GivesTheFieldsOfEpd) {
  struct Row {
    const char* text;
    const char* fields;
  };
  for (const Row& row : {
           Row{"4k3/8/8/8/8/8/8/4K3 b", "4k3/8/8/8/8/8/8/4K3 b - -"},
           {"r3k2r/8/8/8/8/8/8/R3K2R w QKqk", "r3k2r/8/8/8/8/8/8/R3K2R w KQkq -"},
           {"r3k2r/8/8/8/8/8/8/R3K2R w qK", "r3k2r/8/8/8/8/8/8/R3K2R w Kq -"},
           {"4k3/8/8/8/3pP3/8/8/4K3 b - e3", "4k3/8/8/8/3pP3/8/8/4K3 b - e3"},
           {"4k3/8/8/8/8/8/8/4K3 w bm e2;", "4k3/8/8/8/8/8/8/4K3 w - -"},
       }) {
    EXPECT_EQ(EpdFields(row.text), row.fields);
  }
}

TEST_F(PositionText, LeavesTheOperationsOfAnEpdLine) {
  EXPECT_EQ(EpdOperations("4k3/8/8/8/8/8/8/4K3 w - -  bm e2; id \"a b\";"), "bm e2; id \"a b\";");
  EXPECT_EQ(EpdOperations("4k3/8/8/8/8/8/8/4K3 w - -"), "");
  EXPECT_EQ(EpdOperations("4k3/8/8/8/8/8/8/4K3 w - - \t "), "");
  EXPECT_EQ(EpdOperations("4k3/8/8/8/8/8/8/4K3 w\tbm e2;"), "bm e2;");
  // Words of the letters that name files.
  for (const char* operation : {"ce 34;", "ae 1;", "a3e 1;", "e 3;", "3 e;", "e4 1;", "-- 1;"}) {
    EXPECT_EQ(EpdOperations(std::string("4k3/8/8/8/8/8/8/4K3 w - ") + operation), operation);
    EXPECT_EQ(EpdFields(std::string("4k3/8/8/8/8/8/8/4K3 w KQ ") + operation),
              "4k3/8/8/8/8/8/8/4K3 w KQ -");
  }
  EXPECT_EQ(EpdOperations("4k3/8/8/8/8/8/8/4K3 w - e6 ce 34;"), "ce 34;");
  EXPECT_EQ(EpdOperations("4k3/8/8/8/8/8/8/4K3 w KQ bm e2;"), "bm e2;");
}

}  // namespace

}  // namespace tarvyle
