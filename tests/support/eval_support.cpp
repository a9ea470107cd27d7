#include "tests/support/eval_support.h"

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>

#include "eval/evaluate.h"
#include "eval/scoretable.h"
#include "tests/support/position_support.h"

namespace tarvyle::support {

namespace {

void LikeARoot() {
  InitEvaluate();
  set_dir(g.side);
}

// Pieces that a random board draws from: anything, endings, armies of queens, pawn storms.
constexpr std::array<const char*, 4> kMixtures = {"pnbrq", "ppppnbr", "qqqqqrbn", "ppppppq"};

char CaseOf(int colour, char letter) {
  return colour == White ? static_cast<char>(letter - 'a' + 'A') : letter;
}

std::string AsFen(const std::string& squares, Random& random) {
  std::string fen;
  for (int row = 0; row < 8; ++row) fen += (row > 0 ? "/" : "") + squares.substr(8 * row, 8);
  for (char& letter : fen) {
    if (letter == '.') letter = '1';
  }
  static constexpr std::array<const char*, 5> kRights = {"-", "KQkq", "Kq", "Qk", "Q"};
  return fen + (Below(random, 2) == 0 ? " w " : " b ") + kRights[Below(random, 5)] + " -";
}

Move RandomMove(Random& random) {
  for (int i = 0; i < treeCnt[1]; ++i) {
    if ((tree[i] & kCastling) != 0) return tree[i];
  }
  return tree[Below(random, treeCnt[1])];
}

}  // namespace

void SetUpRoot(const std::string& fen) {
  StartEngineOnce();
  ply = 0;
  ASSERT_TRUE(InitGame(fen.c_str())) << fen;
  LikeARoot();
}

int EvaluateFully() { return Evaluate(-kFar, kFar); }

int Below(Random& random, int bound) {
  return static_cast<int>(random() % static_cast<unsigned>(bound));
}

std::string RandomBoard(Random& random) {
  std::string squares(64, '.');
  const auto place = [&](char letter) {
    int square = Below(random, 64);
    while (squares[square] != '.') square = Below(random, 64);
    squares[square] = letter;
  };
  for (const int colour : {White, Black}) {
    place(CaseOf(colour, 'k'));
    const std::string mixture = kMixtures[Below(random, 4)];
    for (int pieces = Below(random, 16); pieces > 0; --pieces) {
      place(CaseOf(colour, mixture[Below(random, static_cast<int>(mixture.size()))]));
    }
  }
  return AsFen(squares, random);
}

void PlayRandomGame(Random& random, int moves, const std::function<void()>& visit) {
  StartEngineOnce();
  ply = 0;
  ASSERT_TRUE(InitNewGame());
  for (int i = 0; i < moves && LegalMoveList() && treeCnt[1] > 0; ++i) {
    ASSERT_TRUE(InsertMoveInGame(RandomMove(random), 0));
    visit();
  }
}

void VisitRandomPositions(unsigned seed, int count, const std::function<void()>& visit) {
  Random random(seed);
  for (int i = 0; i < count / 2; ++i) {
    const std::string fen = RandomBoard(random);
    SCOPED_TRACE(fen);
    SetUpRoot(fen);
    visit();
    if (testing::Test::HasFailure()) return;
  }
  int left = count - count / 2;
  while (left > 0) {
    PlayRandomGame(random, left < 120 ? left : 120, [&] {
      SCOPED_TRACE("move " + std::to_string(g.game_len) + " of a random game");
      LikeARoot();
      visit();
      --left;
    });
    if (testing::Test::HasFailure()) return;
  }
}

}  // namespace tarvyle::support
