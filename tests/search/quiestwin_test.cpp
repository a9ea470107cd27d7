// The quiescence search, compared with a plain one that makes every move: score, nodes and the game
// record must be the same whatever is counted ahead.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "eval/cache.h"
#include "eval/evaluate.h"
#include "position/directions.h"
#include "position/movegen.h"
#include "search/quies.h"
#include "tests/support/any_position.h"
#include "tests/support/build_kind.h"
#include "tests/support/eval_support.h"
#include "tests/support/plain_quies.h"
#include "tests/support/search_support.h"

namespace tarvyle {

namespace {

using support::Below;
using support::PlainQuies;
using support::Random;
using support::Scaled;

using Quiescer = int (*)(int alpha, int beta);

struct Window {
  int alpha;
  int beta;
};

struct QuiesRun {
  int score;
  std::uint64_t nodes;
  bool stopped;
  GameRecord record;  // as the search leaves it
};

// Searches that need more nodes are stopped there, in the middle: trees of captures can be huge.
constexpr int kNodeBound = 2000;

bool StopAtOnce() { return true; }

class QuiescenceTwin : public support::SearchTest {
 protected:
  QuiescenceTwin() { world.should_stop = StopAtOnce; }

  // Keeps the current position, so that every search starts from it. What the record holds above it
  // is made up: a trace that is not left shows.
  void Keep() {
    for (int i = g.game_len + ply; i < kRecordMoves; ++i) {
      g.game_moves[i] = static_cast<Move>(i);
      g.game_keys[i] = 5000u + static_cast<unsigned>(i);
      g.undo[i] = {i, i, i, 8, 7000 + i};
    }
    kept_ = g;
    kept_list_.assign(tree + treeCnt[ply], tree + treeCnt[ply + 1]);
    counters_.assign(repetition_set, repetition_set + kRepetitionMask + 1);
  }

  // Back to what was kept, the list of this ply included.
  void GoBack() {
    g = kept_;
    std::copy(kept_list_.begin(), kept_list_.end(), tree + treeCnt[ply]);
    treeCnt[ply + 1] = treeCnt[ply] + static_cast<int>(kept_list_.size());
  }

  QuiesRun Run(Quiescer search, Window window, int node_bound) {
    GoBack();
    TimeReset();
    const std::uint64_t before = kNodesPerPoll - static_cast<std::uint64_t>(node_bound);
    cnt_nodes = before;
    const int score = search(window.alpha, window.beta);
    return {score, cnt_nodes - before, is_stop_search != 0, g};
  }

  // Both ways, the engine's with evaluations that it has to work out or, every other time, finds
  // remembered. Returns what the plain one gave.
  QuiesRun Compare(Window window, int node_bound = kNodeBound) {
    const bool warm = ++searches_ % 2 == 0;
    ForgetScores();
    const QuiesRun first = Run(warm ? PlainQuies : Quies, window, node_bound);
    const QuiesRun second = Run(warm ? Quies : PlainQuies, window, node_bound);
    const QuiesRun& got = warm ? second : first;
    const QuiesRun& wanted = warm ? first : second;
    const auto what = [&] {
      return testing::Message() << "window " << window.alpha << ", " << window.beta << ", bound "
                                << node_bound << (warm ? ", warm" : ", cold");
    };
    // After a stop nobody looks at the score, nor at what is still counted.
    EXPECT_EQ(got.stopped, wanted.stopped) << what();
    if (!wanted.stopped) {
      EXPECT_EQ(got.score, wanted.score) << what();
      EXPECT_EQ(got.nodes, wanted.nodes) << what();
    }
    EXPECT_EQ(std::memcmp(&got.record, &wanted.record, sizeof wanted.record), 0) << what();
    ++(wanted.stopped ? stopped_ : compared_);
    return wanted;
  }

  // What the material may become by one move of the list, by way of making each.
  static std::set<int> MaterialsAfterAMove() {
    std::set<int> materials;
    if (ply > 0 && !GenerateCaptures()) return materials;
    for (int i = treeCnt[ply]; i < treeCnt[ply + 1]; ++i) {
      const Move move = tree[i];
      MakeMove(move);
      materials.insert(g.material[g.xside] - g.material[g.side]);
      UnMakeMove(move);
    }
    return materials;
  }

  // Windows where something may change: around the evaluation, around what a piece more or less is
  // worth, and where a move's gain begins to leave the opponent above his bound by material alone.
  std::vector<Window> Windows() {
    std::vector<Window> windows;
    const int stand_pat = Evaluate(-kInfinity, kInfinity);
    for (const int step : {-1, 0, 1}) {
      windows.push_back({stand_pat + step - 1, stand_pat + step});
    }
    for (const int step : {1000, 3000, 5000, 10000}) {
      windows.push_back({stand_pat + step - 1, stand_pat + step});
      windows.push_back({stand_pat - step - 1, stand_pat - step});
    }
    std::set<int> materials = MaterialsAfterAMove();
    materials.insert(g.material[g.side] - g.material[g.xside]);
    for (const int material : materials) {
      for (const int step : {0, kLazyMargin, kLazyMargin + 1}) {
        const int bound = material + step;
        windows.push_back({bound, bound + 1});
        windows.push_back({bound, kInfinity});
      }
    }
    return windows;
  }

