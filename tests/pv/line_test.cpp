#include "pv/line.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/captured.h"
#include "tests/support/line_support.h"

namespace tarvyle {
namespace {

using support::LineOf;
using support::MoveOf;

struct LengthRow {
  const char* moves;
  int length;
};

TEST(MoveLine, HasTheLengthOfItsMoves) {
  const LengthRow rows[] = {{"", 0}, {"e2e4", 1}, {"e2e4 e7e5 g1f3", 3}};
  for (const LengthRow& row : rows) {
    EXPECT_EQ(LineLen(LineOf(row.moves).data()), row.length) << row.moves;
  }
}

TEST(MoveLine, IsCopiedWithItsEndAndNothingMore) {
  const std::vector<Move> line = LineOf("e2e4 e7e5");
  std::vector<Move> destination(5, 77);
  EXPECT_EQ(LineCopy(destination.data(), line.data()), destination.data());
  EXPECT_EQ(destination, (std::vector<Move>{line[0], line[1], 0, 77, 77}));
  const Move empty = 0;
  LineCopy(destination.data(), &empty);
  EXPECT_EQ(destination, (std::vector<Move>{0, line[1], 0, 77, 77}));
}

TEST(MoveLine, IsDuplicatedOnTheHeap) {
  std::vector<Move> line = LineOf("e2e4 e7e5");
  Move* copy = LineDup(line.data());
  ASSERT_NE(copy, nullptr);
  line[0] = 0;
  EXPECT_EQ(std::vector<Move>(copy, copy + 3), LineOf("e2e4 e7e5"));
  LineFree(copy);
}

TEST(MoveLine, ThatIsEmptyIsDuplicatedAsOneZero) {
  const Move empty = 0;
  EXPECT_EQ(LineLen(&empty), 0);
  Move* copy = LineDup(&empty);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(*copy, 0u);
  LineFree(copy);
}

TEST(MoveLine, ThatIsNoneMayBeFreed) { LineFree(nullptr); }

struct SharedRow {
  const char* a;
  const char* b;
  int shared;
};

TEST(MoveLine, SharesItsLeadingMovesWithAnother) {
  const SharedRow rows[] = {
      {"e2e4 e7e5 g1f3", "e2e4 e7e5 g1f3", 3},
      {"e2e4 e7e5", "e2e4 c7c5", 1},
      {"e2e4 e7e5", "d2d4 e7e5", 0},
      {"e2e4 e7e5", "", 0},
      {"", "e2e4 e7e5", 0},
      {"", "", 0},
      {"e2e4 e7e5 g1f3", "e2e4 e7e5", 2},
      {"e2e4 e7e5", "e2e4 e7e5 g1f3", 2},
      {"e2e4 e7e5 g1f3 b8c6", "e2e4 e7e5 f1c4 b8c6", 2},
  };
  for (const SharedRow& row : rows) {
    EXPECT_EQ(LineInCnt(LineOf(row.a).data(), LineOf(row.b).data()), row.shared)
        << row.a << " / " << row.b;
  }
}

std::string PrintedLine(const std::string& moves) {
  return support::Printed([&] { LinePrint(LineOf(moves).data()); });
}

TEST(MoveLine, IsPrintedWithABlankBehindEachMove) {
  EXPECT_EQ(PrintedLine(""), "\n");
  EXPECT_EQ(PrintedLine("e2e4"), "e2e4 \n");
  EXPECT_EQ(PrintedLine("e2e4 e7e5 a7a8q"), "e2e4 e7e5 a7a8q \n");
}

// The values of a queue, front to back.
std::vector<QueueValue> visited;

std::vector<QueueValue> Values(const Queue& queue) {
  visited.clear();
  pvt_for_each(&queue, [](QueueValue item) { visited.push_back(item); });
  return visited;
}

using Items = std::vector<QueueValue>;

TEST(LineQueue, KeepsTheOrderInWhichItIsFilled) {
  Queue queue = nullptr;
  pvt_push_first(&queue, 1);
  EXPECT_EQ(Values(queue), (Items{1}));
  pvt_push_first(&queue, 2);
  EXPECT_EQ(Values(queue), (Items{2, 1}));
  const QueueNode* last = pvt_push_last(&queue, 3);
  EXPECT_EQ(Values(queue), (Items{2, 1, 3}));
  EXPECT_EQ(last->value, 3u);
  EXPECT_EQ(last->next, nullptr);
  EXPECT_EQ(queue->next->next, last);
  pvt_clear_all(&queue);
}

TEST(LineQueue, ThatIsEmptyTakesAValueAtEitherEnd) {
  Queue queue = nullptr;
  EXPECT_EQ(pvt_push_last(&queue, 7), queue);
  EXPECT_EQ(Values(queue), (Items{7}));
  pvt_clear_all(&queue);
  EXPECT_EQ(queue, nullptr);
}

TEST(LineQueue, GivesItsFirstValueAndAZeroWhenItIsEmpty) {
  Queue queue = nullptr;
  EXPECT_EQ(pvt_pop_first(&queue), 0u);
  EXPECT_EQ(queue, nullptr);
  for (const QueueValue item : {5, 6, 7}) pvt_push_last(&queue, item);
  EXPECT_EQ(pvt_pop_first(&queue), 5u);
  EXPECT_EQ(Values(queue), (Items{6, 7}));
  EXPECT_EQ(pvt_pop_first(&queue), 6u);
  EXPECT_EQ(pvt_pop_first(&queue), 7u);
  EXPECT_EQ(queue, nullptr);
  EXPECT_EQ(pvt_pop_first(&queue), 0u);
}

TEST(LineQueue, VisitsNothingWhenItIsEmpty) {
  const Queue queue = nullptr;
  EXPECT_EQ(Values(queue), Items{});
}

TEST(LineQueue, HoldsPointersAndNeverFreesWhatTheyPointAt) {
  Queue queue = nullptr;
  Move* line = LineDup(LineOf("e2e4").data());
  pvt_push_first(&queue, reinterpret_cast<QueueValue>(line));
  pvt_clear_all(&queue);
  pvt_clear_all(&queue);
  EXPECT_EQ(queue, nullptr);
  EXPECT_EQ(line[0], MoveOf("e2e4"));
  pvt_push_last(&queue, reinterpret_cast<QueueValue>(line));
  EXPECT_EQ(reinterpret_cast<Move*>(pvt_pop_first(&queue)), line);
  LineFree(line);
}

}  // namespace
}  // namespace tarvyle
