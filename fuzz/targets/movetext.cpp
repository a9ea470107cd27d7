// Move texts: a position by the first byte, then words that are moves or not. What is accepted is
// played, and in the end everything is taken back.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <string_view>

#include "base/token.h"
#include "fuzz/harness.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/soundness.h"
#include "position/types.h"

namespace {

using namespace tarvyle;

constexpr const char* kPositions[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq -",
    "r3k2r/1Pppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPpP/R3K2R w KQkq -",
    "r3k2r/1Pppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPpP/R3K2R b KQkq -",
    "8/2p5/3p4/1P5r/K4pP1/7k/4P3/R7 b - g3",
    "k7/8/8/8/8/8/8/K7 w - -",
    "PPPPPPPk/8/8/8/8/8/8/Kppppppp b - -",
    "QQQQQQQQ/QQQQQQQ1/8/8/k7/8/K7/8 w - -",
    "8/8/8/3kK3/8/8/8/8 w - -",
};

// Enough for a game of sixty moves. Each is checked by a sum over the whole record, so that long
// games take long.
constexpr std::size_t kLongest = 300;

bool SamePlacement(const GameRecord& left, const GameRecord& right) {
  return std::equal(std::begin(left.board), std::end(left.board), right.board) &&
         std::equal(std::begin(left.list_sq), std::end(left.list_sq), right.list_sq) &&
         left.key == right.key && left.castle == right.castle && left.fifty == right.fifty &&
         left.side == right.side;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::StartOnce();
  fuzz::FreshPosition();
  std::string_view input = fuzz::Text(data, std::min(size, kLongest));
  InitGame(kPositions[fuzz::TakeByte(input) % std::size(kPositions)]);
  const auto start = std::make_unique<GameRecord>(g);
  for (std::string_view text = NextToken(input, " \n"); !text.empty();
       text = NextToken(input, " \n")) {
    Move move = 0;
    if (!StrToMove(text, move)) {
      fuzz::Expect(move == 0, "a refused text stores nothing");
    } else if (InsertMoveInGame(move, 0)) {
      fuzz::Expect(RecordIsSound(g), "the record is sound after a move");
    } else {
      fuzz::Expect(g.game_len == kMaxGameMoves, "only a full game refuses a legal move");
    }
  }
  while (g.game_len > 0) UndoGameMove();
  fuzz::Expect(RecordIsSound(g) && SamePlacement(g, *start), "taking back leads to the start");
  return 0;
}