  // Compares the two in the current position.
  void CompareHere() {
    ++positions_;
    Keep();
    NoteKinds();
    const std::vector<Window> windows = Windows();
    for (const Window& window : windows) Compare(window);
    const QuiesRun wide = Compare({-kInfinity, kInfinity});
    if (!wide.stopped) {
      for (const int step : {0, 1}) Compare({wide.score - step, wide.score - step + 1});
      Compare({wide.score - 1, wide.score + 1});
      Compare({wide.score - 300, wide.score + 200});
    }
    EXPECT_TRUE(std::equal(counters_.begin(), counters_.end(), repetition_set));
    GoBack();
  }

  // Walks so many moves up from a root, captures first, and compares after each.
  void CompareAlongAWalk(const std::string& root, Random& random, int moves) {
    SCOPED_TRACE(root);
    ASSERT_TRUE(support::SetUpGame(root));
    InitEvaluate();
    set_dir(g.side);
    if (!LegalMoveList()) return;
    CompareHere();
    for (int i = 0; i < moves && !HasFailure(); ++i) {
      if (!GenerateCaptures()) break;
      if (support::Below(random, 3) == 0 || treeCnt[ply + 1] == treeCnt[ply]) Generate();
      const int count = treeCnt[ply + 1] - treeCnt[ply];
      if (count == 0) break;
      MakeMove(tree[treeCnt[ply] + Below(random, count)]);
      treeCnt[ply + 1] = treeCnt[ply];
      CompareHere();
    }
    support::Ascend();
  }

  // What the list of this ply has.
  void NoteKinds() {
    if (ply > 0 && !GenerateCaptures()) return;
    const auto has = [](Move kind) {
      return std::any_of(tree + treeCnt[ply], tree + treeCnt[ply + 1],
                         [=](Move move) { return (move & kind) != 0; });
    };
    with_promotion_ += has(kPromotion) ? 1 : 0;
    with_recapture_ += std::any_of(tree + treeCnt[ply], tree + treeCnt[ply + 1], [](Move move) {
      return (move & kCapture) != 0 && LastMove() != 0 && TargetOf(move) == TargetOf(LastMove());
    });
    long_lists_ += ply > 0 && treeCnt[ply + 1] - treeCnt[ply] > 20 ? 1 : 0;
  }

  // So many positions were compared, and next to no search of them was stopped before its end.
  void ExpectAtLeast(int positions) const {
    EXPECT_GE(positions_, positions);
    EXPECT_GE(compared_, 15 * positions);
    EXPECT_LT(stopped_, compared_ / 20);
    RecordProperty("positions", positions_);
    RecordProperty("compared", compared_);
    RecordProperty("stopped", stopped_);
  }

  int positions_ = 0;
  int searches_ = 0;
  int compared_ = 0;
  int stopped_ = 0;
  int with_promotion_ = 0;
  int with_recapture_ = 0;
  int long_lists_ = 0;

