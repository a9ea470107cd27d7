// The randomised search and the ordinary one in turn. What the randomised one publishes waits in
// `pv_table`, and the next ordinary search takes it into its tree of principal variations together
// with the lines of its first iteration, oldest first.

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "pv/line.h"
#include "pv/tree.h"
#include "tests/support/search_support.h"

namespace tarvyle {

using namespace support;

namespace {

using PublishedLine = std::vector<Move>;

// A clock that lets the randomised search look at some ten thousand nodes, and the ordinary one go
// to its full depth.
constexpr std::uint32_t kInTurnStep_ms = 1000;
constexpr int kInTurnTime = 800;  // 1/100 s
constexpr int kInTurnDepth = 5;

// The searches of one session, told in a form that can be compared.
using InTurnSession = std::vector<std::string>;

std::vector<PublishedLine> LinesThatWait() {
  std::vector<PublishedLine> lines;
  for (const QueueNode* node = pv_table; node != nullptr; node = node->next) {
    const Move* line = reinterpret_cast<const Move*>(node->value);
    lines.emplace_back(line, line + LineLen(line) + 1);
  }
  return lines;
}

// --- merging by hand -----------------------------------------------------------------------------

// What the test knows of lines without asking the engine for those that wait.
struct ByHand {
  std::vector<PublishedLine> waiting;  // published by the randomised search
  std::vector<PublishedLine> own;      // by the first iteration of the ordinary one
  std::unique_ptr<PvTree> at;          // the tree as that iteration found it
};
ByHand by_hand;

// The flag is asked when a search begins, and whenever one would tell of a line: without it the
// randomised search tells of its lines, too.
std::uint32_t ReadClockAndLoosenTongue() {
  is_rnd_search = 0;
  return ReadTestClock();
}

void NoteForLater(const SearchStatus& status) {
  by_hand.waiting.emplace_back(status.line, status.line + LineLen(status.line) + 1);
}

void NoteFirstIteration(const SearchStatus& status) {
  if (by_hand.at == nullptr) by_hand.at = std::make_unique<PvTree>(pv_tree);
  if (s_depth == 2) by_hand.own.emplace_back(status.line, status.line + LineLen(status.line) + 1);
}

// The tree's links point into itself: they hold again once it is put back to where it was.
void MergeByHand() {
  ASSERT_NE(by_hand.at, nullptr);
  pv_tree = *by_hand.at;
  for (const auto* lines : {&by_hand.waiting, &by_hand.own}) {
    for (const PublishedLine& line : *lines) pvInsertLine(pv_tree, line.data());
  }
}

void IterationByHand(int depth, int /*score*/) {
  if (depth == 2) MergeByHand();
}

// --- a session -----------------------------------------------------------------------------------

std::string InTurnText(const Report& report) {
  std::string text = report.move;
  for (const Iteration& iteration : report.iterations) {
    text += " " + std::to_string(iteration.depth) + ":" + std::to_string(iteration.score) + ":" +
            std::to_string(iteration.nodes);
  }
  return text;
}

class InTurn : public SearchTest {
 protected:
  // One search; its result is told and played.
  static void Go(InTurnSession& session, bool randomised,
                 void (*after_iteration)(int, int) = nullptr) {
    is_rnd_search = randomised ? 1 : 0;
    limit_time = randomised ? kInTurnTime : kLongAllowance;
    Report report;
    Printed([&] { report = SearchToDepth(kInTurnDepth, after_iteration); });
    ASSERT_TRUE(report.found);
    session.push_back(InTurnText(report));
    Move move = 0;
    ASSERT_TRUE(StrToMove(report.move, move));
    ASSERT_TRUE(InsertMoveInGame(move, search_score));
  }

  // The opponent plays the first move of the list.
  static void Reply() {
    ASSERT_TRUE(LegalMoveList());
    ASSERT_GT(ListLength(), 0);
    ASSERT_TRUE(InsertMoveInGame(tree[0], kTypedMove));
  }

  static void Begin(const char* root) {
    ASSERT_TRUE(FreshProcess());
    GoTo(root);
    test_clock = {};
    test_clock.step = kInTurnStep_ms;
  }

  // The engine does all itself.
  static void PlayByEngine(const char* root, const std::string& searches, InTurnSession& session) {
    Begin(root);
    world = {ReadTestClock, ReadTestSeed};
    for (const char search : searches) {
      Go(session, search == 'r');
      const bool lines_wait = pv_table != nullptr;
      EXPECT_EQ(lines_wait, search == 'r') << session.size();
      Reply();
    }
  }

  // No line waits for the engine, and the test merges those that it has heard of.
  static void PlayByHand(const char* root, const std::string& searches, InTurnSession& session) {
    Begin(root);
    by_hand = {};
    for (const char search : searches) {
      const bool randomised = search == 'r';
      world = {randomised ? ReadClockAndLoosenTongue : ReadTestClock, ReadTestSeed};
      status_sink = randomised ? NoteForLater : NoteFirstIteration;
      Go(session, randomised, IterationByHand);
      DropLines();
      if (!randomised) by_hand = {};
      Reply();
    }
  }
};

TEST_F(InTurn, OrdinarySearchMergesTheLinesOfTheRandomisedOne) {
  for (const char* root : {kStart.data(), kMiddleGame}) {
    for (const char* searches : {"roro", "rro", "rooro"}) {
      SCOPED_TRACE(std::string(searches) + ", " + root);
      InTurnSession by_engine;
      InTurnSession by_test;
      PlayByEngine(root, searches, by_engine);
      PlayByHand(root, searches, by_test);
      EXPECT_EQ(by_engine, by_test);
    }
  }
}

TEST_F(InTurn, LinesWaitInTheOrderInWhichTheyWereFound) {
  GoTo(kMiddleGame);
  test_clock.step = kInTurnStep_ms;
  world = {ReadClockAndLoosenTongue, ReadTestSeed};
  by_hand = {};
  status_sink = NoteForLater;
  InTurnSession session;
  Go(session, true);
  Reply();
  world = {ReadClockAndLoosenTongue, ReadTestSeed};
  Go(session, true);
  EXPECT_GT(by_hand.waiting.size(), 4u);
  EXPECT_EQ(LinesThatWait(), by_hand.waiting) << "of both searches, older ones first";
}

TEST_F(InTurn, LinesWaitThroughNewGamesUntilAnIterationEnds) {
  GoTo(kMiddleGame);
  test_clock.step = kInTurnStep_ms;
  InTurnSession session;
  Go(session, true);
  const std::vector<PublishedLine> lines = LinesThatWait();
  EXPECT_FALSE(lines.empty());
  is_rnd_search = 0;
  GoTo("7k/5Q2/6K1/8/8/8/8/8 b");
  EXPECT_FALSE(SearchToDepth(2).found) << "stalemate";
  ASSERT_TRUE(InitNewGame());
  EXPECT_EQ(LinesThatWait(), lines);
  EXPECT_EQ(SearchToDepth(2).iterations.size(), 1u);
  EXPECT_EQ(pv_table, nullptr);
}

}  // namespace

}  // namespace tarvyle
