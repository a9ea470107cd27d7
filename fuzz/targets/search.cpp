// Searches of any position: the first byte chooses the play style or the randomised search, the
// rest is a position text and, behind a newline, moves played before.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/token.h"
#include "fuzz/harness.h"
#include "position/game.h"
#include "position/legal.h"
#include "position/pieces.h"
#include "position/record.h"
#include "position/setup.h"
#include "position/soundness.h"
#include "position/types.h"
#include "search/root.h"
#include "search/state.h"
#include "search/style.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tarvyle;
  fuzz::StartOnce();
  std::string_view input = fuzz::Text(data, size);
  const unsigned choice = fuzz::TakeByte(input) % 4;
  const std::string text(NextToken(input, "\n"));
  fuzz::FreshPosition();
  if (!InitGame(text.c_str())) return 0;
  const GameRecord position = g;
  fuzz::FreshProcess();
  SetRecord(position);
  Move move = 0;
  for (auto word = NextToken(input, " \n"); !word.empty(); word = NextToken(input, " \n")) {
    if (StrToMove(word, move)) InsertMoveInGame(move, 0);
  }
  is_rnd_search = choice == 3 ? 1 : 0;
  PLAY_STYLE = choice == 3 ? 2 : static_cast<int>(choice);
  move = 0;
  if (!SearchMove(move)) return 0;
  const Move found = move;
  fuzz::Expect(ply == 0 && RecordIsSound(g), "the record is sound after a search");
  fuzz::Expect(InsertMoveInGame(found, search_score) || g.game_len == kMaxGameMoves,
               "the move that was found can be played");
  return 0;
}