 private:
  GameRecord kept_{};
  std::vector<Move> kept_list_;
  std::vector<std::uint32_t> counters_;
};

// Instrumented builds take every third position of games only.
constexpr int kEveryPosition = support::kSlowBuild ? 3 : 1;

TEST_F(QuiescenceTwin, AgreesInPositionsOfGames) {
  Random random(81);
  int rows = 0;
  for (const auto& row : support::DataRows("positions.tsv")) {
    if (rows++ % kEveryPosition != 0) continue;
    CompareAlongAWalk(row[0], random, 2);
    if (HasFailure()) return;
  }
  ExpectAtLeast(3000 / kEveryPosition);
  EXPECT_GT(with_recapture_, 300 / kEveryPosition);
}

TEST_F(QuiescenceTwin, AgreesInExtremePositions) {
  Random random(82);
  for (const std::string& fen : support::ExtremePositions()) {
    for (int walk = 0; walk < 5 && !HasFailure(); ++walk) CompareAlongAWalk(fen, random, 8);
  }
  ExpectAtLeast(100);
}

TEST_F(QuiescenceTwin, AgreesOnRandomBoards) {
  support::VisitTrees(83, Scaled(3000, 100000), [&] { CompareHere(); });
  ExpectAtLeast(Scaled(3000, 100000));
  EXPECT_GT(with_promotion_, positions_ / 20);
}

std::string FenOf(const std::string& squares) {
  std::string fen;
  for (int row = 0; row < 8; ++row) fen += (row > 0 ? "/" : "") + squares.substr(8 * row, 8);
  return fen;
}

// A board whose first rows and files hold both kings and so many of these pieces, or one more, of
// either colour in turn.
std::string CrowdedCorner(Random& random, int rows, int files, std::string_view kinds, int pieces) {
  std::string squares(64, '1');
  const auto place = [&](char letter) {
    Square square = A8;
    do {
      square = 8 * Below(random, rows) + Below(random, files);
    } while (squares[square] != '1');
    squares[square] = letter;
  };
  place('k');
  place('K');
  for (pieces += Below(random, 2); pieces > 0; --pieces) {
    const char letter = kinds[Below(random, static_cast<int>(kinds.size()))];
    place(pieces % 2 == 0 ? letter : static_cast<char>(letter - 'a' + 'A'));
  }
  return FenOf(squares) + (Below(random, 2) == 0 ? " w - -" : " b - -");
}

// With the last pawn or rook gone nobody can win, whatever the material says.
TEST_F(QuiescenceTwin, AgreesWhereNobodyMayBeAbleToWin) {
  Random random(84);
  const int count = Scaled(1500, 50000);
  for (int i = 0; i < count && !HasFailure(); ++i) {
    CompareAlongAWalk(CrowdedCorner(random, 4, 5, "pnbr", Below(random, 4)), random, 2);
  }
  ExpectAtLeast(count);
}

// White queens among black pawns, who keep their king's corner closed.
std::string QueensAmongPawns(Random& random) {
  std::string squares(64, '1');
  squares.replace(0, 2, "kp");
  squares.replace(8, 2, "pp");
  const auto place = [&](char letter, int pieces, int first_row, int rows) {
    while (pieces > 0) {
      const Square square = 8 * first_row + Below(random, 8 * rows);
      if (squares[square] != '1') continue;
      squares[square] = letter;
      --pieces;
    }
  };
  place('K', 1, 6, 2);
  place('Q', 6 + Below(random, 4), 1, 6);
  place('p', 12, 1, 5);
  return FenOf(squares) + " b - -";
}

// Sorted once, and lowest first, where nothing is to be hoped for.
TEST_F(QuiescenceTwin, AgreesWhereListsAreLong) {
  Random random(88);
  const int count = Scaled(500, 10000);
  for (int i = 0; i < count && !HasFailure(); ++i) {
    const std::string fen = QueensAmongPawns(random);
    SCOPED_TRACE(fen);
    support::GoTo(fen, "0");
    CompareHere();
    support::Ascend();
  }
  ExpectAtLeast(count);
  EXPECT_GT(long_lists_, positions_ / 4);
}

TEST_F(QuiescenceTwin, AgreesAtTheLastPlies) {
  Random random(87);
  for (int depth = 92; depth <= 97; ++depth) {
    for (const std::string& fen : support::ExtremePositions()) {
      SCOPED_TRACE(fen);
      support::GoTo(fen, support::Nulls(depth));
      CompareHere();
      support::Ascend();
    }
  }
  ExpectAtLeast(150);
}

TEST_F(QuiescenceTwin, AgreesInRootsWithAnEnPassantCapture) {
  Random random(85);
  const char* const kRoots[] = {
      "4k3/8/8/8/4p3/8/P2P3P/K7 w - - moves d2d4",
      "4k3/3p4/8/4P3/8/8/8/4K3 b - - moves d7d5",
      "rnbqkbnr/ppp1pppp/8/8/3p4/5NP1/PPPPPP1P/RNBQKB1R w KQkq - moves c2c4",
      "rnbqkbnr/pppppppp/8/4P3/8/8/PPPP1PPP/RNBQKBNR b KQkq - moves f7f5",
  };
  for (const char* root : kRoots) {
    CompareAlongAWalk(root, random, 0);
    const std::vector<Move> list(tree, tree + treeCnt[1]);
    EXPECT_TRUE(std::any_of(list.begin(), list.end(), [](Move move) {
      return (move & kEnPassant) != 0;
    })) << root;
  }
}

TEST_F(QuiescenceTwin, IsStoppedAtTheSameNodesAndLeavesTheSameRecord) {
  Random random(86);
  for (const auto& row : support::DataRows("movelists.tsv")) {
    SCOPED_TRACE(row[0]);
    ASSERT_TRUE(support::SetUpGame(row[0]));
    InitEvaluate();
    set_dir(g.side);
    MakeMove(0);
    Keep();
    for (const Window& window : Windows()) {
      const QuiesRun run = Compare(window);
      for (int bound = 1; bound <= static_cast<int>(run.nodes) && bound < 40; ++bound) {
        EXPECT_TRUE(Compare(window, bound).stopped);
      }
      if (HasFailure()) return;
    }
    GoBack();
    support::Ascend();
  }
  EXPECT_GE(stopped_, 1000);
}

}  // namespace

}  // namespace tarvyle
