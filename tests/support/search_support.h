#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Whoever includes this uses the engine as well:
// IWYU pragma: begin_exports
#include "base/property.h"
#include "book/book.h"
#include "book/learn.h"
#include "eval/scoretable.h"
#include "position/attack.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/makemove.h"
#include "position/movestack.h"
#include "position/record.h"
#include "position/score.h"
#include "position/setup.h"
#include "position/text.h"
#include "position/types.h"
#include "search/clock.h"
#include "search/hash.h"
#include "search/hashmemory.h"
#include "search/lifetimes.h"
#include "search/mainsearch.h"
#include "search/node.h"
#include "search/result.h"
#include "search/root.h"
#include "search/state.h"
#include "search/status.h"
#include "search/style.h"
#include "tests/support/captured.h"
#include "tests/support/data_rows.h"
// IWYU pragma: end_exports

// What the tests of the search share: an engine in the state of a fresh process, a clock and a seed
// of their own, positions by text, and what was printed.

namespace tarvyle::support {

// --- positions -----------------------------------------------------------------------------------

inline constexpr std::string_view kStart = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -";

// A quiet middle game, White to move.
inline constexpr const char* kMiddleGame =
    "r1bq1rk1/ppp2ppp/2np1n2/2b1p3/2B1P3/2NP1N2/PPP2PPP/R1BQ1RK1 w - -";

// Kings behind walls that nothing moves: tiny trees of any depth.
inline constexpr std::string_view kFortress =
    "4k3/1p1p1p1p/1P1P1P1P/8/8/1p1p1p1p/1P1P1P1P/4K3 w - -";

// So many captures for both sides that no move is resolved within 4096 nodes.
inline constexpr const char* kQueens = "qqqqkqqq/qqqqqqqq/8/8/8/8/QQQQQQQQ/QQQQKQQQ w";

// A move to write down where no position is needed.
inline constexpr Move kE2E4 = MoveWord(Pawn, 52, 36);

// The move of the current position with that text, or 0. Rebuilds the list of this ply.
Move Find(std::string_view text);

std::vector<std::string> Words(std::string_view text);

// Sets up "FEN" or "FEN moves m1 m2 ..."; the moves are played into the game.
bool SetUpGame(std::string_view root);

// Makes moves above the root, as a search does ("0" is a null move). False at the first that is
// none.
bool Descend(std::string_view moves);

// So many null moves for Descend.
std::string Nulls(int count);

// Root, then moves above it.
void GoTo(std::string_view root, std::string_view moves = "");

// Back to the root, taking every move back.
void Ascend();

// Whether the record is as it was, but for the undo words of plies that were searched.
bool IsSameGame(const GameRecord& before);

// Reversible, repeating moves by which a game grows: knights go out and back.
bool PlayKnightMoves(int count);

// --- clock, seed, state --------------------------------------------------------------------------

inline constexpr int kReferenceEntries = 0x80000;  // "hash size" 38
inline constexpr int kLongAllowance = 20000000;    // 1/100 s; 95 % of it can be formed in an int

// A clock that stands still, or moves on by `step` at each reading.
struct TestClock {
  std::uint32_t milliseconds = 0;
  std::uint32_t step = 0;
  int readings = 0;
  unsigned seed = 1;
};
inline TestClock test_clock;

std::uint32_t ReadTestClock();
unsigned ReadTestSeed();

// What a process has right after its start with this book ("": an empty learn table and no book).
bool FreshProcess(const std::string& book = "");

// A started engine, with hash tables of this size.
void Start(int entries = kReferenceEntries);

// From now on every search, and every stage of a randomised one, ends after that many nodes.
void EndSearchesAfter(int nodes);

// A fresh start for another search of the same node: nothing remembered, horizon far away.
void Forget();

// For a child process: from now on standard output arrives, at once, where errors do.
void SayAloud();

// --- searches ------------------------------------------------------------------------------------

// Score and node count after one iteration.
struct Iteration {
  int depth;
  int score;
  std::uint64_t nodes;
};

// What a search left behind and told.
struct Report {
  bool found = false;
  std::string move;
  std::vector<Iteration> iterations;
  std::vector<std::string> lines;  // thinking lines without their time
};

// Searches the current position, iterations up to `depth`, by the test's clock, allowance and seed,
// and tells what happened. `after_iteration` is called as the root hook of that name, and
// `status_sink`, where there is one, is told the lines.
Report SearchToDepth(int depth, void (*after_iteration)(int depth, int score) = nullptr);

// Arguments of the two node searches, by name. Both write their line to `node_line`.
struct NodeArguments {
  int alpha = -kInfinity;
  int beta = kInfinity;
  int depth = 2;
  int is_probe_child = 0;
  int on_pv = 0;
  int null_allowed = 0;
  Move first_move = 0;
  Move excluded_move = 0;
};
inline Move node_line[kLineSize];

NodeArguments Depth(int depth);
NodeArguments ZeroWindow(int beta, int depth);

int SearchOffPv(const NodeArguments& a);
int SearchOnPv(const NodeArguments& a);

// Nodes that a search off the principal variation visits with nothing remembered.
std::uint64_t NodesOf(const NodeArguments& arguments);

// The table's entry of the current position, or null.
const HashEntry* StoredEntry();

// The depth stored for the position after a move, or -1 when nothing is.
int StoredDepthAfter(Move move);

// --- the engine of a test ------------------------------------------------------------------------

// An engine as a fresh process has it, at the start position, with empty tables, style
// "knowledge3", seed 1 and a clock that stands still. All of it is back for the next test.
class SearchTest : public ::testing::Test {
 protected:
  SearchTest() {
    Start();
    HashClear();
    property_clear();
    test_clock = {};
    world = {ReadTestClock, ReadTestSeed};
    limit_time = kLongAllowance;
    PLAY_STYLE = kKnowledge3;
    s_depth = 50;  // horizon far away for tests that search single nodes
    TimeReset();
    test_clock.readings = 0;
  }

  ~SearchTest() override {
    world = {RealMilliseconds, RealSeed};
    root_hooks = {};
    status_sink = nullptr;
    is_rnd_search = 0;
    property_clear();
    FreshProcess();
  }
};

}  // namespace tarvyle::support
