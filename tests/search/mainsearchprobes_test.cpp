// How each play style searches a move of the principal variation: which searches there are, one
// after the other, with which arguments.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "pv/tree.h"
#include "tests/support/search_support.h"

namespace tarvyle {

namespace {

using support::Forget;
using support::NodeArguments;

// --- the trace -----------------------------------------------------------------------------------

// Every node that a search counts: where it stands, and how far above the root.
std::vector<std::uint64_t> visited_nodes;

// The clock, which lets itself be read at the next node again.
std::uint32_t NoteNode() {
  visited_nodes.push_back((g.key & ~std::uint64_t{0xFF}) | static_cast<std::uint64_t>(ply));
  cnt_nodes = kNodesPerPoll - 1;
  return 0;
}

// None of the searches here comes near that.
constexpr std::size_t kMostNodes = 500000;

bool IsTooLong() { return visited_nodes.size() > kMostNodes; }

void StartTrace() {
  world.milliseconds = NoteNode;
  world.should_stop = IsTooLong;
  cnt_nodes = kNodesPerPoll - 1;
  visited_nodes.clear();
}

// --- the searches of a move ----------------------------------------------------------------------

struct PvCall {
  char kind;  // of the child: p(robe), for its score and the best reply; v(erification), without
              // that reply; f(ull), as a node of the principal variation
  int depth;
  bool reply_first;  // the reply that the probe before has found, if any, is tried first
};

// "p4" is a probe at depth 4, "p4+" one with the reply first.
PvCall CallOf(const std::string& text) { return {text[0], text[1] - '0', text.back() == '+'}; }

constexpr const char* kPvRook = "4k3/1p4p1/8/8/8/8/1P4P1/R3K3 w";
constexpr const char* kPvInCheck = "4k3/1p4p1/8/8/8/8/1P2r1P1/R3K3 w";

// The queen can go where one pawn, and nothing else, takes her. Two others can take pawns, worth
// the same: which comes first tells how the best reply was brought to the front of its list.
constexpr const char* kPvQueen = "6k1/6pp/8/1p1pp3/P3P3/8/3Q2PP/6K1 w";

constexpr int kOutOfReach = 20000;
constexpr int kInReach = -20000;
constexpr int kQueenUp = 5000;  // only with the queen still on the board

struct ProbeRow {
  const char* what;
  const char* root;
  const char* move;  // the only one of the root's list
  int style;
  int depth;  // of the root; the move's own is one less
  int alpha;
  bool null_move;     // on; a child that it cuts off has no reply
  const char* calls;  // one after the other, see CallOf
};

constexpr ProbeRow kProbeRows[] = {
    // Probing from one depth less on; at the root a full search in any case.
    {"knowledge1, a low move of depth 2: one probe", kPvRook, "a1a7", 0, 3, kOutOfReach, false,
     "p2 f2+"},
    {"knowledge1, a low move of depth 3: the first of two", kPvRook, "a1a6", 0, 4, kOutOfReach,
     false, "p2 f3+"},
    {"knowledge1, a high move of depth 2: one probe", kPvRook, "a1a6", 0, 3, kInReach, false,
     "p2 f2+"},
    {"knowledge1, a high move of depth 3: both probes", kPvRook, "a1a6", 0, 4, kInReach, false,
     "p2 p3+ f3+"},
    {"knowledge1, a low check: both probes", kPvRook, "a1a8", 0, 4, kOutOfReach, false,
     "p2 p3+ f3+"},
    {"knowledge1, a deep low move: nothing is verified", kPvQueen, "d2d4", 0, 7, kQueenUp, false,
     "p5 f6+"},
    // One probe; a deep move that fails low is verified, at the same depth.
    {"knowledge2, a low move of depth 5", kPvQueen, "d2d4", 1, 6, kQueenUp, false, "p5"},
    {"knowledge2, a low move of depth 6", kPvQueen, "d2d4", 1, 7, kOutOfReach, false, "p6 v6"},
    {"knowledge2, low because of one reply", kPvQueen, "d2d4", 1, 7, kQueenUp, false, "p6 v6 f6+"},
    {"knowledge2, a low move that no reply answers", kPvQueen, "d2d4", 1, 7, kOutOfReach, true,
     "p6"},
    {"knowledge2, a high move of depth 5", kPvQueen, "d2d3", 1, 6, kQueenUp, false, "p5 f5+"},
    {"knowledge2, a high move of depth 6", kPvQueen, "d2d3", 1, 7, kQueenUp, false, "p6 f6+"},
    // Probing from one depth less on; verified at half the depth, from root depth 6 on.
    {"knowledge3, a low move of depth 4", kPvQueen, "d2d4", 2, 5, kQueenUp, false, "p3"},
    {"knowledge3, a low move of depth 5", kPvQueen, "d2d4", 2, 6, kOutOfReach, false, "p4 v2+"},
    {"knowledge3, low because of one reply", kPvQueen, "d2d4", 2, 6, kQueenUp, false, "p4 v2+ f5+"},
    {"knowledge3, the same a ply deeper", kPvQueen, "d2d4", 2, 7, kQueenUp, false, "p5 v3+ f6+"},
    {"knowledge3, a low move that no reply answers", kPvQueen, "d2d4", 2, 6, kOutOfReach, true,
     "p4 v2"},
    {"knowledge3, a low move in check", kPvInCheck, "e1e2", 2, 6, kOutOfReach, false, "p4"},
    {"knowledge3, a high move of depth 3", kPvQueen, "d2d3", 2, 4, kQueenUp, false, "p2 p3+ f3+"},
    {"knowledge3, a high move of depth 1", kPvQueen, "d2d3", 2, 2, kQueenUp, false, "p0 p1+ f1+"},
    {"knowledge3, a low move of depth 1", kPvQueen, "d2d3", 2, 2, kOutOfReach, false, "p0"},
    {"knowledge3, a low check of depth 1: no probe at 0", kPvRook, "a1a8", 2, 2, kOutOfReach, false,
     "p1"},
    {"knowledge3, a low check of depth 2: both probes", kPvRook, "a1a8", 2, 3, kOutOfReach, false,
     "p1 p2+"},
    {"knowledge3, a low check of depth 5: verified, too", kPvRook, "a1a8", 2, 6, kOutOfReach, false,
     "p4 p5+ v2+"},
};

// The root with its one move, all else forgotten but for a stored line and a reply found earlier,
// both the one that is listed last.
Move GoToRow(const ProbeRow& row) {
  support::GoTo(row.root);
  Forget();
  PLAY_STYLE = row.style;
  search_tree_width_null_move_cut = row.null_move ? 1 : 0;
  const Move move = support::Find(row.move);
  EXPECT_NE(move, 0u);
  MakeMove(move);
  EXPECT_TRUE(LegalMoveList());
  const Move line[] = {move, tree[treeCnt[2] - 1], 0};
  UnMakeMove(move);
  pvInsertLine(pv_tree, line);
  gl_find_move[1] = line[1];
  tree[0] = move;
  treeCnt[1] = 1;
  return move;
}

// What came of a root's one move.
struct PvCourse {
  int score;
  Move reply;  // the last one that a probe found
  std::vector<std::uint64_t> nodes;
};

PvCourse SearchRoot(const ProbeRow& row, bool move_is_of_the_line) {
  const Move move = GoToRow(row);
  NodeArguments arguments = support::Depth(row.depth);
  arguments.alpha = row.alpha;
  arguments.first_move = move_is_of_the_line ? move : 0;
  status_sink = [](const SearchStatus&) {};
  StartTrace();
  SearchOnPv(arguments);
  DropLines();
  return {sort_val[0], 0, visited_nodes};
}

int Answer(const ProbeRow& row, const PvCall& call, Move& reply, Move* line, int on_pv) {
  const int in_check = Check() ? 1 : 0;
  const Move first = call.reply_first ? reply : 0;
  line[1] = 0;
  switch (call.kind) {
    case 'p': {
      gl_find_move[1] = 0;
      const int score =
          -Search(-kInfinity, -row.alpha, call.depth, in_check, line, 0, on_pv, 1, first, 0);
      reply = gl_find_move[1];
      return score;
    }
    case 'v':
      return -Search(-row.alpha - 1, -row.alpha, call.depth, in_check, line, 1, on_pv, 0, first,
                     reply);
    default:
      return -main_search(-kInfinity, -row.alpha, call.depth, in_check, line, 0, on_pv, 0, first);
  }
}

PvCourse MakeCalls(const ProbeRow& row, bool move_is_of_the_line) {
  const Move move = GoToRow(row);
  PvCourse course{};
  Move line[kLineSize];
  StartTrace();
  StopSearch();  // the root itself
  MakeMove(move);
  for (const std::string& call : support::Words(row.calls)) {
    course.score = Answer(row, CallOf(call), course.reply, line, move_is_of_the_line ? 1 : 0);
  }
  UnMakeMove(move);
  course.nodes = visited_nodes;
  return course;
}

using PvProbes = support::SearchTest;

TEST_F(PvProbes, MoveIsSearchedInTheWayOfTheStyle) {
  for (const ProbeRow& row : kProbeRows) {
    for (const bool move_is_of_the_line : {false, true}) {
      SCOPED_TRACE(testing::Message() << row.what << (move_is_of_the_line ? ", on the line" : ""));
      const PvCourse wanted = MakeCalls(row, move_is_of_the_line);
      const PvCourse got = SearchRoot(row, move_is_of_the_line);
      EXPECT_EQ(got.score, wanted.score);
      EXPECT_EQ(got.nodes.size(), wanted.nodes.size());
      EXPECT_EQ(is_stop_search, 0);
      EXPECT_TRUE(got.nodes == wanted.nodes) << "other nodes, or in another order";
      if (row.calls[1] != '0') {
        EXPECT_EQ(wanted.reply == 0, row.null_move);
      }
    }
  }
}

}  // namespace

}  // namespace tarvyle
